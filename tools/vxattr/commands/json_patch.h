#pragma once

#include "vxattribute/attribute_value.h"

#include <string>

namespace vxattr {

/// A JSON Patch (RFC 6902) that turns `a` into `b`, both as plain JSON. One operation a line.
///
/// A list of one element is the element itself, as everywhere in JSON of values: the patch does not
/// fit a document that has an array there.
///
/// @param fileOfB  For messages.
/// @raises Failure: JSON cannot hold a value of the patch, such as a time or a NaN.
std::string json_patch(vxattribute::AttributeValue const & a, vxattribute::AttributeValue const & b,
                       std::string const & fileOfB);

} // namespace vxattr
