#pragma once

#include "vxattribute/secured_value.h"

#include <functional>
#include <string>

namespace vxattr {

/// Takes a sealed value and its path, gives what stands in its place.
using ReplaceSealed = std::function<vxattribute::SecuredValue(
    std::string const & path, vxattribute::SecuredValue const & sealed)>;

/// The value with all sealed values in it replaced, at every depth; `count` gets their number. What
/// holds none is shared with the original.
vxattribute::AttributeValue replace_sealed(vxattribute::AttributeValue const & value,
                                           std::string const & path, ReplaceSealed const & replace,
                                           unsigned long long & count);

} // namespace vxattr
