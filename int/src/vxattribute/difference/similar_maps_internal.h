#pragma once

#include "vxattribute/attribute_map.h"

#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace vxattribute::impl {

/// Pairs maps of two lists that have something in common, in ascending order of both indexes, so
/// that the pairs have as much in common as possible. An equal value counts more than a name with
/// another value; maps without a common name are no pair.
///
/// @param stepsLeft  Reduced by the steps taken.
/// @return nothing when that takes more than 4 million pairs of maps or more steps than are left.
/// @cost   O(a.size() * b.size()) comparisons of two maps, each a walk over their elements.
std::optional<std::vector<std::pair<unsigned int, unsigned int>>>
similar_maps(std::span<AttributeMap const> a, std::span<AttributeMap const> b,
             long long & stepsLeft);

} // namespace vxattribute::impl
