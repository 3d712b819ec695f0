#pragma once

#include "vxcrypto/aes.h"

namespace vxcrypto {

/// AES in counter mode (NIST SP 800-38A) over data in pieces.
///
/// The counter is one big-endian number of 128 bits. The same key must never see a counter twice:
/// whoever has two texts under one key stream has their difference.
///
/// Cost. One AES block per 16 bytes, in place; no allocation.
///
/// Threads. Contexts may share an AesEncryptContext from separate threads; a context belongs to
/// one.
class VXCRYPTO_API AesCtrContext {
  public:
    /// The counter is 0 until `set_iv`.
    ///
    /// @param aes  Keyed. It is borrowed and must outlive this object.
    explicit AesCtrContext(AesEncryptContext const * aes) noexcept;
    AesCtrContext(AesCtrContext const &) = delete;
    AesCtrContext & operator=(AesCtrContext const &) = delete;

    /// Wipes the key stream, the counter and the start value.
    ~AesCtrContext();

    /// Begins a new key stream; what was left of the last one is dropped.
    ///
    /// @param size  Bytes. Of more than 16 the first 16 count; behind fewer come zeros.
    void set_iv(unsigned char const * iv, unsigned int size) noexcept;

    /// XORs the key stream over `size` bytes: enciphers and deciphers. Any number of calls with
    /// pieces of any size do the same as one.
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
