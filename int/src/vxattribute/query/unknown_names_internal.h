#pragma once

#include "vxattribute/attribute_map.h"

#include <unordered_set>
#include <vector>

namespace vxattribute::impl {

/// The names of the map that are not known, sorted by their bytes: map order differs between
/// processes.
std::vector<AttributeName> names_outside(AttributeMapBase const & map,
                                         std::unordered_set<AttributeName> const & known);

} // namespace vxattribute::impl
