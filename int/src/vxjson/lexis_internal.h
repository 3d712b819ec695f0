#pragma once

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

/// The result of `scan_number`.
struct NumberScan {
    char const * end;      ///< the end of the number, or the byte that breaks the grammar
    char const * expected; ///< what is missing at `end`; null for a valid number
};

/// Skips one or more digits. Returns null if there is none.
constexpr char const * skip_digits(char const * at, char const * limit) noexcept {
    char const * const start = at;
    while (at != limit && is_byte(*at, eByte_Digit)) {
        ++at;
    }
    return at == start ? nullptr : at;
}

/// Scans the number at `at` by the grammar of RFC 8259, section 6. The caller checks what follows.
constexpr NumberScan scan_number(char const * at, char const * limit) noexcept {
    constexpr char const * digit = "a digit";
    if (at != limit && *at == '-') {
        ++at;
    }
    if (at != limit && *at == '0') {
        ++at; // no digit may follow
    } else if (char const * const end = skip_digits(at, limit)) {
        at = end;
    } else {
        return {at, digit};
    }
    if (at != limit && *at == '.') {
        char const * const end = skip_digits(++at, limit);
        if (end == nullptr) {
            return {at, digit};
        }
        at = end;
    }
    if (at != limit && (*at == 'e' || *at == 'E')) {
        ++at;
        if (at != limit && (*at == '+' || *at == '-')) {
            ++at;
        }
        char const * const end = skip_digits(at, limit);
        return {end == nullptr ? at : end, end == nullptr ? digit : nullptr};
    }
    return {at, nullptr};
}

} // namespace vxjson::impl
