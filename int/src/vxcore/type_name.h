#pragma once

#include "vxcore/export.h"

#include <string>
#include <typeinfo>

namespace vxcore {

/// The name of a type as a programmer writes it, such as "unsigned int": what the runtime knows,
/// made readable where the compiler mangles names. For messages.
VXCORE_API std::string type_name(std::type_info const & type);

} // namespace vxcore
