#pragma once

#include "vxattribute/attribute_map.h"

namespace vxattribute::impl {

/// The map that `value` holds; null when it is not one map.
inline AttributeMap const * scalar_map(AttributeValue const & value) {
    return value.type() == ValueTypeId::typeAttributeMap && value.size() == 1
               ? value.begin<AttributeMap>()
               : nullptr;
}

} // namespace vxattribute::impl
