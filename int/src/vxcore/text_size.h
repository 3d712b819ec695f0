#pragma once

#include "vxcore/export.h"

#include <cstddef>
#include <limits>

namespace vxcore {

/// Raises the `std::length_error` of `text_size`. Out of line, so that the check stays small.
[[noreturn]] VXCORE_API void throw_text_too_long();

/// Returns the size of a text in 32 bits, the type of all sizes here. Functions that take a
/// `std::string_view` call it before they change anything.
///
///     writer.write_string(text.data(), text_size(text.size()));
///
/// @raises std::length_error: `size` is above 2^32 - 1 bytes.
/// @cost   One comparison.
inline unsigned int text_size(std::size_t size) {
    if (size > std::numeric_limits<unsigned int>::max()) {
        throw_text_too_long();
    }
    return static_cast<unsigned int>(size);
}

} // namespace vxcore
