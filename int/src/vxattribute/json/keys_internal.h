#pragma once

#include "vxcore/static_instance.h"
#include "vxcore/string_key.h"

/// Names that decide how a map goes to JSON, made once in statics.cpp.
namespace vxattribute::impl {

/// "vxserialize": the property that holds what has no plain form.
extern vxcore::StaticInstance<vxcore::StringKey const> const jsonSerializedKey;

/// The empty name, which readers refuse.
extern vxcore::StaticInstance<vxcore::StringKey const> const jsonEmptyKey;

} // namespace vxattribute::impl
