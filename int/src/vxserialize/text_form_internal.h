#pragma once

#include <array>

/// Characters of the text form, as docs/formats/text.md tells it.
namespace vxserialize::impl::text {

enum ECharClass : unsigned char {
    eChar_Blank = 1, // stands between tokens
    eChar_Plain = 2, // stands for itself in a string
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
    // Neither the marks of the string itself nor anything that the texts around it may give a
    // meaning to.
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

/// The value of a hexadecimal digit of either case, -1 for another character.
inline int hex_value(int c) noexcept {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

} // namespace vxserialize::impl::text
