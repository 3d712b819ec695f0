#pragma once

#include "vxcrypto/aesni_internal.h"

#include <openssl/aes.h>

/// What AesEncryptContext shares with the functions for whole messages, which keep the key schedule
/// on the stack.
namespace vxcrypto::impl {

/// Refuses a key that AES does not take.
///
/// @raises error.vxcrypto.key.size: a size other than 16, 24 or 32 bytes, or a null key.
void check_key(unsigned char const * key, unsigned int size);

/// True when the AES-NI functions are in use: false until load-time code has run.
bool uses_aesni() noexcept;

inline AesniKeys aesni_keys(AES_KEY const & schedule) noexcept {
    return {reinterpret_cast<unsigned char const *>(schedule.rd_key),
            static_cast<unsigned int>(schedule.rounds)};
}

} // namespace vxcrypto::impl
