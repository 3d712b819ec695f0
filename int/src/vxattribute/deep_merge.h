#pragma once

#include "vxattribute/attribute_map.h"

namespace vxattribute {

/// The elements of both maps, where a name in both is settled so: two scalar maps are merged in the
/// same way, and of anything else the value of `winner` is taken. Lists are values like any other:
/// they are not joined. Null is a value too and wins.
///
///     AttributeMap const config = merged_deep(from_command_line, merged_deep(from_file,
///     defaults));
///
/// @cost  Linear in the maps that stand on both sides; a nested map of one side only is shared.
///        Memory and no stack for each level that both sides have.
VXATTRIBUTE_API AttributeMap merged_deep(AttributeMapBase const & winner,
                                         AttributeMapBase const & other);

} // namespace vxattribute
