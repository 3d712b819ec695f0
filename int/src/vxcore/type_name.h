#pragma once

#include "vxcore/export.h"

#include <string>
#include <typeinfo>

namespace vxcore {

/// Returns the demangled name of a type, such as "unsigned int". If it cannot be demangled, the
/// name of `type.name()`. For messages only: the names differ between compilers and libraries.
///
/// @raises std::bad_alloc: no memory.
/// @cost   Demangles at each call.
VXCORE_API std::string type_name(std::type_info const & type);

} // namespace vxcore
