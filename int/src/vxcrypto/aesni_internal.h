#pragma once

/// Runs of AES blocks on the processor's AES instructions (x86-64). They read the key schedule that
/// OpenSSL made and keep no copy of it. See docs/decisions/0006.
namespace vxcrypto::impl {

/// True when this processor has the instructions.
bool has_aes_instructions() noexcept;

/// As AesEncryptContext::chain.
///
/// @param roundKeys  `rounds` + 1 keys of 16 bytes, in order of use.
void aesni_chain(unsigned char const * roundKeys, unsigned int rounds, unsigned char * x,
                 unsigned char const * data, unsigned int blocks) noexcept;

/// As AesEncryptContext::xor_key_stream.
void aesni_xor_key_stream(unsigned char const * roundKeys, unsigned int rounds,
                          unsigned char * counter, unsigned char * data,
                          unsigned int blocks) noexcept;

} // namespace vxcrypto::impl
