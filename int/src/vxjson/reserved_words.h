#pragma once

#include "vxjson/export.h"

#include <string_view>

namespace vxjson {

/// True for the 42 words that mean something in scripts, such as "class" and "typeof". A Reader
/// refuses them as names unless told otherwise. Case counts, and "true", "false" and "null" are
/// none of them.
VXJSON_API bool is_reserved_word(std::string_view name) noexcept;

} // namespace vxjson
