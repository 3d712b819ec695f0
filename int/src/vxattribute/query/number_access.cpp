#include "vxattribute/number_access.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxcore/type_name.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace vxattribute::impl {

namespace {

/// Shortest decimal text; independent of the locale.
template <typename T>
std::string text_of(T number) {
    char buffer[64]; // the longest, of a long double, has 27 bytes
    return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

/// A failure in the making, which still lacks the parameters that only its own message has.
vxcore::ErrorComposer failure(char const * message, std::type_info const & type,
                              AttributeName const * name) {
    std::string text = name == nullptr ? "" : "Attribute '{@name}': ";
    vxcore::ErrorComposer composer{vxcore::SourceString(text += message)};
    if (name != nullptr) {
        composer.param("name", name->value());
    }
    composer.param("type", vxcore::type_name(type));
    return composer;
}

constexpr char const function[] = "vxattribute::get_number()";

template <typename T, typename From>
[[noreturn]] void fail_conversion(char const * message, From number, AttributeName const * name) {
    using Limits = std::numeric_limits<T>;
    failure(message, typeid(T), name)
        .param("value", text_of(number))
        .param("lowest", text_of(Limits::lowest()))
        .param("highest", text_of(Limits::max()))
        .throw_error(vxcore::error::vxcore_conversion_truncated, VXCORE_LOCATION(function));
}

constexpr char const outOfRange[] =
    "{@value} does not fit into {@type}, which is from {@lowest} to {@highest}";

template <Number T>
T convert(long long number, AttributeName const * name) {
    if constexpr (std::integral<T>) {
        if (!std::in_range<T>(number)) {
            fail_conversion<T>(outOfRange, number, name);
        }
        return static_cast<T>(number);
    } else {
        // 2^63 is above all integers, and converting it back would be undefined.
        T const result = static_cast<T>(number);
        if (result >= static_cast<T>(0x1p63) || static_cast<long long>(result) != number) {
            fail_conversion<T>("{@type} has no number equal to {@value}", number, name);
        }
        return result;
    }
}

template <Number T>
T convert(double number, AttributeName const * name) {
    using Limits = std::numeric_limits<T>;
    if constexpr (std::integral<T>) {
        if (std::isnan(number) || (std::isfinite(number) && std::trunc(number) != number)) {
            fail_conversion<T>("{@value} is not a whole number, as {@type} requires", number, name);
        }
        // The largest integer may not exist as a double, but the power of two above it does.
        if (number < static_cast<double>(Limits::min()) ||
            number >= std::ldexp(1.0, Limits::digits)) {
            fail_conversion<T>(outOfRange, number, name);
        }
    } else if (std::isfinite(number) && std::fabs(number) > Limits::max()) {
        fail_conversion<T>(outOfRange, number, name);
    }
    return static_cast<T>(number);
}

} // namespace

template <Number T>
T number_from(AttributeValue const & value, AttributeName const * name) {
    bool const isInteger = value.type() == ValueTypeId::typeInteger;
    if (!isInteger && value.type() != ValueTypeId::typeDouble) {
        failure("Expecting a number for {@type}; actual type '{@actualType}'", typeid(T), name)
            .param("actualType", value.type().name())
            .throw_error(error::vxattribute_value_type_mismatch, VXCORE_LOCATION(function));
    }
    if (value.size() != 1) {
        failure("Expecting one number for {@type}, found {@cardinality}", typeid(T), name)
            .param("cardinality", vxcore::to_string(value.size()))
            .throw_error(error::vxattribute_value_cardinality_expectSingle,
                         VXCORE_LOCATION(function));
    }
    return isInteger ? convert<T>(value.get<long long>(), name)
                     : convert<T>(value.get<double>(), name);
}

// The template itself is not in the header.
#define VXATTRIBUTE_NUMBER(T)                                                                      \
    template T number_from<T>(AttributeValue const &, AttributeName const *)

VXATTRIBUTE_NUMBER(signed char);
VXATTRIBUTE_NUMBER(unsigned char);
VXATTRIBUTE_NUMBER(short);
VXATTRIBUTE_NUMBER(unsigned short);
VXATTRIBUTE_NUMBER(int);
VXATTRIBUTE_NUMBER(unsigned int);
VXATTRIBUTE_NUMBER(long);
VXATTRIBUTE_NUMBER(unsigned long);
VXATTRIBUTE_NUMBER(long long);
VXATTRIBUTE_NUMBER(unsigned long long);
VXATTRIBUTE_NUMBER(float);
VXATTRIBUTE_NUMBER(double);
VXATTRIBUTE_NUMBER(long double);

#undef VXATTRIBUTE_NUMBER

} // namespace vxattribute::impl
