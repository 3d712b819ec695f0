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
/// A value of another type than `T` raises in all four. `T` is an element type, such as `long long`
/// for any integer; another one does not compile, and the message says what to write. Numbers of
/// all C++ types, from Integer or Double, are in number_access.h. Each call is one lookup.
/// References, pointers and spans are valid until the map is changed or destroyed, so do not take
/// them from a temporary map. Make names once and reuse them: making one costs more than the
/// lookup.
///
///     static AttributeName const port("port");
///     long long const number = get_or(settings, port, 8080);
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

/// Only its explanation of `T` matters: it is never called.
template <typename T>
[[noreturn]] void refuse_type() {
    static_assert(ElementType<T>,
                  "This is no element type. For integers write long long, as in "
                  "get<long long>(map, name), or get_number<int>(map, name) of number_access.h, "
                  "which checks the range; for texts write std::string, for fractions double.");
    __builtin_unreachable();
}

/// Without enumerators. As the first parameter of a template it keeps callers from naming the type.
enum class NotNamed {};

/// A default of a type that is no element type itself, such as an int or a literal text.
template <typename A>
concept OtherArgument = !ElementType<A>;

/// The element type that means the same; void if there is none.
template <typename A>
using DefaultElementType =
    std::conditional_t<std::same_as<A, char const *> || std::same_as<A, char *>, std::string,
                       ArgumentElementType<A>>;

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

/// The same, with the type taken from the default: std::string from any text, `long long` from an
/// integer that it can hold, double from a float.
///
///     std::string const host = get_or(settings, "host", "localhost");
///     long long const retries = get_or(settings, "retries", 3);
///     double const ratio = get_or(settings, "ratio", 0.5);       // a Double, not an Integer
template <impl::NotNamed = impl::NotNamed(), impl::OtherArgument A>
auto get_or(AttributeMapBase const & map, AttributeName const & name, A defaultValue) {
    using T = impl::DefaultElementType<A>;
    if constexpr (std::same_as<T, void>) {
        impl::refuse_type<A>();
    } else {
        return get_or<T>(map, name, T(defaultValue));
    }
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

/// For other types than those of elements: these do not compile, and say why.
template <impl::OtherArgument T>
T const & get(AttributeMapBase const &, AttributeName const &) {
    impl::refuse_type<T>();
}

template <impl::OtherArgument T>
T get_or(AttributeMapBase const &, AttributeName const &, std::type_identity_t<T>) {
    impl::refuse_type<T>();
}

template <impl::OtherArgument T>
T const * find(AttributeMapBase const &, AttributeName const &) {
    impl::refuse_type<T>();
}

template <impl::OtherArgument T>
std::span<T const> get_list(AttributeMapBase const &, AttributeName const &) {
    impl::refuse_type<T>();
}

} // namespace vxattribute
