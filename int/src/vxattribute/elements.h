#pragma once

#include "vxattribute/element_types.h"

#include <span>

namespace vxattribute {

/// All elements of a value of type `T`. The span is valid until the value is changed or destroyed:
/// do not loop over the elements of a temporary value.
///
/// @raises error.vxattribute.value.type.mismatch: the value is of another type; null counts as
/// another.
template <impl::ElementType T>
std::span<T const> elements(AttributeValue const & value VXCORE_LIFETIMEBOUND) {
    return {value.begin<T>(), value.end<T>()};
}

/// Calls `visitor` once with all elements of the value as a `std::span<T const>`, where `T` is the
/// element type. A null value has no element type, so that `visitor` is not called.
///
///     visit_elements(value, [](auto elements) { total += elements.size(); });
///
/// @return false for a null value.
/// @raises Only what `visitor` raises.
template <typename Visitor>
bool visit_elements(AttributeValue const & value, Visitor && visitor) {
    return impl::for_element_type(value.type().id(),
                                  [&]<typename T>() { visitor(elements<T>(value)); });
}

} // namespace vxattribute
