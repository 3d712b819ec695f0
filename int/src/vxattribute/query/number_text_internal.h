#pragma once

#include <string>

namespace vxattribute::impl {

/// Reads a decimal number from -128 to 127 with an optional sign.
///
/// @raises error.vxcore.conversion: no such number. A bad digit and a number beyond 64 bits are
///         reported as those of the digits behind the sign, everything else as those of the text.
signed char parse_signed_char(std::string const & text);

/// Reads a decimal number with an optional sign; all of the text must be used.
///
/// @raises error.vxcore.conversion: no such number, or one that `T` does not hold.
template <typename T>
T parse_integer(std::string const & text);

} // namespace vxattribute::impl
