#pragma once

#include "vxcore/error_info.h"

#include <string>
#include <string_view>

/// Conversions between numbers and text, and a comparison that ignores case. All of them are
/// independent of the locale and of the floating-point environment of the thread.
namespace vxcore {

/// Decimal digits, with "-" before a negative number and without leading zeros.
VXCORE_API std::string to_string(int value);
VXCORE_API std::string to_string(unsigned int value);
VXCORE_API std::string to_string(unsigned short value);
VXCORE_API std::string to_string(long long value);
VXCORE_API std::string to_string(unsigned long long value);

/// Three-way comparison by unsigned bytes, with A to Z taken as a to z. A prefix is less than the
/// longer text. Returns -1, 0 or 1. Bytes above 127 are not folded. A text may be null if its size
/// is 0.
VXCORE_API int compare_nocase_ascii(char const * a, unsigned int aSize, char const * b,
                                    unsigned int bSize) noexcept;

/// True if `compare_nocase_ascii` returns 0. O(1) for texts of different sizes.
VXCORE_API bool string_equal_nocase_ascii(char const * a, unsigned int aSize, char const * b,
                                          unsigned int bSize) noexcept;

/// One empty string, for functions that return a reference. Never destroyed. It can be used in the
/// static initialisers and destructors of libraries that link this one.
VXCORE_API extern std::string const & g_emptyString;

namespace impl {

/// Reads "true" or "false", "yes" or "no", "on" or "off", "1" or "0", in any case. The text is
/// compared as a whole: white space is not skipped.
///
/// @param error  Takes the failure, and the result is then false; null raises it. Otherwise it is
///               unchanged.
/// @raises error.vxcore.conversion: the text is none of these.
VXCORE_API bool string_to_bool(char const * data, unsigned int size, ErrorInfo::Ptr * error);

/// Reads a decimal number, all of the text used; one leading "+" is taken, white space is not.
/// "inf", "infinity" and "nan" are read in any case. A number too small is a zero of its sign.
///
/// @param error  As above; the result is 0 after a failure.
/// @raises error.vxcore.conversion: no number, or one beyond the largest double.
VXCORE_API double string_to_double(char const * data, unsigned int size, ErrorInfo::Ptr * error);

/// The failure of both: "Cannot convert '{@text}' to {@type}", the text cut to 256 bytes.
///
/// @param type   A name for people, such as "double"; it is copied.
/// @param error  As above.
/// @raises error.vxcore.conversion: `error` is null.
VXCORE_API void string_to_failure(char const * data, unsigned int size, char const * type,
                                  ErrorInfo::Ptr * error);

/// Raises error.vxcore.conversion.truncated: `value` (a decimal text) does not fit `type` (the name
/// of a type, for people).
[[noreturn]] VXCORE_API void safe_cast_throw_value_truncated(char const * type, std::string value);

} // namespace impl
} // namespace vxcore
