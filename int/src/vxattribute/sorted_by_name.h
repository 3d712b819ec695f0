#pragma once

#include "vxattribute/attribute_map.h"

#include <vector>

namespace vxattribute {

/// The elements of a map in the order of the bytes of their names, for output that people read or
/// compare.
///
///     for (auto const & element : sorted_by_name(map)) {
///         std::cout << element->first << '\n';
///     }
///
/// @cost  O(n log n); characters are compared. One allocation.
/// @keeps The iterators hold until the map is changed or destroyed.
VXATTRIBUTE_API std::vector<AttributeMapBase::const_iterator>
sorted_by_name(AttributeMapBase const & map VXCORE_LIFETIMEBOUND);

/// Does not compile: a loop over the result would outlive the map.
std::vector<AttributeMapBase::const_iterator> sorted_by_name(AttributeMapBase && map) = delete;

} // namespace vxattribute
