#pragma once

#include "vxattribute/element_types.h"
#include "vxserialize/element_kind.h"

/// Lone elements that a stream identifies by their kind, so that they need no type number.
namespace vxattribute::impl {

/// The kind of a bare element of type `T`; eElement_None when a type number precedes it.
template <typename T>
inline constexpr vxserialize::EElementKind bare_kind = vxserialize::eElement_None;

#define VX_ELEMENT_TYPE(number, Id, name, Type, storage, relocation, wire, ...)                    \
    template <>                                                                                    \
    inline constexpr vxserialize::EElementKind bare_kind<Type> = vxserialize::eElement_##wire;
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE

/// Returns `action.template operator()<T>()` for the type whose bare elements are of that kind.
/// Returns `otherwise()` when there is none: the kind is that of null or of a type number.
template <typename Action, typename Otherwise>
auto with_bare_element_type(vxserialize::EElementKind kind, Action action, Otherwise otherwise) {
#define VX_ELEMENT_TYPE(number, Id, name, Type, ...)                                               \
    if constexpr (bare_kind<Type> != vxserialize::eElement_None) {                                 \
        if (kind == bare_kind<Type>) {                                                             \
            return action.template operator()<Type>();                                             \
        }                                                                                          \
    }
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
    return otherwise();
}

} // namespace vxattribute::impl
