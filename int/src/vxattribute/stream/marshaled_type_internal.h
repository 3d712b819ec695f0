#pragma once

#include "vxcore/source_location.h"

namespace vxattribute::impl {

/// Raises the error for a type number in a stream that no type has.
///
/// @raises error.vxattribute.value.type.unknown
[[noreturn]] void throw_unknown_tag(unsigned int tag, vxcore::SourceLocation location);

} // namespace vxattribute::impl
