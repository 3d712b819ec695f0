#pragma once

#include "vxattribute/attribute_map.h"

#include <span>

namespace vxattribute {

/// A copy of a map for messages and traces: the values of all those names, at every depth, are the
/// String "(redacted)". Attributes inside lists of maps are found too.
///
/// @cost  Maps that hold none of the names are shared with the original. Stack for each level; the
///        forms that read maps limit their depth.
VXATTRIBUTE_API AttributeMap redacted(AttributeMapBase const & map,
                                      std::span<AttributeName const> names);

} // namespace vxattribute
