#pragma once

#include "vxcrypto/cleansed_block.h"

namespace vxcrypto {

/// The AES block cipher (NIST FIPS 197) under one key, in the enciphering direction; the modes of
/// this library need no other.
///
/// Empty until `rekey`, which must be the first call. The key schedule is in a heap block of its
/// own, which is wiped before it is freed.
///
/// Cost. Runs of blocks use the processor's AES instructions where it has them. Single blocks are
/// calls of OpenSSL's `AES_encrypt`.
///
/// Threads. Enciphering does not change the object: threads may share a keyed context.
class VXCRYPTO_API AesEncryptContext {
  public:
    /// The size of a block in bytes.
    static constexpr unsigned int block_size = 16;

    AesEncryptContext() noexcept = default;
    AesEncryptContext(AesEncryptContext const &) = delete;
    AesEncryptContext & operator=(AesEncryptContext const &) = delete;
    ~AesEncryptContext() = default;

    /// Makes the key schedule and replaces an earlier one.
    ///
    /// @param size  In bytes: 16, 24 or 32.
    /// @raises error.vxcrypto.key.size: another size, or a null key. The context is unchanged.
    /// @raises std::bad_alloc: the first time only; the context stays empty.
    /// @cost   One allocation, the first time.
    void rekey(unsigned char const * key, unsigned int size);

    /// Enciphers one block. `in` and `out` may be the same.
    void encrypt(unsigned char const * in, unsigned char * out) const noexcept;

    /// Advances a CBC chain: for each block of `data`, `x` becomes E(x) XOR the block. The last
    /// step, E(x), is left to the caller.
    ///
    /// @param x     One block.
    /// @param data  `blocks` blocks.
    void chain(unsigned char * x, unsigned char const * data, unsigned int blocks) const noexcept;

    /// XORs a key stream over `data`: the enciphered `counter`, the enciphered `counter` + 1, ...
    ///
    /// @param counter  One block, a big-endian number modulo 2^128; `blocks` is added to it.
    /// @param data     `blocks` blocks.
    void xor_key_stream(unsigned char * counter, unsigned char * data,
                        unsigned int blocks) const noexcept;

  private:
    impl::CleansedBlock m_schedule;
};

} // namespace vxcrypto
