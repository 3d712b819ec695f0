#pragma once

#include "vxattribute/attribute_map.h"

#include <vector>

namespace vxattribute {

/// The elements of a map by the bytes of their names, for output that people compare. The iterators
/// hold until the map is changed or destroyed. O(n log n), characters are compared.
VXATTRIBUTE_API std::vector<AttributeMapBase::const_iterator>
sorted_by_name(AttributeMapBase const & map VXCORE_LIFETIMEBOUND);

} // namespace vxattribute
