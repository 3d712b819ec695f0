#pragma once

#include "vxcore/export.h"

#include <string>
#include <typeinfo>

namespace vxcore {

/// Returns the demangled name of a type, such as "unsigned int". For messages.
VXCORE_API std::string type_name(std::type_info const & type);

} // namespace vxcore
