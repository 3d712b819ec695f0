#pragma once

#include "vxattribute/attribute_map.h"

namespace vxattribute {

/// Merges two maps, nested ones included. Where both have a single map under a name, these two are
/// merged in the same way; otherwise the value of `winner` is used. Lists of maps are not joined,
/// and a null in `winner` wins like any other value.
///
///     AttributeMap const config = merged_deep(from_user, merged_deep(from_file, defaults));
///
/// @cost  O(a + b) for each pair of maps of sizes a and b that are merged, however few names they
///        share: one name merged into 100,000 copies 100,001 elements. No walk where one of a pair
///        is empty: the result shares the other, as it shares nested maps of one side only. Each
///        level that both maps have takes memory and no stack.
VXATTRIBUTE_API AttributeMap merged_deep(AttributeMapBase const & winner,
                                         AttributeMapBase const & other);

} // namespace vxattribute
