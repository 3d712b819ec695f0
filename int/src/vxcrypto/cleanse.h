#pragma once

#include "vxcrypto/export.h"

#include <cstddef>

namespace vxcrypto {

/// Sets `size` bytes at `data` to zero in a way that the compiler cannot remove.
///
/// Use it on memory that held a key, a result computed from one, or a decrypted text, before the
/// memory is freed. Compilers remove ordinary stores to memory that is freed next.
///
/// @param data  May be null when `size` is 0.
/// @cost  About the same as `memset`.
VXCRYPTO_API void cleanse(void * data, std::size_t size) noexcept;

} // namespace vxcrypto
