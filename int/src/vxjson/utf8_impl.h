#pragma once

// Included by the readers and writers of JSON, here and in vxattribute; not for direct use.

#include <cstddef>

namespace vxjson::impl {

/// The result of `read_utf8`.
struct Utf8 {
    unsigned int size;      ///< of the sequence in bytes; 0 if there is none
    unsigned int codePoint; ///< the decoded character
    bool cut;               ///< size is 0 only because the text ends within a sequence
};

/// Reads one UTF-8 sequence (RFC 3629) at `at`, which must be below `limit`. Surrogates, values
/// above U+10FFFF and overlong forms are refused.
constexpr Utf8 read_utf8(char const * at, char const * limit) noexcept {
    auto const byte = [at](std::ptrdiff_t i) { return static_cast<unsigned char>(at[i]); };
    unsigned int const lead = byte(0);
    if (lead < 0x80) {
        return {1, lead, false};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return {0, 0, false};
    }
    unsigned int const size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unsigned int value = lead & (0x7Fu >> size);
    // The range of the second byte excludes overlong forms, surrogates and values that are too
    // large.
    unsigned int low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned int high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    for (unsigned int i = 1; i < size; ++i, low = 0x80, high = 0xBF) {
        if (limit - at == static_cast<std::ptrdiff_t>(i)) {
            return {0, 0, true};
        }
        unsigned int const next = byte(static_cast<std::ptrdiff_t>(i));
        if (next < low || next > high) {
            return {0, 0, false};
        }
        value = value << 6 | (next & 0x3F);
    }
    return {size, value, false};
}

/// Writes `codePoint`, which is no surrogate, at `out` as 1 to 4 bytes. Returns the end.
constexpr char * write_utf8(char * out, unsigned int codePoint) noexcept {
    if (codePoint < 0x80) {
        *out++ = static_cast<char>(codePoint);
        return out;
    }
    unsigned int const more = codePoint < 0x800 ? 1 : codePoint < 0x10000 ? 2 : 3;
    unsigned int const mark = more == 1 ? 0xC0 : more == 2 ? 0xE0 : 0xF0;
    *out++ = static_cast<char>(mark | codePoint >> (6 * more));
    for (unsigned int i = more; i-- != 0;) {
        *out++ = static_cast<char>(0x80 | (codePoint >> (6 * i) & 0x3F));
    }
    return out;
}

} // namespace vxjson::impl
