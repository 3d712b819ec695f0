#pragma once

#include "vxcrypto/key.h"

#include <string_view>

/// @file
/// Authenticated encryption of a message that is in one piece: EAX (Bellare, Rogaway and Wagner,
/// "The EAX Mode of Operation", 2004) over AES (NIST FIPS 197) and CMAC (NIST SP 800-38B), with a
/// nonce and a tag of 16 bytes each. The results are those of EaxAesContext, which takes a message
/// in pieces.
///
///     eax_aes_seal(key, nonce, header, message, size, tag);
///     ...
///     if (eax_aes_open(key, nonce, header, message, size, tag, opened)) {
///         use(opened, size);
///     }
///
/// Never use a nonce twice under one key.
///
/// Cost. On the processor's AES instructions: one key schedule and one AES block per 16 bytes of
/// header and message, each after the other, and about three in addition; no allocation. Sealing
/// makes the key stream meanwhile; opening makes it after the tag has matched. Elsewhere as
/// EaxAesContext.
///
/// Secrets. The key schedule and all intermediate results are wiped before the functions return.
///
/// Threads. The functions keep no state.
namespace vxcrypto {

/// Enciphers a message in place and makes its tag.
///
/// @param key      16, 24 or 32 bytes.
/// @param nonce    16 bytes.
/// @param header   Authenticated with the message but not part of it; may be empty.
/// @param message  `size` bytes; may be null when `size` is 0.
/// @param tag      Receives 16 bytes. May follow the message, but not overlap it.
/// @raises error.vxcrypto.key.size: the key has another size. After any failure `message` and
///         `tag` are as they were.
/// @raises std::length_error: `header` has more than 2^32 - 1 bytes.
/// @raises std::bad_alloc: only where the processor has no AES instructions.
VXCRYPTO_API void eax_aes_seal(Key const & key, unsigned char const * nonce,
                               std::string_view header, unsigned char * message, unsigned int size,
                               unsigned char * tag);

/// Returns whether the tag of a sealed message is right. The time it takes does not reveal where
/// tags differ.
///
/// @param message, tag  As sealed. The other parameters and failures are those of `eax_aes_seal`.
[[nodiscard]] VXCRYPTO_API bool eax_aes_verify(Key const & key, unsigned char const * nonce,
                                               std::string_view header,
                                               unsigned char const * message, unsigned int size,
                                               unsigned char const * tag);

/// Deciphers a sealed message if its tag is right, and returns whether it is. Otherwise no byte is
/// deciphered and `opened` is as it was.
///
/// @param message, tag  As sealed. The other parameters and failures are those of `eax_aes_seal`.
/// @param opened        Receives `size` bytes. May be `message`, but not overlap it otherwise.
[[nodiscard]] VXCRYPTO_API bool eax_aes_open(Key const & key, unsigned char const * nonce,
                                             std::string_view header, unsigned char const * message,
                                             unsigned int size, unsigned char const * tag,
                                             unsigned char * opened);

} // namespace vxcrypto
