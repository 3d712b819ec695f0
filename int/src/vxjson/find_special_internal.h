#pragma once

#include <bit>
#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

#if defined(__SSE2__)
    /// Bit i is set when the set contains byte i of 16.
    unsigned int mask(__m128i bytes) const noexcept {
        __m128i special = _mm_cmpeq_epi8(bytes, _mm_set1_epi8(quote));
        special = _mm_or_si128(special, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\')));
        // A byte equals the minimum of itself and 0x1F exactly if it is not above 0x1F.
        __m128i const low = _mm_min_epu8(bytes, _mm_set1_epi8(0x1F));
        special = _mm_or_si128(special, _mm_cmpeq_epi8(low, bytes));
        if constexpr (High) {
            special = _mm_or_si128(special, bytes); // movemask looks at the top bits only
        }
        return static_cast<unsigned int>(_mm_movemask_epi8(special));
    }
#endif
};

/// All bytes but the blank (0x20).
struct NonBlankBytes {
    bool contains(char c) const noexcept { return c != ' '; }

#if defined(__SSE2__)
    unsigned int mask(__m128i bytes) const noexcept {
        __m128i const blanks = _mm_cmpeq_epi8(bytes, _mm_set1_epi8(' '));
        return static_cast<unsigned int>(_mm_movemask_epi8(blanks)) ^ 0xFFFF;
    }
#endif
};

#if defined(__SSE2__)
inline __m128i load_16(char const * at) noexcept {
    return _mm_loadu_si128(reinterpret_cast<__m128i const *>(at));
}
#endif

/// The first byte from `at` on that `bytes` contains; `limit` when there is none.
///
/// @cost  Sixteen bytes a step where the processor has SSE2. Never reads at or past `limit`.
template <typename Bytes>
char const * find_byte(char const * at, char const * limit, Bytes bytes) noexcept {
#if defined(__SSE2__)
    for (; limit - at >= 16; at += 16) {
        if (unsigned int const mask = bytes.mask(load_16(at)); mask != 0) {
            return at + std::countr_zero(mask);
        }
    }
#endif
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

/// True when any of `size` bytes is special in a string in double quotes. Faster than
/// `find_special` for short texts, but the 15 bytes after them must be readable too.
inline bool has_special(char const * at, std::size_t size) noexcept {
    constexpr SpecialBytes<false> bytes{'"'};
#if defined(__SSE2__)
    for (std::size_t done = 0; done < size; done += 16) {
        unsigned int const mask = bytes.mask(load_16(at + done));
        std::size_t const left = size - done;
        if ((left < 16 ? mask & ((1u << left) - 1) : mask) != 0) {
            return true;
        }
    }
    return false;
#else
    return find_byte(at, at + size, bytes) != at + size;
#endif
}

} // namespace vxjson::impl
