#include "vxcore/hex.h"
#include "vxuri/strict_syntax_internal.h"
#include "vxuri/uri_reference.h"

#include <algorithm>
#include <string_view>

// Each function checks one rule of RFC 3986, appendix A, on its whole argument. What splitting a
// reference guarantees is not checked again: no path contains a "?", for example.

namespace vxuri::impl {

namespace {

bool is_alpha(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool is_digit(char c) noexcept {
    return c >= '0' && c <= '9';
}

bool is_hex_digit(char c) noexcept {
    return vxcore::hex_value(c) >= 0;
}

bool is_one_of(char c, std::string_view set) noexcept {
    return set.find(c) != set.npos;
}

/// Unreserved characters and the sub-delimiters, which every component but the scheme may contain.
bool is_common(char c) noexcept {
    return is_alpha(c) || is_digit(c) || is_one_of(c, "-._~!$&'()*+,;=");
}

/// Removes `prefix` from `text` if `text` begins with it.
bool take(std::string_view & text, std::string_view prefix) noexcept {
    bool const found = text.starts_with(prefix);
    text.remove_prefix(found ? prefix.size() : 0);
    return found;
}

/// True if `text` contains only common characters, escapes and characters of `others`.
bool is_run(std::string_view text, std::string_view others) noexcept {
    while (!text.empty()) {
        if (take(text, "%")) {
            if (text.size() < 2 || !is_hex_digit(text[0]) || !is_hex_digit(text[1])) {
                return false;
            }
            text.remove_prefix(2);
        } else if (is_common(text.front()) || is_one_of(text.front(), others)) {
            text.remove_prefix(1);
        } else {
            return false;
        }
    }
    return true;
}

bool is_scheme(std::string_view text) noexcept {
    return !text.empty() && is_alpha(text.front()) &&
           std::all_of(text.begin(), text.end(),
                       [](char c) { return is_alpha(c) || is_digit(c) || is_one_of(c, "+-."); });
}

/// Passes over a number of 0 to 255 without leading zeros.
bool take_dec_octet(std::string_view & text) noexcept {
    // Up to four digits, which shows that a number is too long without overflow.
    std::size_t digits = 0;
    unsigned int value = 0;
    for (; digits < text.size() && digits < 4 && is_digit(text[digits]); ++digits) {
        value = value * 10 + static_cast<unsigned int>(text[digits] - '0');
    }
    bool const good = digits > 0 && value <= 255 && (digits == 1 || text.front() != '0');
    text.remove_prefix(digits);
    return good;
}

bool is_ipv4_address(std::string_view text) noexcept {
    for (int octet = 0; octet < 4; ++octet) {
        if ((octet > 0 && !take(text, ".")) || !take_dec_octet(text)) {
            return false;
        }
    }
    return text.empty();
}

bool is_ipv6_address(std::string_view text) noexcept {
    unsigned int groups = 0; // of 16 bits
    bool shortened = take(text, "::");
    while (!text.empty()) {
        if (is_ipv4_address(text)) {
            groups += 2;
            break;
        }
        std::size_t digits = 0;
        while (digits < text.size() && is_hex_digit(text[digits])) {
            ++digits;
        }
        text.remove_prefix(digits);
        ++groups;
        if (digits == 0 || digits > 4) {
            return false;
        }
        if (text.empty()) {
            break;
        }
        if (!shortened && take(text, "::")) {
            shortened = true; // here, and only here, the address may end
        } else if (!take(text, ":") || text.empty()) {
            return false;
        }
    }
    // "::" replaces at least one group of zeros.
    return shortened ? groups <= 7 : groups == 8;
}

/// The form "v", hexadecimal version, ".", address.
bool is_ipv_future(std::string_view text) noexcept {
    if (!take(text, "v") && !take(text, "V")) {
        return false;
    }
    std::size_t const dot = text.find('.');
    if (dot == 0 || dot == text.npos || dot + 1 == text.size()) {
        return false;
    }
    std::string_view const version = text.substr(0, dot);
    std::string_view const address = text.substr(dot + 1);
    return std::all_of(version.begin(), version.end(), is_hex_digit) &&
           std::all_of(address.begin(), address.end(),
                       [](char c) { return is_common(c) || c == ':'; });
}

bool is_host(std::string_view text) noexcept {
    if (take(text, "[")) {
        if (!text.ends_with(']')) {
            return false;
        }
        text.remove_suffix(1);
        return is_ipv6_address(text) || is_ipv_future(text);
    }
    return is_run(text, ""); // a registered name; an IPv4 address is one too
}

bool is_authority(UriReference const & reference) noexcept {
    std::string_view const authority = reference.authority();
    std::string_view const port = reference.port();
    std::size_t const at = authority.rfind('@');
    std::string_view const userInfo = authority.substr(0, at == authority.npos ? 0 : at);
    return is_run(userInfo, ":") && is_host(reference.host()) &&
           std::all_of(port.begin(), port.end(), is_digit);
}

/// Without a scheme a colon in the first segment would make one.
bool is_path(UriReference const & reference) noexcept {
    std::string_view const path = reference.path();
    bool const plain = !reference.has_scheme() && !reference.has_authority();
    return is_run(path, "/:@") && !(plain && is_one_of(':', path.substr(0, path.find('/'))));
}

} // namespace

bool is_strict_syntax(UriReference const & reference) noexcept {
    return (!reference.has_scheme() || is_scheme(reference.scheme())) && is_authority(reference) &&
           is_path(reference) && is_run(reference.query(), "/:@?") &&
           is_run(reference.fragment(), "/:@?");
}

} // namespace vxuri::impl
