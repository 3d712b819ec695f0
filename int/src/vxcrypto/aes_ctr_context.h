#pragma once

#include "vxcrypto/aes.h"

namespace vxcrypto {

/// AES in counter mode (NIST SP 800-38A) for data that comes in pieces.
///
/// The counter is one big-endian number of 128 bits. Never use a counter twice under the same key:
/// two texts under one key stream reveal their difference.
///
/// Cost. One AES block per 16 bytes, in place; no allocation.
///
/// Threads. Contexts in separate threads may share an AesEncryptContext. One context belongs to one
/// thread at a time.
class VXCRYPTO_API AesCtrContext {
  public:
    /// The counter is 0 until `set_iv`.
    ///
    /// @param aes  Keyed; must outlive this object.
    explicit AesCtrContext(AesEncryptContext const * aes) noexcept;
    AesCtrContext(AesCtrContext const &) = delete;
    AesCtrContext & operator=(AesCtrContext const &) = delete;

    /// Wipes the key stream, the counter and the initial value.
    ~AesCtrContext();

    /// Starts a new key stream and drops the rest of the previous one.
    ///
    /// @param iv    The first counter.
    /// @param size  In bytes. Only the first 16 are used; fewer are followed by zeros.
    void set_iv(unsigned char const * iv, unsigned int size) noexcept;

    /// XORs the key stream over `size` bytes, which enciphers and deciphers. How the data is cut
    /// into pieces makes no difference.
    ///
    /// @param data  May be null when `size` is 0.
    void process(unsigned char * data, unsigned int size) noexcept;

  private:
    void make_key_stream() noexcept;

    unsigned char m_iv[AesEncryptContext::block_size] = {};
    unsigned char m_counter[AesEncryptContext::block_size] = {};
    unsigned char m_keyStream[AesEncryptContext::block_size] = {};
    AesEncryptContext const * m_aes;
    unsigned int m_position = AesEncryptContext::block_size;
};

} // namespace vxcrypto
