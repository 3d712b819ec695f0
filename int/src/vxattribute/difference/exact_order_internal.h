#pragma once

#include "vxattribute/elements.h"

#include <bit>

/// A total order in which only identical elements compare 0; difference.h defines identical. The
/// orders of the element types are not enough: a NaN compares 0 with every double.
///
/// The order of maps means something within one process only.
namespace vxattribute::impl {

template <typename T>
int exact_order(T const & a, T const & b) {
    return ValueTypeTraits<T>::compare(a, b);
}

inline int exact_order(double a, double b) noexcept {
    auto const x = std::bit_cast<unsigned long long>(a);
    auto const y = std::bit_cast<unsigned long long>(b);
    return int{x > y} - int{x < y};
}

/// By type names first: without payload, `compare` does not look at them.
inline int exact_order(SerializedValue const & a, SerializedValue const & b) noexcept {
    int const order = a.type().compare(b.type());
    return order != 0 ? order : a.compare(b);
}

/// @raises std::bad_alloc, as the next one.
/// @cost   O(content) up to the first difference. Depth takes memory and no stack.
int exact_order(AttributeMap const & a, AttributeMap const & b);

/// By type number, then element by element.
int exact_order(AttributeValue const & a, AttributeValue const & b);

} // namespace vxattribute::impl
