#pragma once

#include "vxcore/hex.h"

#include <array>
#include <charconv>
#include <string_view>

/// The characters and numbers of the text form, which docs/formats/text.md specifies.
namespace vxserialize::impl::text {

enum ECharClass : unsigned char {
    eChar_Blank = 1, // may separate tokens
    eChar_Plain = 2, // needs no escape in a string
    eChar_Word = 4   // part of a number, a name or a time
};

inline constexpr std::array<unsigned char, 256> char_classes = [] {
    std::array<unsigned char, 256> table{};
    auto const add = [&table](char const * chars, unsigned char value) {
        for (; *chars != '\0'; ++chars) {
            table[static_cast<unsigned char>(*chars)] |= value;
        }
    };
    for (unsigned int c = 0x20; c <= 0x7E; ++c) {
        table[c] = eChar_Plain;
    }
    // Escaped: the marks of strings, and what has a meaning in JSON or in a shell.
    for (char const c : {'%', '<', '>', '"', '\'', '\\', '`'}) {
        table[static_cast<unsigned char>(c)] = 0;
    }
    add(" \t\n\r", eChar_Blank);
    add("0123456789+-.", eChar_Word);
    add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", eChar_Word);
    return table;
}();

inline bool is_char(int c, ECharClass charClass) noexcept {
    return c >= 0 && (char_classes[static_cast<unsigned char>(c)] & charClass) != 0;
}

inline bool is_digit(int c) noexcept {
    return c >= '0' && c <= '9';
}

using vxcore::hex_value;

/// Parses all of `text` as a decimal number. False if it is none or out of range.
template <typename T>
bool parse_number(std::string_view text, T & value) noexcept {
    char const * const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

/// A NaN is written as its bits in hexadecimal digits: "nan(7ff8000000000001)".
inline constexpr std::string_view nan_prefix = "nan(";
inline constexpr unsigned int nan_digits = 16;

} // namespace vxserialize::impl::text
