#pragma once

// Included by the reader and the writer of the form; not for direct use.

#include "vxserialize/element_kind.h"

#include <array>
#include <bit>
#include <cstring>

/// The binary form, which docs/formats/binary.md specifies: the first byte of each element, its
/// tag.
namespace vxserialize::impl::binary {

/// The tags of elements that start with an unsigned number: a size, a count or the value itself.
struct NumberTags {
    EElementKind kind;
    unsigned int small;     // tag of 0; numbers up to `small_max` are added to it
    unsigned int small_max; // the largest number that fits into the tag
    unsigned int wide;      // tag of a number in 1 byte after it, followed by the tags of 2 to 4
};

inline constexpr NumberTags string_tags{eElement_String, 0x00, 63, 0xDC};
inline constexpr NumberTags unsigned_tags{eElement_Unsigned, 0x80, 31, 0xE8};
inline constexpr NumberTags list_tags{eElement_List, 0xA0, 31, 0xEC};
inline constexpr NumberTags block_tags{eElement_Binary, 0xC0, 23, 0xD8};

inline constexpr unsigned int integer_small = 0x40; // tag of `integer_small_min`
inline constexpr int integer_small_min = -8;
inline constexpr int integer_small_max = 55;
inline constexpr unsigned int integer_small_count = 64;
inline constexpr unsigned int integer_wide = 0xE0; // 1 byte follows; the next tags: 2 to 8

inline constexpr unsigned int null_value = 0xF0;
inline constexpr unsigned int false_value = 0xF1;
inline constexpr unsigned int true_value = 0xF2;
inline constexpr unsigned int double_value = 0xF3;
inline constexpr unsigned int absolute_time = 0xF4;
inline constexpr unsigned int relative_time = 0xF5;
inline constexpr unsigned int uuid = 0xF6;
inline constexpr unsigned int record_begin = 0xF7;
inline constexpr unsigned int record_end = 0xF8;
inline constexpr unsigned int version_mark = 0xFF; // only as the first byte of a stream
inline constexpr unsigned int version = 1;

/// Bytes that a tag and a number take while they are written: `store` writes all 8 bytes of the
/// number, however few of them are kept.
inline constexpr unsigned int number_room = 9;

inline constexpr unsigned int uuid_size = 17; // bytes, tag included

/// The kind of an element by its tag; `eElement_None` for tags that start none.
inline constexpr std::array<unsigned char, 256> kinds = [] {
    std::array<unsigned char, 256> table{};
    auto const fill = [&table](unsigned int first, unsigned int last, EElementKind kind) {
        for (unsigned int tag = first; tag <= last; ++tag) {
            table[tag] = static_cast<unsigned char>(kind);
        }
    };
    for (NumberTags const & tags : {string_tags, unsigned_tags, list_tags, block_tags}) {
        fill(tags.small, tags.small + tags.small_max, tags.kind);
        fill(tags.wide, tags.wide + 3, tags.kind);
    }
    fill(integer_small, integer_small + integer_small_count - 1, eElement_Integer);
    fill(integer_wide, integer_wide + 7, eElement_Integer);
    fill(null_value, null_value, eElement_Null);
    fill(false_value, true_value, eElement_Boolean);
    fill(double_value, double_value, eElement_Double);
    fill(absolute_time, absolute_time, eElement_AbsoluteTime);
    fill(relative_time, relative_time, eElement_RelativeTime);
    fill(uuid, uuid, eElement_Uuid);
    fill(record_begin, record_begin, eElement_Record);
    return table;
}();

/// Converts between the byte order of the machine and little-endian, in either direction.
inline unsigned long long little_endian(unsigned long long value) noexcept {
    static_assert(sizeof(value) == 8);
    if constexpr (std::endian::native == std::endian::big) {
        value = __builtin_bswap64(value);
    }
    return value;
}

/// Writes all 8 bytes; the caller keeps as many as it needs.
inline void store(unsigned char * out, unsigned long long value) noexcept {
    value = little_endian(value);
    std::memcpy(out, &value, sizeof(value));
}

inline unsigned long long load(unsigned char const * in) noexcept {
    unsigned long long value = 0;
    std::memcpy(&value, in, sizeof(value));
    return little_endian(value);
}

/// Returns how many bytes `value` needs, at least one.
inline unsigned int width_of(unsigned long long value) noexcept {
    return (static_cast<unsigned int>(std::bit_width(value | 1)) + 7) / 8;
}

/// The same for a number in two's complement, whose top bit holds the sign.
inline unsigned int signed_width_of(long long value) noexcept {
    auto const bits = static_cast<unsigned long long>(value < 0 ? ~value : value);
    return static_cast<unsigned int>(std::bit_width(bits)) / 8 + 1;
}

} // namespace vxserialize::impl::binary
