#pragma once

#include <string>

namespace vxattribute::impl {

/// Reads a decimal number from -128 to 127 with an optional sign.
///
/// @raises error.vxcore.conversion: the text is not such a number. For a bad digit, or more than 64
///         bits, the failure shows the digits after the sign, otherwise the whole text.
signed char parse_signed_char(std::string const & text);

/// Reads a decimal number with an optional sign; all of the text must be used.
///
/// @raises error.vxcore.conversion: the text is not a number, or out of the range of `T`.
template <typename T>
T parse_integer(std::string const & text);

} // namespace vxattribute::impl
