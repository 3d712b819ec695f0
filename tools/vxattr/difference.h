#pragma once

#include "vxattribute/attribute_map.h"

#include <functional>
#include <string>

namespace vxattr {

/// Takes one difference: the path and the two values, of which one may be null.
using TakeDifference =
    std::function<void(std::string const & path, vxattribute::AttributeValue const * a,
                       vxattribute::AttributeValue const * b)>;

/// Finds where two values differ, name by name, in the order of the names' bytes.
///
/// Doubles differ when their bits do, so a NaN equals its copy and the two zeros differ. Lists of
/// maps are compared place by place when they have the same size.
///
/// @return true when they are the same.
bool find_differences(vxattribute::AttributeValue const & a, vxattribute::AttributeValue const & b,
                      TakeDifference const & take);

} // namespace vxattr
