#pragma once

/// The out-of-line members of the representation templates, for the sources that instantiate them.
/// They are not in attribute_value_impl.h, so that callers neither parse nor instantiate them.

#include "vxattribute/value/typed_value_changes_internal.h"
#include "vxattribute/value/typed_value_reading_internal.h"
#include "vxattribute/value/value_ownership_internal.h"

/// Instantiates the templates of an element type. Used once per type, in the source of the type.
#define VXATTRIBUTE_INSTANTIATE_ELEMENT(T)                                                         \
    template class vxattribute::impl::TypedValue<T>;                                               \
    template class vxattribute::impl::RefCountedValueImpl<T>;                                      \
    template struct vxattribute::impl::ValueFactory<T>

/// The same for a type with the unshared form, SingleValueImpl.
#define VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(T)                                                  \
    static_assert(vxattribute::impl::has_single_value_impl<T>);                                    \
    VXATTRIBUTE_INSTANTIATE_ELEMENT(T);                                                            \
    template class vxattribute::impl::SingleValueImpl<T>
