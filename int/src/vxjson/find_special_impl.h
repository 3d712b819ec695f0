#pragma once

// Included by the readers and writers of JSON, here and in vxattribute; not for direct use.

#include "vxjson/byte_block_impl.h"

#include <algorithm>
#include <string_view>

namespace vxjson::impl {

/// The bytes that end a run of plain text in a string: its quote, a backslash, control characters,
/// and with `High` all bytes from 0x80 on.
template <bool High>
struct SpecialBytes {
    char quote;

    bool contains(char c) const noexcept {
        auto const byte = static_cast<unsigned char>(c);
        return byte < 0x20 || c == quote || c == '\\' || (High && byte >= 0x80);
    }

    ByteBlock mark(ByteBlock block) const noexcept {
        ByteBlock const special = block.equal(quote) | block.equal('\\') | block.at_most(0x1F);
        return High ? special | block.high() : special;
    }
};

/// All bytes but the blank (0x20).
struct NonBlankBytes {
    bool contains(char c) const noexcept { return c != ' '; }

    ByteBlock mark(ByteBlock block) const noexcept { return ~block.equal(' '); }
};

/// The first byte from `at` on that `bytes` contains; `limit` when there is none.
///
/// @cost  A block a step, and four blocks a step from the second block on. Never reads at or past
///        `limit`.
template <typename Bytes>
char const * find_byte(char const * at, char const * limit, Bytes bytes) noexcept {
    constexpr std::ptrdiff_t size = ByteBlock::size;
    while (limit - at >= size) {
        if (auto const marks = bytes.mark(ByteBlock(at)).marks(); marks.any()) {
            return at + marks.first();
        }
        at += size;
        while (limit - at >= 4 * size &&
               !(bytes.mark(ByteBlock(at)) | bytes.mark(ByteBlock(at + size)) |
                 bytes.mark(ByteBlock(at + 2 * size)) | bytes.mark(ByteBlock(at + 3 * size)))
                    .marks()
                    .any()) {
            at += 4 * size;
        }
    }
    while (at != limit && !bytes.contains(*at)) {
        ++at;
    }
    return at;
}

/// The first special byte of a string, or `limit`.
template <bool High>
char const * find_special(char const * at, char const * limit, char quote) noexcept {
    return find_byte(at, limit, SpecialBytes<High>{quote});
}

/// The first byte that is not a blank (0x20), or `limit`.
inline char const * skip_blanks(char const * at, char const * limit) noexcept {
    return find_byte(at, limit, NonBlankBytes{});
}

/// True when a byte of `text` is special in a string in double quotes. Faster than `find_special`
/// for texts of a few blocks: the last block overlaps the one before, so no byte is left over.
template <bool High>
bool has_special(std::string_view text) noexcept {
    constexpr SpecialBytes<High> bytes{'"'};
    char const * at = text.data();
    auto left = static_cast<std::ptrdiff_t>(text.size());
    if (left < ByteBlock::size) {
        return std::any_of(text.begin(), text.end(), [bytes](char c) { return bytes.contains(c); });
    }
    for (; left > ByteBlock::size; at += ByteBlock::size, left -= ByteBlock::size) {
        if (bytes.mark(ByteBlock(at)).marks().any()) {
            return true;
        }
    }
    return bytes.mark(ByteBlock(at + left - ByteBlock::size)).marks().any();
}

} // namespace vxjson::impl
