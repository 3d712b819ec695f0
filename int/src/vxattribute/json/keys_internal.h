#pragma once

#include "vxcore/static_instance.h"
#include "vxcore/string_key.h"

/// The name that decides which JSON form a map takes. Made once, in statics.cpp.
namespace vxattribute::impl {

/// "vxserialize": the property with the text of a value that has no plain form.
extern vxcore::StaticInstance<vxcore::StringKey const> const jsonSerializedKey;

} // namespace vxattribute::impl
