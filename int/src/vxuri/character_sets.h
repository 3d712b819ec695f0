#pragma once

#include <string_view>

/// The character classes of RFC 2396, section 2, for code that writes or parses references. This
/// library does not use them itself: it follows RFC 3986, whose classes differ.
///
/// Each is a view of ASCII characters in no particular order; `find` tells whether one is in it.
namespace vxuri::character_sets {

/// Characters that are not allowed in a reference and therefore stay escaped.
inline constexpr std::string_view neverUnescaped = " <>\"{}|\\^[]`";

/// The signs of an escape and of a fragment.
inline constexpr std::string_view escapeAndFragment = "#%";

/// The two sets above.
inline constexpr std::string_view neverUnescapedOrSign = " <>\"{}|\\^[]`#%";

/// Characters that delimit components.
inline constexpr std::string_view reserved = ";/?:@&=+$,";

/// Characters that need no escape, beside letters and digits.
inline constexpr std::string_view mark = "-_.!~*'()";

} // namespace vxuri::character_sets
