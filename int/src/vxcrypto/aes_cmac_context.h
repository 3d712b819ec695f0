#pragma once

#include "vxcore/ref_count_ptr.h"
#include "vxcrypto/aes.h"

namespace vxcrypto {

/// Computes the message authentication code AES-CMAC (NIST SP 800-38B, RFC 4493) of a message that
/// comes in pieces.
///
///     AesCmacContext cmac(vxcore::make_ref_counted<AesCmacContext::SharedState>(key, size));
///     cmac.update(data, size);
///     cmac.final(mac);
///     cmac.reset();                      // ready for the next message
///
/// Cost. One AES block per 16 bytes, read from the caller's memory without a copy; no allocation.
///
/// Threads. Contexts in separate threads may share a SharedState. One context belongs to one thread
/// at a time.
class VXCRYPTO_API AesCmacContext {
  public:
    /// Everything that depends on the key alone: the key schedule and the two subkeys. Constant
    /// after construction; wiped when the last reference is released.
    class VXCRYPTO_API SharedState final : public vxcore::RefCounted<vxcore::AtomicRefCount> {
      public:
        /// @param size  In bytes: 16, 24 or 32.
        /// @raises error.vxcrypto.key.size: another size, or a null key.
        SharedState(unsigned char const * key, unsigned int size);
        SharedState(SharedState const &) = delete;
        SharedState & operator=(SharedState const &) = delete;

        /// The cipher under the key, for other modes; valid as long as this object.
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

    /// Starts a new message under the same key and drops the current one.
    void reset() noexcept;

    /// Adds `size` bytes to the message. How the message is cut into pieces makes no difference.
    ///
    /// @param data  May be null when `size` is 0.
    void update(unsigned char const * data, unsigned int size) noexcept;

    /// Writes the MAC, 16 bytes. Call `reset` before using the context again.
    void final(unsigned char * out) noexcept;

    /// The state given to the constructor; valid as long as this object.
    SharedState const & shared() const noexcept { return *m_shared; }

  private:
    vxcore::RefCountPtr<SharedState> m_shared;
    unsigned char m_state[AesEncryptContext::block_size];
    unsigned int m_position;
};

} // namespace vxcrypto
