#pragma once

#include "vxattribute/element_types.h"

#include <span>

namespace vxattribute {

/// All elements of a value of type `T`; they hold until the value is changed or destroyed.
///
/// @raises error.vxattribute.value.type.mismatch: the value is of another type; null is another.
template <impl::ElementType T>
std::span<T const> elements(AttributeValue const & value VXCORE_LIFETIMEBOUND) {
    return {value.begin<T>(), value.end<T>()};
}

/// Calls `visitor` with all elements of the value as a `std::span<T const>`, `T` being its element
/// type. A null value has no element type: nothing is called then.
///
///     visit_elements(value, [](auto elements) { total += elements.size(); });
///
/// @return false for a null value.
template <typename Visitor>
bool visit_elements(AttributeValue const & value, Visitor && visitor) {
    return impl::for_element_type(value.type().id(),
                                  [&]<typename T>() { visitor(elements<T>(value)); });
}

} // namespace vxattribute
