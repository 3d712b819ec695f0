#pragma once

#include "vxattribute/attribute_map.h"

#include <string>
#include <string_view>
#include <vector>

/// The place of a value in nested maps, as a text of names with slashes between them, such as
/// "server/limits/connections". Where a name holds several maps, the next step is the index of one
/// of them, from 0: "records/3/name". In a name, "~1" stands for a slash and "~0" for a tilde (as
/// in RFC 6901, whose leading slash is not written here).
namespace vxattribute {

/// The value at `path`; null when there is none. The empty path is the name without characters.
///
/// @cost  One look-up for each step; names that are not known are not made.
/// @keeps As the map's own look-ups: until it is changed or destroyed.
VXATTRIBUTE_API AttributeValue const * find_path(AttributeMapBase const & map VXCORE_LIFETIMEBOUND,
                                                 std::string_view path);

/// Sets the value at `path`; maps on the way that are not there are made.
///
/// @raises error.vxattribute.map.attributeNotFound: a step leads through a value that is not a map
///         or to an index that is not there, or has more than 256 steps; the map is as it was.
VXATTRIBUTE_API void set_path(MutableAttributeMap & map, std::string_view path,
                              AttributeValue value);

/// One step of a path: the name with its slashes and tildes written as they must be.
VXATTRIBUTE_API std::string path_step(std::string_view name);

} // namespace vxattribute
