#pragma once

#include "vxattribute/attribute_map.h"

#include <span>

namespace vxattribute {

/// A copy of a map for messages and traces, in which the values of all those names are the String
/// "(redacted)". The names are looked for at every depth, in lists of maps too.
///
///     AttributeName const secrets[] = {"password", "token"};
///     log(to_text(redacted(config, secrets)));
///
/// @cost  O(content): one lookup in a hash table for each element. Maps that hold none of the names
///        are shared with the original. Each level takes memory and no stack.
VXATTRIBUTE_API AttributeMap redacted(AttributeMapBase const & map,
                                      std::span<AttributeName const> names);

} // namespace vxattribute
