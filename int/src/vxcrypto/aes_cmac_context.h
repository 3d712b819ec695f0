#pragma once

#include "vxcore/ref_count_ptr.h"
#include "vxcrypto/aes.h"

namespace vxcrypto {

/// The message authentication code AES-CMAC (NIST SP 800-38B, RFC 4493) of a message in pieces.
///
///     AesCmacContext cmac(vxcore::make_ref_counted<AesCmacContext::SharedState>(key, size));
///     cmac.update(data, size);
///     cmac.final(mac);
///     cmac.reset();                      // and on with the next message
///
/// Cost. One AES block per 16 bytes, straight from the caller's memory whatever the pieces; no
/// allocation.
///
/// Threads. Contexts may share a SharedState from separate threads; a context belongs to one.
class VXCRYPTO_API AesCmacContext {
  public:
    /// What depends on the key alone: the key schedule and the two subkeys. It does not change once
    /// made; all of it is wiped when the last holder lets go.
    class VXCRYPTO_API SharedState final : public vxcore::RefCounted<vxcore::AtomicRefCount> {
      public:
        /// @param size  Bytes: 16, 24 or 32.
        /// @raises error.vxcrypto.key.size: another size.
        SharedState(unsigned char const * key, unsigned int size);
        SharedState(SharedState const &) = delete;
        SharedState & operator=(SharedState const &) = delete;

        AesEncryptContext const & aes() const noexcept { return m_aes; }

      private:
        friend class AesCmacContext;

        ~SharedState() override;

        AesEncryptContext m_aes;
        unsigned char m_k1[AesEncryptContext::block_size];
        unsigned char m_k2[AesEncryptContext::block_size];
    };

    /// Ready for a message.
    ///
    /// @param shared  Not null.
    explicit AesCmacContext(vxcore::RefCountPtr<SharedState> shared) noexcept;
    AesCmacContext(AesCmacContext const &) = delete;
    AesCmacContext & operator=(AesCmacContext const &) = delete;

    /// Wipes the running block.
    ~AesCmacContext();

    /// Begins a new message under the same key.
    void reset() noexcept;

    /// Adds `size` bytes to the message. Any number of calls with pieces of any size give the MAC
    /// of the whole.
    ///
    /// @param data  May be null when `size` is 0.
    void update(unsigned char const * data, unsigned int size) noexcept;

    /// Writes the MAC, 16 bytes. The context is spent then until the next `reset`.
    void final(unsigned char * out) noexcept;

    SharedState const & shared() const noexcept { return *m_shared; }

  private:
    vxcore::RefCountPtr<SharedState> m_shared;
    unsigned char m_state[AesEncryptContext::block_size];
    unsigned int m_position;
};

} // namespace vxcrypto
