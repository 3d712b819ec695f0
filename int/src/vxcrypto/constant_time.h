#pragma once

#include "vxcrypto/export.h"

#include <cstddef>

namespace vxcrypto {

/// True when the `size` bytes at `a` and `b` are equal.
///
/// Reads all bytes whatever they hold, so its time does not reveal where they differ. Use it for
/// tags and keys: the time of an ordinary comparison lets an attacker guess them byte by byte. The
/// size is not secret.
///
/// @param a, b  May be null when `size` is 0.
[[nodiscard]] VXCRYPTO_API bool constant_time_equal(void const * a, void const * b,
                                                    std::size_t size) noexcept;

} // namespace vxcrypto
