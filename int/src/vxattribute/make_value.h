#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/elements.h"

#include <initializer_list>

/// Values and maps from lists in braces. Free functions, because braces on the classes must copy.
namespace vxattribute {

/// A map of the attributes. The last one wins where names are equal.
///
///     AttributeMap const server = make_map({{"host", "localhost"}, {"port", 8080}});
VXATTRIBUTE_API AttributeMap make_map(std::initializer_list<Attribute> attributes);

/// A value with copies of the elements. This is the cheapest way to build a list: its elements take
/// one block of exactly their size.
template <impl::ElementType T>
AttributeValue make_list(std::span<T const> elements) {
    impl::ValueHolder holder(
        impl::ValueFactory<T>::create_value(elements.data(), elements.data() + elements.size()));
    AttributeValue value;
    value.swap_impl(holder);
    return value;
}

/// The same for elements in braces.
///
///     AttributeValue const ports = make_list<long long>({80, 443});
template <impl::ElementType T>
AttributeValue make_list(std::initializer_list<T> elements) {
    return make_list(std::span<T const>(elements.begin(), elements.size()));
}

} // namespace vxattribute
