#pragma once

#include "vxattribute/attribute_map.h"

#include <string>
#include <string_view>
#include <vector>

/// Paths to values in nested maps: names with slashes between them, such as
/// "server/limits/connections". Where a name holds several maps, the next step is the index of one
/// of them, from 0: "records/3/name". In a name, "~1" means a slash and "~0" a tilde, as in RFC
/// 6901, but without its leading slash. The empty path is the name without characters.
namespace vxattribute {

/// The value at `path`; a null pointer when there is none.
///
///     if (AttributeValue const * const limit = find_path(config, "server/limits/connections")) {
///         use(limit->get<long long>());
///     }
///
/// @cost  One lookup for each step. Names that are not interned yet are not interned.
/// @keeps As the map's own lookups: until it is changed or destroyed.
VXATTRIBUTE_API AttributeValue const * find_path(AttributeMapBase const & map VXCORE_LIFETIMEBOUND,
                                                 std::string_view path);

/// Sets the value at `path` and creates the maps on the way that are absent.
///
/// @cost   A lookup and a change in each map on the way; those that are shared are cloned, O(size)
///         each.
/// @raises error.vxattribute.map.attributeNotFound: a step leads through a value that is not a map,
///         an index is out of range, or the path has more than 256 steps. The map is as it was.
VXATTRIBUTE_API void set_path(MutableAttributeMap & map, std::string_view path,
                              AttributeValue value);

/// A name as one step of a path, with its slashes and tildes escaped.
VXATTRIBUTE_API std::string path_step(std::string_view name);

} // namespace vxattribute
