#pragma once

#include "vxattribute/vxattribute.h"

#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// Models that convert texts to values in plain steps. They share nothing with the libraries.
namespace vxfuzz {

/// Returns what a target holds before a conversion. A failure must leave it as it is.
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

/// Returns true for 32 hexadecimal digits, with no dashes or with all four.
bool is_uuid(std::string_view text);

/// Returns true when each field is in range beyond doubt: no year far out, no day after the 28th.
bool is_sure_date(vxcore::SimpleDateTime::Fields const & fields);

/// Converts a text to a number. Returns null when it is none or beyond the range of a double.
std::optional<double> plain_double(std::string const & text);

struct PlainInteger {
    bool isNegative;
    unsigned long long magnitude;
    bool isBeyond; // the magnitude is out of range
};

/// Converts digits after at most one sign. Returns null for any other text.
std::optional<PlainInteger> plain_digits(std::string_view text);

/// Returns true when the number is in the range of `T`. A `char` is a signed number.
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

/// Returns the trace level that the value holds: an integer, or a text with a name or a number.
/// Returns null when it holds none. Does not check the range of levels.
std::optional<int> plain_level(vxattribute::AttributeValue const & value);

/// Changes the case of the hexadecimal letters in escapes.
std::string flip_escapes(std::string text);

/// Compares two texts as references do: by signed bytes, after escapes are folded to lower case.
/// Returns -1, 0 or 1.
int order_of_references(std::string a, std::string b);

/// Returns false when a character may be in no reference, or a "%" begins no escape.
bool has_only_uri_characters(std::string_view text);

/// Checks that the components make up the text, each in its place.
void check_components(vxuri::UriReference const & reference);

} // namespace vxfuzz
