#pragma once

#include "vxcore/error_info.h"

#include <string>
#include <string_view>

namespace vxcore {

/// Decimal digits, independent of any locale.
VXCORE_API std::string to_string(int value);
VXCORE_API std::string to_string(unsigned int value);
VXCORE_API std::string to_string(unsigned short value);
VXCORE_API std::string to_string(long long value);
VXCORE_API std::string to_string(unsigned long long value);

/// Three-way comparison by unsigned bytes, with A to Z taken as a to z. A prefix is less than the
/// longer text. Returns -1, 0 or 1.
VXCORE_API int compare_nocase_ascii(char const * a, unsigned int aSize, char const * b,
                                    unsigned int bSize) noexcept;

/// True if `compare_nocase_ascii` returns 0.
VXCORE_API bool string_equal_nocase_ascii(char const * a, unsigned int aSize, char const * b,
                                          unsigned int bSize) noexcept;

/// One empty string, for functions that return a reference. Never destroyed.
VXCORE_API extern std::string const & g_emptyString;

namespace impl {

/// Reads "true" or "false", "yes" or "no", "on" or "off", "1" or "0", in any case.
///
/// @param error  Takes the failure; null raises it.
/// @raises error.vxcore.conversion: the text is none of these.
VXCORE_API bool string_to_bool(char const * data, unsigned int size, ErrorInfo::Ptr * error);

/// Reads a decimal number, all of the text used; one leading "+" is taken, white space is not.
/// "inf", "infinity" and "nan" are read in any case. A number too small is a zero of its sign.
///
/// @raises error.vxcore.conversion: no number, or one beyond the largest double.
VXCORE_API double string_to_double(char const * data, unsigned int size, ErrorInfo::Ptr * error);

/// The failure of both: "Cannot convert '{@text}' to {@type}", the text cut to 256 bytes.
VXCORE_API void string_to_failure(char const * data, unsigned int size, char const * type,
                                  ErrorInfo::Ptr * error);

/// Raises error.vxcore.conversion.truncated: `value` (a decimal text) does not fit `type`.
[[noreturn]] VXCORE_API void safe_cast_throw_value_truncated(char const * type, std::string value);

} // namespace impl
} // namespace vxcore
