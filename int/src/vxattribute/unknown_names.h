#pragma once

#include "vxattribute/query.h"

#include <span>
#include <vector>

namespace vxattribute {

/// The names in a configuration that none of the queries looks for: most often misspelt settings.
/// They are sorted by their bytes. Names inside nested maps are not considered; of a path, the
/// first name counts.
///
///     for (AttributeName const & name : unknown_names(config, queries)) {
///         warn("unknown setting", name);
///     }
///
/// @cost  One lookup in a hash table for each name, and a sort of the result.
VXATTRIBUTE_API std::vector<AttributeName> unknown_names(AttributeMapBase const & config,
                                                         std::span<Query const> queries);

} // namespace vxattribute
