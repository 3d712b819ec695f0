#pragma once

// Included by the readers and writers of JSON, here and in vxattribute; not for direct use.

#include <array>
#include <cstddef>

namespace vxjson::impl {

/// The longest piece of text in one token, in bytes: sizes of slices are 32 bits wide.
constexpr std::ptrdiff_t max_run = 1 << 30;

/// Classes of bytes outside strings. A byte may be in several.
enum EByte : unsigned char {
    eByte_Blank = 1,
    eByte_Punctuator = 2,
    eByte_Digit = 4,
    eByte_NameStart = 8, ///< letters, "_", "$" and bytes from 0x80 on
};

constexpr std::array<unsigned char, 256> make_byte_table() {
    std::array<unsigned char, 256> table{};
    auto const mark = [&table](char const * bytes, unsigned char kind) {
        for (; *bytes != '\0'; ++bytes) {
            table[static_cast<unsigned char>(*bytes)] |= kind;
        }
    };
    mark(" \t\r\n", eByte_Blank);
    mark("{}[],:", eByte_Punctuator);
    mark("0123456789", eByte_Digit);
    mark("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$", eByte_NameStart);
    for (std::size_t byte = 0x80; byte < table.size(); ++byte) {
        table[byte] |= eByte_NameStart;
    }
    return table;
}

inline constexpr std::array<unsigned char, 256> byte_table = make_byte_table();

/// True when the byte is in one of the classes `kinds`.
constexpr bool is_byte(char c, int kinds) noexcept {
    return (byte_table[static_cast<unsigned char>(c)] & kinds) != 0;
}

} // namespace vxjson::impl
