#pragma once

#include "vxjson/export.h"

#include <string_view>

namespace vxjson {

/// True for the 42 keywords of scripts, such as "class" and "typeof". The comparison is
/// case-sensitive. "true", "false" and "null" are not reserved words.
///
/// A Reader refuses these words as names unless its option `allow_reserved_names` is set. The list
/// is in docs/formats/json.md.
///
/// @cost  A comparison with the words that start with the same letter, at most six.
VXJSON_API bool is_reserved_word(std::string_view name) noexcept;

} // namespace vxjson
