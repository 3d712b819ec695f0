#pragma once

#include "vxattribute/vxattribute.h"

#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// What texts mean as values, in plain steps that share nothing with the libraries.
namespace vxfuzz {

/// A target that a failure must leave as it is.
template <typename T>
T sample() {
    if constexpr (std::is_same_v<T, std::string>) {
        return "kept";
    } else if constexpr (std::is_same_v<T, vxuri::UriReference>) {
        return vxuri::UriReference::parse("kept");
    } else if constexpr (std::is_same_v<T, vxcore::Uuid>) {
        return vxcore::Uuid(vxcore::Uuid::BinaryData{7, 7});
    } else {
        return T(77);
    }
}

std::string lower_case(std::string text);

/// 32 hexadecimal digits, alone or with the four dashes.
bool is_uuid(std::string_view text);

/// Fields that are in range beyond doubt.
bool is_sure_date(vxcore::SimpleDateTime::Fields const & fields);

/// The number of a text that is one and in the range of a double.
std::optional<double> plain_double(std::string const & text);

struct PlainInteger {
    bool isNegative;
    unsigned long long magnitude;
    bool isBeyond; // the range of the magnitude
};

/// The number of a text of digits after at most one sign.
std::optional<PlainInteger> plain_digits(std::string_view text);

/// Whether the number is in the range of `T`; a `char` is a signed number.
template <typename T>
bool fits(long long number) {
    if constexpr (std::is_same_v<T, char>) {
        return std::in_range<signed char>(number);
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return std::in_range<T>(number);
    } else {
        return true;
    }
}

template <typename T>
std::optional<T> plain_integer(std::string_view text) {
    using Limits = std::numeric_limits<std::conditional_t<std::is_same_v<T, char>, signed char, T>>;
    auto const digits = plain_digits(text);
    if (!digits || digits->isBeyond || (digits->isNegative && !Limits::is_signed)) {
        return std::nullopt;
    }
    auto const most = static_cast<unsigned long long>(Limits::max());
    if (digits->magnitude > most + (digits->isNegative ? 1 : 0)) {
        return std::nullopt;
    }
    return static_cast<T>(digits->isNegative ? 0 - digits->magnitude : digits->magnitude);
}

/// The trace level that the value holds.
std::optional<int> plain_level(vxattribute::AttributeValue const & value);

/// The text with the letters of escapes in the other case.
std::string flip_escapes(std::string text);

/// -1, 0 or 1: the order of two texts as references.
int order_of_references(std::string a, std::string b);

/// False for a text with a character that no reference has, or a "%" that begins no escape.
bool has_only_uri_characters(std::string_view text);

/// Checks that the components make up the text, each in its place.
void check_components(vxuri::UriReference const & reference);

} // namespace vxfuzz
