#include "vxattribute/convertable_value.h"

#include "vxattribute/core_elements.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/into.h"
#include "vxattribute/query/number_text_internal.h"
#include "vxattribute/to_text.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxcore/type_name.h"

#include <utility>

namespace vxattribute {

namespace {

// An overload returns false for a text that is not of its form, or raises the failure itself.

bool parse_text(std::string const & text, bool & result) {
    result =
        vxcore::impl::string_to_bool(text.data(), static_cast<unsigned int>(text.size()), nullptr);
    return true;
}

bool parse_text(std::string const & text, double & result) {
    result = vxcore::impl::string_to_double(text.data(), static_cast<unsigned int>(text.size()),
                                            nullptr);
    return true;
}

/// Every text is a reference.
bool parse_text(std::string const & text, vxuri::UriReference & result) {
    result = vxuri::UriReference::parse(text);
    return true;
}

template <typename T>
bool parse_text(std::string const & text, T & result) {
    return T::parse(text, result);
}

template <typename T>
T integer_from(AttributeValue const & value) {
    if (value.type() == ValueTypeId::typeString) {
        return impl::parse_integer<T>(value.get<std::string>());
    }
    long long const number = value.get<long long>();
    if (!std::in_range<T>(number)) {
        vxcore::impl::safe_cast_throw_value_truncated(vxcore::type_name(typeid(T)).c_str(),
                                                      vxcore::to_string(number));
    }
    return static_cast<T>(number);
}

/// Reads a signed 8-bit number, whether `char` is signed on this platform or not.
char char_from(AttributeValue const & value) {
    if (value.type() == ValueTypeId::typeString) {
        return static_cast<char>(impl::parse_signed_char(value.get<std::string>()));
    }
    long long const number = value.get<long long>();
    if (!std::in_range<signed char>(number)) {
        vxcore::impl::safe_cast_throw_value_truncated("char", vxcore::to_string(number));
    }
    return static_cast<char>(number);
}

template <typename T>
T element_from(AttributeValue const & value) {
    if (value.type() == impl::ValueTypeTraits<T>::type()) {
        return value.get<T>();
    }
    if (value.type() != ValueTypeId::typeString) {
        ConvertableValue::throw_no_conversion(value, typeid(T), "");
    }
    std::string const & text = value.get<std::string>();
    T result{};
    if (!parse_text(text, result)) {
        vxcore::impl::string_to_failure(text.data(), static_cast<unsigned int>(text.size()),
                                        vxcore::type_name(typeid(T)).c_str(), nullptr);
    }
    return result;
}

} // namespace

template <impl::Convertible T>
T ConvertableValue::convert_to() const {
    if constexpr (std::same_as<T, std::string>) {
        return m_value->get<std::string>();
    } else if constexpr (std::same_as<T, char>) {
        return char_from(*m_value);
    } else if constexpr (std::integral<T> && !std::same_as<T, bool>) {
        return integer_from<T>(*m_value);
    } else {
        return element_from<T>(*m_value);
    }
}

// All types that a value converts to. The template itself is not in the header.
#define VXATTRIBUTE_CONVERT(T) template T ConvertableValue::convert_to() const

VXATTRIBUTE_CONVERT(bool);
VXATTRIBUTE_CONVERT(char);
VXATTRIBUTE_CONVERT(signed char);
VXATTRIBUTE_CONVERT(unsigned char);
VXATTRIBUTE_CONVERT(short);
VXATTRIBUTE_CONVERT(unsigned short);
VXATTRIBUTE_CONVERT(int);
VXATTRIBUTE_CONVERT(unsigned int);
VXATTRIBUTE_CONVERT(long);
VXATTRIBUTE_CONVERT(unsigned long);
VXATTRIBUTE_CONVERT(long long);
VXATTRIBUTE_CONVERT(unsigned long long);
VXATTRIBUTE_CONVERT(double);
VXATTRIBUTE_CONVERT(std::string);
VXATTRIBUTE_CONVERT(vxcore::Uuid);
VXATTRIBUTE_CONVERT(vxuri::UriReference);
VXATTRIBUTE_CONVERT(vxcore::AbsoluteTime);
VXATTRIBUTE_CONVERT(vxcore::RelativeTime);
VXATTRIBUTE_CONVERT(vxcore::SimpleDateTime);

#undef VXATTRIBUTE_CONVERT

namespace {

[[noreturn]] void throw_no_conversion_to(std::string type, AttributeValue const & value,
                                         std::string const & info) {
    vxcore::ErrorComposer(info.empty() ? "Cannot convert value {@value} to type {@type}"
                                       : "Cannot convert value {@value} to type {@type}:\n{@info}")
        .param("value", to_text(value))
        .param("type", std::move(type))
        .param("info", info)
        .throw_error(error::vxattribute_query_typeConversion,
                     VXCORE_LOCATION("vxattribute::ConvertableValue::throw_no_conversion()"));
}

} // namespace

void ConvertableValue::throw_no_conversion(AttributeValue const & value,
                                           std::type_info const & type, std::string const & info) {
    throw_no_conversion_to(vxcore::type_name(type), value, info);
}

void impl::throw_not_readable(AttributeValue const & value, std::type_info const & type) {
    // The name of the template behind std::string helps nobody.
    throw_no_conversion_to(type == typeid(std::string) ? "std::string" : vxcore::type_name(type),
                           value, "");
}

} // namespace vxattribute
