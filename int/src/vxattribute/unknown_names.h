#pragma once

#include "vxattribute/query.h"

#include <span>
#include <vector>

namespace vxattribute {

/// The settings of a configuration that none of the queries asks for, under any of its names: most
/// often they are misspelt. In alphabetical order. Names inside nested maps are not looked at.
///
/// @cost  One look-up in a hash table for each setting.
VXATTRIBUTE_API std::vector<AttributeName> unknown_names(AttributeMapBase const & config,
                                                         std::span<Query const> queries);

} // namespace vxattribute
