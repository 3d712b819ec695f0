#pragma once

#include <string_view>

/// The character classes of RFC 2396, for those who write or parse references. This library splits
/// a reference without them.
namespace vxuri::character_sets {

/// Characters that stand for nothing in a reference and therefore stay escaped.
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
