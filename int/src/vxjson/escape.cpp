#include "vxcore/hex.h"
#include "vxjson/escape_impl.h"

namespace vxjson::impl {

namespace {

/// One \uXXXX escape.
struct HexEscape {
    char const * end; // the end of the escape, or the place of a missing digit
    int value;        // negative if a digit is missing
};

HexEscape read_hex_escape(char const * at, char const * limit) noexcept {
    int value = 0;
    at += 2;
    for (int i = 0; i < 4; ++i, ++at) {
        int const digit = at == limit ? -1 : vxcore::hex_value(*at);
        if (digit < 0) {
            return {at, -1};
        }
        value = value * 16 + digit;
    }
    return {at, value};
}

/// The character of a one-letter escape; 0 if there is no such escape.
char simple_escape(char c) noexcept {
    switch (c) {
    case '"':
    case '\\':
    case '/':
        return c;
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return '\0';
    }
}

bool is_high_surrogate(int unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
}

bool is_low_surrogate(int unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
}

Escape read_unicode_escape(char const * at, char const * limit) noexcept {
    constexpr char const * digit = "a hexadecimal digit";
    HexEscape const first = read_hex_escape(at, limit);
    if (first.value < 0) {
        return {first.end, 0, digit};
    }
    if (is_low_surrogate(first.value)) {
        return {at, 0, "the first half of a surrogate pair"};
    }
    if (!is_high_surrogate(first.value)) {
        return {first.end, first.value};
    }
    constexpr char const * half = "the second half of a surrogate pair";
    if (limit - first.end < 2 || first.end[0] != '\\' || first.end[1] != 'u') {
        return {first.end, 0, half};
    }
    HexEscape const second = read_hex_escape(first.end, limit);
    if (second.value < 0) {
        return {second.end, 0, digit};
    }
    if (!is_low_surrogate(second.value)) {
        return {first.end, 0, half};
    }
    return {second.end, 0x10000 + ((first.value & 0x3FF) << 10) + (second.value & 0x3FF)};
}

} // namespace

Escape read_escape(char const * at, char const * limit, bool singleQuotes) noexcept {
    char const * const letter = at + 1;
    if (letter != limit && *letter == 'u') {
        return read_unicode_escape(at, limit);
    }
    char const c = letter == limit ? '\0' : *letter;
    char const value = c == '\'' && singleQuotes ? c : simple_escape(c);
    if (value == '\0') {
        return {letter, 0, "an escape"};
    }
    return {letter + 1, value};
}

} // namespace vxjson::impl
