#pragma once

#include "vxattribute/attribute_access.h"
#include "vxattribute/convertable_value.h"

/// Numbers of any C++ type from Integer and Double values, exact or not at all. JSON and people
/// write 2 and 2.0 for the same number, so a setting may have either type.
///
///     double const timeout = get_number<double>(config, "timeout");   // from 2 or 2.5
///     int const retries = get_number_or<int>(config, "retries", 3);   // from 5 or 5.0
///
/// | read as       | Integer                            | Double                                 |
/// |---------------|------------------------------------|----------------------------------------|
/// | integer type  | if in the range of the type        | if whole and in the range              |
/// | floating type | if the type has exactly the number | always as `double`; rounded as `float` |
///
/// A finite Double beyond the range of `float` raises. NaN and infinity are in every floating type
/// and in no integer type. Texts are no numbers here: `into` (into.h) and ConvertableValue parse
/// them.
///
/// Errors of all functions.
/// - error.vxcore.conversion.truncated: the number is not whole, not exact or out of range. The
///   message says which, and names the type and the attribute.
/// - error.vxattribute.value.type.mismatch: neither Integer nor Double; null too.
/// - error.vxattribute.value.cardinality.expectSingle: no or several elements.
namespace vxattribute {

namespace impl {

/// Integer and floating types, without bool and characters. `signed char` and `unsigned char` are
/// numbers of one byte.
template <typename T>
concept Number =
    is_one_of<T, signed char, unsigned char, short, unsigned short, int, unsigned int, long,
              unsigned long, long long, unsigned long long, float, double, long double>;

/// The number in the value. Messages begin with `name` unless it is null.
template <Number T>
VXATTRIBUTE_API T number_from(AttributeValue const & value, AttributeName const * name);

} // namespace impl

/// The number of that name.
///
/// @raises error.vxattribute.map.attributeNotFound: the name is absent.
template <impl::Number T>
T get_number(AttributeMapBase const & map, AttributeName const & name) {
    AttributeValue const * const value = map.query_ptr(name);
    if (value == nullptr) {
        impl::MapAccess::throw_attribute_not_found(name);
    }
    return impl::number_from<T>(*value, &name);
}

/// The number of that name, or `defaultValue` when the name is absent. A value that is present is
/// checked as by `get_number`: null and empty values do not mean the default.
template <impl::Number T>
T get_number_or(AttributeMapBase const & map, AttributeName const & name, T defaultValue) {
    AttributeValue const * const value = map.query_ptr(name);
    return value == nullptr ? defaultValue : impl::number_from<T>(*value, &name);
}

/// The number in a value.
template <impl::Number T>
T get_number(AttributeValue const & value) {
    return impl::number_from<T>(value, nullptr);
}

} // namespace vxattribute
