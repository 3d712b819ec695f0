#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/binary_value.h"
#include "vxattribute/core_elements.h"
#include "vxattribute/secured_value.h"
#include "vxattribute/serialized_value.h"

/// All element types, and the way from a type number to the type.
namespace vxattribute::impl {

/// Calls `action.template operator()<T>()` with the element type of that number, which is not that
/// of null.
///
/// @return false when this library has no elements of that number.
template <typename Action>
bool for_element_type(int id, Action && action) {
    switch (id) {
    case ValueTypeId::eId_Boolean:
        action.template operator()<bool>();
        return true;
    case ValueTypeId::eId_Integer:
        action.template operator()<long long>();
        return true;
    case ValueTypeId::eId_String:
        action.template operator()<std::string>();
        return true;
    case ValueTypeId::eId_Double:
        action.template operator()<double>();
        return true;
    case ValueTypeId::eId_Uuid:
        action.template operator()<vxcore::Uuid>();
        return true;
    case ValueTypeId::eId_Uri:
        action.template operator()<vxuri::UriReference>();
        return true;
    case ValueTypeId::eId_AbsoluteTime:
        action.template operator()<vxcore::AbsoluteTime>();
        return true;
    case ValueTypeId::eId_RelativeTime:
        action.template operator()<vxcore::RelativeTime>();
        return true;
    case ValueTypeId::eId_SimpleDateTime:
        action.template operator()<vxcore::SimpleDateTime>();
        return true;
    case ValueTypeId::eId_Binary:
        action.template operator()<BinaryValue>();
        return true;
    case ValueTypeId::eId_Serialized:
        action.template operator()<SerializedValue>();
        return true;
    case ValueTypeId::eId_AttributeMap:
        action.template operator()<AttributeMap>();
        return true;
    case ValueTypeId::eId_Secured:
        action.template operator()<SecuredValue>();
        return true;
    case ValueTypeId::eId_ErrorInfo:
        action.template operator()<ErrorInfoPtr>();
        return true;
    default:
        return false;
    }
}

} // namespace vxattribute::impl
