#pragma once

#include "vxserialize/element_kind.h"

#include <array>
#include <bit>
#include <cstring>

/// The binary form, as docs/formats/binary.md tells it: the first byte of each element.
namespace vxserialize::impl::binary {

inline constexpr unsigned int string_small = 0x00; // size in the low 6 bits
inline constexpr unsigned int string_small_max = 63;
inline constexpr unsigned int integer_small = 0x40; // value + 8 in the low 6 bits
inline constexpr int integer_small_min = -8;
inline constexpr int integer_small_max = 55;
inline constexpr unsigned int unsigned_small = 0x80; // value in the low 5 bits
inline constexpr unsigned int unsigned_small_max = 31;
inline constexpr unsigned int list_small = 0xA0; // count in the low 5 bits
inline constexpr unsigned int list_small_max = 31;
inline constexpr unsigned int block_small = 0xC0; // size of a binary block, up to 23
inline constexpr unsigned int block_small_max = 23;

// Behind these stand 1 to 4 bytes (integers: 1 to 8), by the distance from the first of the row.
inline constexpr unsigned int block_wide = 0xD8;
inline constexpr unsigned int string_wide = 0xDC;
inline constexpr unsigned int integer_wide = 0xE0;
inline constexpr unsigned int unsigned_wide = 0xE8;
inline constexpr unsigned int list_wide = 0xEC;

inline constexpr unsigned int null_value = 0xF0;
inline constexpr unsigned int false_value = 0xF1;
inline constexpr unsigned int true_value = 0xF2;
inline constexpr unsigned int double_value = 0xF3;
inline constexpr unsigned int absolute_time = 0xF4;
inline constexpr unsigned int relative_time = 0xF5;
inline constexpr unsigned int uuid = 0xF6;
inline constexpr unsigned int record_begin = 0xF7;
inline constexpr unsigned int record_end = 0xF8;
inline constexpr unsigned int version_mark = 0xFF; // as the first byte of a stream only
inline constexpr unsigned int version = 1;

/// The longest element but strings and binary blocks: a UUID.
inline constexpr unsigned int max_element_size = 17;

/// The kind of an element by its first byte.
inline constexpr std::array<unsigned char, 256> kinds = [] {
    std::array<unsigned char, 256> table{};
    auto const fill = [&table](unsigned int first, unsigned int last, EElementKind kind) {
        for (unsigned int tag = first; tag <= last; ++tag) {
            table[tag] = static_cast<unsigned char>(kind);
        }
    };
    fill(string_small, integer_small - 1, eElement_String);
    fill(integer_small, unsigned_small - 1, eElement_Integer);
    fill(unsigned_small, list_small - 1, eElement_Unsigned);
    fill(list_small, block_small - 1, eElement_List);
    fill(block_small, string_wide - 1, eElement_Binary);
    fill(string_wide, integer_wide - 1, eElement_String);
    fill(integer_wide, unsigned_wide - 1, eElement_Integer);
    fill(unsigned_wide, list_wide - 1, eElement_Unsigned);
    fill(list_wide, null_value - 1, eElement_List);
    fill(null_value, null_value, eElement_Null);
    fill(false_value, true_value, eElement_Boolean);
    fill(double_value, double_value, eElement_Double);
    fill(absolute_time, absolute_time, eElement_AbsoluteTime);
    fill(relative_time, relative_time, eElement_RelativeTime);
    fill(uuid, uuid, eElement_Uuid);
    fill(record_begin, record_begin, eElement_Record);
    return table;
}();

/// `value` with its low byte first in memory, and back.
inline unsigned long long little_endian(unsigned long long value) noexcept {
    static_assert(sizeof(value) == 8);
    if constexpr (std::endian::native == std::endian::big) {
        value = __builtin_bswap64(value);
    }
    return value;
}

/// Writes all 8 bytes, of which the caller keeps as many as it needs.
inline void store(unsigned char * out, unsigned long long value) noexcept {
    value = little_endian(value);
    std::memcpy(out, &value, sizeof(value));
}

inline unsigned long long load(unsigned char const * in) noexcept {
    unsigned long long value = 0;
    std::memcpy(&value, in, sizeof(value));
    return little_endian(value);
}

/// Bytes that `value` needs, at least one.
inline unsigned int width_of(unsigned long long value) noexcept {
    return (static_cast<unsigned int>(std::bit_width(value | 1)) + 7) / 8;
}

/// The same for a number in two's complement, whose top bit is the sign.
inline unsigned int signed_width_of(long long value) noexcept {
    auto const bits = static_cast<unsigned long long>(value < 0 ? ~value : value);
    return static_cast<unsigned int>(std::bit_width(bits)) / 8 + 1;
}

} // namespace vxserialize::impl::binary
