#pragma once

#include "vxcrypto/export.h"

#include <cstddef>

namespace vxcrypto {

/// Sets `size` bytes at `data` to zero, in a way that no compiler leaves out. Whatever held a key,
/// an intermediate result made with one, or an opened text is wiped with it before it is given
/// back: plain stores into memory that is freed next are removed as useless.
///
/// @param data  May be null when `size` is 0.
/// @cost  About that of `memset`.
VXCRYPTO_API void cleanse(void * data, std::size_t size) noexcept;

} // namespace vxcrypto
