#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/elements.h"

/// Typed access to the elements of a map, with messages that name the attribute.
///
/// | the value is  | absent   | null     | empty    | one element | several  |
/// |---------------|----------|----------|----------|-------------|----------|
/// | `get`         | raises   | raises   | raises   | it          | raises   |
/// | `get_or`      | default  | raises   | raises   | a copy      | raises   |
/// | `find`        | null     | raises   | null     | its address | raises   |
/// | `get_list`    | none     | raises   | none     | one         | all      |
///
/// A value of another type than `T` raises in all four. `T` is an element type; any other does not
/// compile. Each call is one lookup. References, pointers and spans are valid until the map is
/// changed or destroyed, so do not take them from a temporary map. Make names once and reuse them:
/// making one costs more than the lookup.
///
///     static AttributeName const port("port");
///     long long const number = get_or<long long>(settings, port, 8080);
namespace vxattribute {

namespace impl {

/// Gives the functions below access to the protected checks of maps.
class MapAccess : AttributeMapBase {
  public:
    using AttributeMapBase::check_attribute_of_type;
    using AttributeMapBase::check_scalar_of_type;
    using AttributeMapBase::throw_attribute_not_found;

    MapAccess() = delete;
};

} // namespace impl

/// The one element of that name. The other three differ in what an absent name means.
///
///     std::string const & host = get<std::string>(settings, "host");
///
/// @keeps  The reference is valid until the map is changed or destroyed.
/// @raises error.vxattribute.map.attributeNotFound: the name is absent.
/// @raises error.vxattribute.value.type.mismatch: the value is of another type.
/// @raises error.vxattribute.value.cardinality.expectSingle: it has no or several elements.
template <impl::ElementType T>
T const & get(AttributeMapBase const & map VXCORE_LIFETIMEBOUND, AttributeName const & name) {
    AttributeValue const * const value = map.query_ptr(name);
    if (value == nullptr) {
        impl::MapAccess::throw_attribute_not_found(name);
    }
    impl::MapAccess::check_scalar_of_type(name, *value, impl::ValueTypeTraits<T>::type());
    return value->get<T>();
}

/// The one element of that name, or `defaultValue` when the name is absent. A value that is present
/// is checked as by `get`; null and empty values do not mean the default.
///
/// @param defaultValue  Is moved into the result when the name is absent.
/// @return A copy, so nothing dangles.
/// @raises As `get`, apart from attributeNotFound; what copying the element raises.
template <impl::ElementType T>
T get_or(AttributeMapBase const & map, AttributeName const & name, T defaultValue) {
    AttributeValue const * const value = map.query_ptr(name);
    if (value == nullptr) {
        return defaultValue;
    }
    impl::MapAccess::check_scalar_of_type(name, *value, impl::ValueTypeTraits<T>::type());
    return value->get<T>();
}

/// The one element of that name; a null pointer when the name is absent or its value is empty.
///
///     if (auto const * const port = find<long long>(settings, "port")) { listen(*port); }
///
/// @keeps  The pointer is valid until the map is changed or destroyed.
/// @raises error.vxattribute.value.type.mismatch: the value is of another type, null included.
/// @raises error.vxattribute.value.cardinality.expectSingle: several elements.
template <impl::ElementType T>
T const * find(AttributeMapBase const & map VXCORE_LIFETIMEBOUND, AttributeName const & name) {
    AttributeValue const * const value = map.query_ptr(name);
    if (value == nullptr) {
        return nullptr;
    }
    impl::MapAccess::check_attribute_of_type(name, *value, impl::ValueTypeTraits<T>::type());
    if (value->empty()) {
        return nullptr;
    }
    impl::MapAccess::check_scalar_of_type(name, *value, impl::ValueTypeTraits<T>::type());
    return value->begin<T>();
}

/// All elements of that name; none when the name is absent or its value is empty.
///
///     for (std::string const & server : get_list<std::string>(settings, "servers")) { ... }
///
/// @keeps  The span is valid until the map is changed or destroyed.
/// @raises error.vxattribute.value.type.mismatch: the value is of another type, null included.
template <impl::ElementType T>
std::span<T const> get_list(AttributeMapBase const & map VXCORE_LIFETIMEBOUND,
                            AttributeName const & name) {
    AttributeValue const * const value = map.query_ptr(name);
    if (value == nullptr) {
        return {};
    }
    impl::MapAccess::check_attribute_of_type(name, *value, impl::ValueTypeTraits<T>::type());
    return elements<T>(*value);
}

} // namespace vxattribute
