#pragma once

#include <string_view>

/// AES on the processor's AES instructions (x86-64): runs of blocks, and whole messages of EAX. The
/// functions read the key schedule that OpenSSL made and keep no copy of it. See
/// docs/decisions/0006.
namespace vxcrypto::impl {

/// A key schedule: `rounds` + 1 keys of 16 bytes, in order of use.
struct AesniKeys {
    unsigned char const * first;
    unsigned int rounds;
};

/// True when this processor has the instructions.
bool has_aes_instructions() noexcept;

/// As AesEncryptContext::chain.
void aesni_chain(AesniKeys keys, unsigned char * x, unsigned char const * data,
                 unsigned int blocks) noexcept;

/// As AesEncryptContext::xor_key_stream, from `in` to `out`, which may be the same.
void aesni_xor_key_stream(AesniKeys keys, unsigned char * counter, unsigned char const * in,
                          unsigned char * out, unsigned int blocks) noexcept;

/// What EAX authenticates besides the message.
struct EaxPrefix {
    unsigned char const * nonce; // one block
    std::string_view header;     // less than 2^32 bytes
};

/// Enciphers a message in place and makes its tag.
///
/// @param tag  Receives one block.
void aesni_eax_seal(AesniKeys keys, EaxPrefix const & prefix, unsigned char * message,
                    unsigned int size, unsigned char * tag) noexcept;

/// Makes the tag of an enciphered message.
///
/// @param tag      Receives one block.
/// @param counter  Receives the first counter of the key stream.
void aesni_eax_tag(AesniKeys keys, EaxPrefix const & prefix, unsigned char const * message,
                   unsigned int size, unsigned char * tag, unsigned char * counter) noexcept;

} // namespace vxcrypto::impl
