#pragma once

#include <bit>
#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vxjson::impl {

/// Whether a byte of a string needs a look: its quote, a backslash, a control character, and with
/// `High` all from 0x80 on.
template <bool High>
constexpr bool is_special(char c, char quote) noexcept {
    auto const byte = static_cast<unsigned char>(c);
    return byte < 0x20 || c == quote || c == '\\' || (High && byte >= 0x80);
}

/// The first byte from `at` on that needs a look, `limit` when there is none.
///
/// @cost  Sixteen bytes a step where the processor has SSE2. Loads stay below `limit`.
template <bool High>
char const * find_special(char const * at, char const * limit, char quote) noexcept {
#if defined(__SSE2__)
    __m128i const quotes = _mm_set1_epi8(quote);
    __m128i const backslashes = _mm_set1_epi8('\\');
    __m128i const controls = _mm_set1_epi8(0x1F);
    while (limit - at >= 16) {
        __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const *>(at));
        __m128i special = _mm_cmpeq_epi8(bytes, quotes);
        special = _mm_or_si128(special, _mm_cmpeq_epi8(bytes, backslashes));
        // Equal to its unsigned minimum with 0x1F: not above it.
        special = _mm_or_si128(special, _mm_cmpeq_epi8(_mm_min_epu8(bytes, controls), bytes));
        if constexpr (High) {
            special = _mm_or_si128(special, bytes); // movemask looks at the top bits only
        }
        auto const mask = static_cast<unsigned int>(_mm_movemask_epi8(special));
        if (mask != 0) {
            return at + std::countr_zero(mask);
        }
        at += 16;
    }
#endif
    while (at != limit && !is_special<High>(*at, quote)) {
        ++at;
    }
    return at;
}

/// Whether any of `size` bytes needs a look. 15 bytes behind them may be read too: for short texts
/// in a larger buffer.
inline bool has_special(char const * at, std::size_t size) noexcept {
#if defined(__SSE2__)
    __m128i const quotes = _mm_set1_epi8('"');
    __m128i const backslashes = _mm_set1_epi8('\\');
    __m128i const controls = _mm_set1_epi8(0x1F);
    for (std::size_t done = 0; done < size; done += 16) {
        __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const *>(at + done));
        __m128i special = _mm_cmpeq_epi8(bytes, quotes);
        special = _mm_or_si128(special, _mm_cmpeq_epi8(bytes, backslashes));
        special = _mm_or_si128(special, _mm_cmpeq_epi8(_mm_min_epu8(bytes, controls), bytes));
        auto const mask = static_cast<unsigned int>(_mm_movemask_epi8(special));
        std::size_t const left = size - done;
        if ((left < 16 ? mask & ((1u << left) - 1) : mask) != 0) {
            return true;
        }
    }
    return false;
#else
    return find_special<false>(at, at + size, '"') != at + size;
#endif
}

/// The first byte from `at` on that is no blank (0x20), `limit` when there is none.
inline char const * skip_blanks(char const * at, char const * limit) noexcept {
#if defined(__SSE2__)
    __m128i const blanks = _mm_set1_epi8(' ');
    while (limit - at >= 16) {
        __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const *>(at));
        auto const mask =
            static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, blanks))) ^ 0xFFFF;
        if (mask != 0) {
            return at + std::countr_zero(mask);
        }
        at += 16;
    }
#endif
    while (at != limit && *at == ' ') {
        ++at;
    }
    return at;
}

} // namespace vxjson::impl
