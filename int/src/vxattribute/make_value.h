#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/elements.h"

#include <initializer_list>
#include <span>
#include <vector>

/// Values and maps from lists in braces. They are free functions, because `AttributeValue{value}`
/// and `AttributeMap{map}` must be copies, not lists of one element.
///
/// Errors. All raise std::bad_alloc, and what copying an element raises.
namespace vxattribute {

/// A map of the attributes. The last one wins where names are equal.
///
///     AttributeMap const server = make_map({{"host", "localhost"}, {"port", 8080}});
///
/// @cost  A copy of each attribute, since braces cannot be moved from, and O(n log n) to sort them
///        by the addresses of their names, O(n) if they are sorted. This is the cheapest way to
///        build a map. In a loop, make the names once: "host" is interned at each call.
VXATTRIBUTE_API AttributeMap make_map(std::initializer_list<Attribute> attributes);

/// The same for attributes in a list.
///
///     std::vector<Attribute> const options = ...;
///     AttributeMap const map = make_map(std::span(options));
VXATTRIBUTE_API AttributeMap make_map(std::span<Attribute const> attributes);

/// A value with copies of the elements. This is the cheapest way to build a list: two or more
/// elements take one object and one block of exactly their size. One element makes the same value
/// as `AttributeValue(element)`, and none the empty value of the type.
///
/// @tparam T  Named by the caller, or taken from the span.
/// @raises std::length_error: more than 2^32 - 1 elements.
template <impl::ElementType T>
AttributeValue make_list(std::span<T const> elements) {
    impl::ValueHolder holder(
        impl::ValueFactory<T>::create_value(elements.data(), elements.data() + elements.size()));
    AttributeValue value;
    value.swap_impl(holder);
    return value;
}

/// The same for the elements of a vector. A `std::vector<bool>` has no array of its elements.
template <impl::ElementType T>

requires(!std::same_as<T, bool>) AttributeValue make_list(std::vector<T> const & elements) {
    return make_list(std::span<T const>(elements));
}

/// The same for elements in braces.
///
///     AttributeValue const ports = make_list<long long>({80, 443});
template <impl::ElementType T>
AttributeValue make_list(std::initializer_list<T> elements) {
    return make_list(std::span<T const>(elements.begin(), elements.size()));
}

} // namespace vxattribute
