#pragma once

#include "vxcrypto/export.h"

#include <cstddef>

namespace vxcrypto {

/// True when `size` bytes at both places are equal. It reads all of them whatever they hold, so the
/// time it takes tells nothing about where they differ: for tags and keys, where the time of an
/// ordinary comparison would let somebody guess them byte by byte.
///
/// @param a, b  May be null when `size` is 0.
[[nodiscard]] VXCRYPTO_API bool constant_time_equal(void const * a, void const * b,
                                                    std::size_t size) noexcept;

} // namespace vxcrypto
