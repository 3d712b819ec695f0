#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/elements.h"

#include <initializer_list>

/// Values and maps written out in place. Free functions, because braces on the classes must copy.
namespace vxattribute {

/// A map of the attributes; of equal names the last stays.
///
///     AttributeMap const server = make_map({{"host", "localhost"}, {"port", 8080}});
VXATTRIBUTE_API AttributeMap make_map(std::initializer_list<Attribute> attributes);

/// A value of a copy of the elements: the cheapest way to a list, one block of just that size.
template <impl::ElementType T>
AttributeValue make_list(std::span<T const> elements) {
    impl::ValueHolder holder(
        impl::ValueFactory<T>::create_value(elements.data(), elements.data() + elements.size()));
    AttributeValue value;
    value.swap_impl(holder);
    return value;
}

///     AttributeValue const ports = make_list<long long>({80, 443});
template <impl::ElementType T>
AttributeValue make_list(std::initializer_list<T> elements) {
    return make_list(std::span<T const>(elements.begin(), elements.size()));
}

} // namespace vxattribute
