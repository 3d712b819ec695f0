#pragma once

/// Hexadecimal digits. No function depends on the locale.
///
///     text += hex_digit(byte >> 4); // a byte as two digits, the upper half first
///     text += hex_digit(byte);
namespace vxcore {

/// The lower-case hexadecimal digit of the low four bits of `value`.
constexpr char hex_digit(unsigned int value) noexcept {
    return "0123456789abcdef"[value & 15];
}

/// As `hex_digit`, in upper case.
constexpr char upper_hex_digit(unsigned int value) noexcept {
    return "0123456789ABCDEF"[value & 15];
}

/// The value of a hexadecimal digit of either case, 0 to 15; -1 for any other character, and for a
/// negative `c` such as the end of a file. `c` may be a `char`, signed or not.
constexpr int hex_value(int c) noexcept {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace vxcore
