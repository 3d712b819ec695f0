#pragma once

#include "vxattribute/attribute_map.h"

#include <functional>
#include <string>

namespace vxattr {

/// Receives one difference: the path and the two values. One of them may be null: absent.
using TakeDifference =
    std::function<void(std::string const & path, vxattribute::AttributeValue const * a,
                       vxattribute::AttributeValue const * b)>;

/// Finds the differences of two values, name by name, in the byte order of the names.
///
/// Doubles are compared by their bits: a NaN equals its copy, and the two zeros differ. Lists of
/// maps of the same size are compared index by index; of different sizes they are one difference.
///
/// @return whether the values are the same.
bool find_differences(vxattribute::AttributeValue const & a, vxattribute::AttributeValue const & b,
                      TakeDifference const & take);

} // namespace vxattr
