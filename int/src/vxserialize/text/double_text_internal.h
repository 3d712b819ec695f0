#pragma once

namespace vxserialize::impl::text {

/// The most characters of a double. The longest is "-2.2250738585072014e-308".
inline constexpr unsigned int double_size = 24;

/// Writes the shortest text that reads back as `value`, as std::to_chars does, and returns its end.
/// The floating-point environment of the thread does not matter.
///
/// @param to  Room for `double_size` characters.
char * write_double(char * to, double value) noexcept;

} // namespace vxserialize::impl::text
