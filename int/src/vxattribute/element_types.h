#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/binary_value.h"
#include "vxattribute/core_elements.h"
#include "vxattribute/secured_value.h"
#include "vxattribute/serialized_value.h"

/// All element types complete, and the way from a type number to the C++ type.
///
/// A program rather includes the header of each type that it uses, or elements.h, whose
/// `visit_elements` does the same for a value.
namespace vxattribute::impl {

/// Calls `action.template operator()<T>()` with the element type of that number.
///
///     bool const isKnown = for_element_type(id, [&]<typename T>() {
///         value = ValueFactory<T>::create_value();
///     });
///
/// @param action  Compiled for every element type, and called for one.
/// @return false, without a call, for null and for numbers that have no type.
/// @cost   One jump through a table.
/// @raises Only what `action` raises.
template <typename Action>
bool for_element_type(int id, Action && action) {
    switch (id) {
#define VX_ELEMENT_TYPE(number, Id, name, Type, ...)                                               \
    case number:                                                                                   \
        action.template operator()<Type>();                                                        \
        return true;
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
    default:
        return false;
    }
}

} // namespace vxattribute::impl
