#include "text_models.h"

#include "check.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vxfuzz {

using namespace vxattribute;

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool is_hex_digit(char c) {
    return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Takes the digits off the front and returns their number.
std::size_t take_digits(std::string_view & text) {
    std::size_t count = 0;
    while (count < text.size() && is_digit(text[count])) {
        ++count;
    }
    text.remove_prefix(count);
    return count;
}

bool take(std::string_view & text, std::string_view set) {
    bool const found = !text.empty() && set.find(text.front()) != set.npos;
    text.remove_prefix(found ? 1 : 0);
    return found;
}

bool is_decimal(std::string_view text) {
    std::size_t digits = take_digits(text);
    if (take(text, ".")) {
        digits += take_digits(text);
    }
    if (digits != 0 && take(text, "eE")) {
        take(text, "+-");
        digits = take_digits(text);
    }
    return digits != 0 && text.empty();
}

/// Applies `change` to the two characters after each "%".
template <typename Change>
std::string change_escapes(std::string text, Change change) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '%') {
            std::size_t const last = std::min(at + 2, text.size() - 1);
            while (at < last) {
                ++at;
                text[at] = change(text[at]);
            }
        }
    }
    return text;
}

} // namespace

std::string lower_case(std::string text) {
    for (char & c : text) {
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    }
    return text;
}

bool is_uuid(std::string_view text) {
    bool const hasDashes = text.size() == 36;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const isDash = hasDashes && (i == 8 || i == 13 || i == 18 || i == 23);
        if (isDash ? text[i] != '-' : !is_hex_digit(text[i])) {
            return false;
        }
    }
    return hasDashes || text.size() == 32;
}

bool is_sure_date(vxcore::SimpleDateTime::Fields const & fields) {
    return fields.year >= -20000 && fields.year <= 20000 && fields.month >= 1 &&
           fields.month <= 12 && fields.day >= 1 && fields.day <= 28 && fields.hour < 24 &&
           fields.minute < 60 && fields.second < 60 && fields.fraction < 10'000'000;
}

std::optional<double> plain_double(std::string const & text) {
    std::string_view rest = text;
    take(rest, "+-");
    std::string const word = lower_case(std::string(rest));
    bool const isWord = word == "inf" || word == "infinity" || word == "nan";
    if (!isWord && !is_decimal(rest)) {
        return std::nullopt;
    }
    double const number = std::strtod(text.c_str(), nullptr);
    return !isWord && std::isinf(number) ? std::nullopt : std::optional(number);
}

std::optional<PlainInteger> plain_digits(std::string_view text) {
    constexpr unsigned long long most = std::numeric_limits<unsigned long long>::max();
    PlainInteger result{text.starts_with('-'), 0, false};
    take(text, "+-");
    if (text.empty() || !std::all_of(text.begin(), text.end(), is_digit)) {
        return std::nullopt;
    }
    for (char const c : text) {
        auto const digit = static_cast<unsigned int>(c - '0');
        result.isBeyond = result.isBeyond || result.magnitude > (most - digit) / 10;
        result.magnitude = result.magnitude * 10 + digit;
    }
    return result;
}

std::optional<int> plain_level(AttributeValue const & value) {
    if (value.size() > 1) {
        return std::nullopt;
    }
    if (value.type() == ValueTypeId::typeInteger) {
        return static_cast<int>(value.get<long long>());
    }
    if (value.type() != ValueTypeId::typeString) {
        return std::nullopt;
    }
    std::string const name = lower_case(value.get<std::string>());
    static constexpr std::pair<char const *, int> names[] = {
        {"never", -1}, {"status", 41}, {"note", 61}, {"verbose", 81}, {"always", 100}};
    for (auto const & [known, level] : names) {
        if (name == known) {
            return level;
        }
    }
    return plain_integer<signed char>(name);
}

std::string flip_escapes(std::string text) {
    return change_escapes(std::move(text), [](char c) {
        return is_hex_digit(c) && is_letter(c) ? static_cast<char>(c ^ 0x20) : c;
    });
}

int order_of_references(std::string a, std::string b) {
    auto const fold = [](char c) {
        return static_cast<char>(c >= 'A' && c <= 'F' ? c + ('a' - 'A') : c);
    };
    a = change_escapes(std::move(a), fold);
    b = change_escapes(std::move(b), fold);
    auto const less = [](char x, char y) {
        return static_cast<signed char>(x) < static_cast<signed char>(y);
    };
    bool const isLess = std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), less);
    return isLess ? -1 : a == b ? 0 : 1;
}

bool has_only_uri_characters(std::string_view text) {
    constexpr std::string_view signs = "-._~:/?#[]@!$&'()*+,;=";
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            if (i + 2 >= text.size() || !is_hex_digit(text[i + 1]) || !is_hex_digit(text[i + 2])) {
                return false;
            }
        } else if (!is_letter(text[i]) && !is_digit(text[i]) && signs.find(text[i]) == signs.npos) {
            return false;
        }
    }
    return true;
}

void check_components(vxuri::UriReference const & reference) {
    std::string text;
    if (reference.has_scheme()) {
        text.append(reference.scheme()) += ':';
    }
    if (reference.has_authority()) {
        text.append("//").append(reference.authority());
    }
    text.append(reference.path());
    if (reference.has_query()) {
        text.append("?").append(reference.query());
    }
    if (reference.has_fragment()) {
        text.append("#").append(reference.fragment());
    }
    check(text == reference.text(), "the components make up the text");

    std::string_view const authority = reference.authority();
    std::string_view const host = reference.host();
    std::size_t const at = authority.rfind('@');
    std::string_view rest = authority.substr(at == authority.npos ? 0 : at + 1);
    check(rest.starts_with(host), "the host follows the user information");
    rest.remove_prefix(host.size());
    check(rest.empty() ? reference.port().empty() : rest.substr(1) == reference.port(),
          "the port follows the host");
}

} // namespace vxfuzz
