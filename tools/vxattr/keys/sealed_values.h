#pragma once

#include "vxattribute/secured_value.h"

#include <functional>
#include <string>

namespace vxattr {

/// Returns the replacement of a sealed value, which is at `path`.
using ReplaceSealed = std::function<vxattribute::SecuredValue(
    std::string const & path, vxattribute::SecuredValue const & sealed)>;

/// Replaces all sealed values in a value, at every depth. Parts without sealed values are shared
/// with the original.
///
/// @param path   Of `value`; the start of the paths that `replace` receives.
/// @param count  Their number is added to it.
vxattribute::AttributeValue replace_sealed(vxattribute::AttributeValue const & value,
                                           std::string const & path, ReplaceSealed const & replace,
                                           unsigned long long & count);

} // namespace vxattr
