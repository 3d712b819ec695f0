#pragma once

#include "vxattribute/attribute_map.h"

#include <span>

namespace vxattribute {

/// A copy of a map for messages and traces: the values of all those names, at every depth, are the
/// String "(redacted)". Attributes inside lists of maps are found too.
///
/// @cost  Maps that hold none of the names are shared with the original. Memory and no stack for
///        each level.
VXATTRIBUTE_API AttributeMap redacted(AttributeMapBase const & map,
                                      std::span<AttributeName const> names);

} // namespace vxattribute
