#pragma once

#include "vxcrypto/aes_block_internal.h"
#include "vxcrypto/aesni_internal.h"

#include <immintrin.h>

/// What the AES-NI functions have in common. A function that uses AES instructions must be compiled
/// for them; the others of a program need not run on a processor that has them. All is expanded in
/// place: a call would put registers with secrets on the stack.
#define VX_AESNI __attribute__((target("aes")))
#define VX_AESNI_INLINE __attribute__((target("aes"), always_inline)) inline

namespace vxcrypto::impl {

constexpr unsigned int aesBlockSize = 16;

inline __m128i load(unsigned char const * bytes) noexcept {
    return _mm_loadu_si128(reinterpret_cast<__m128i const *>(bytes));
}

inline void store(unsigned char * bytes, __m128i block) noexcept {
    _mm_storeu_si128(reinterpret_cast<__m128i *>(bytes), block);
}

/// A block of two halves, the first in the low half of the register. Not `_mm_set_epi64x`, for
/// which g++ passes one of them over the stack: it may be plaintext.
inline __m128i block_of(std::uint64_t first, std::uint64_t second) noexcept {
    __m128i const high = _mm_cvtsi64_si128(static_cast<long long>(second));
    return _mm_or_si128(_mm_cvtsi64_si128(static_cast<long long>(first)), _mm_slli_si128(high, 8));
}

/// A number of 128 bits as a big-endian block.
inline __m128i big_endian_block(std::uint64_t high, std::uint64_t low) noexcept {
    return block_of(__builtin_bswap64(high), __builtin_bswap64(low));
}

/// The round keys of a schedule, the first and the last of them in registers.
struct AesniRounds {
    explicit AesniRounds(AesniKeys keys) noexcept
        : first(load(keys.first)), last(load(keys.first + keys.rounds * aesBlockSize)),
          middle(keys.first + aesBlockSize), end(keys.first + keys.rounds * aesBlockSize) {}

    __m128i first;
    __m128i last;
    unsigned char const * middle;
    unsigned char const * end;
};

/// The rounds of independent blocks between the first key and the last. The instructions of one
/// block run during the latency of those of another.
template <unsigned int count>
VX_AESNI_INLINE void middle_rounds(AesniRounds const & rounds, __m128i (&state)[count]) noexcept {
    for (unsigned char const * at = rounds.middle; at != rounds.end; at += aesBlockSize) {
        __m128i const key = load(at);
#pragma GCC unroll 8
        for (unsigned int i = 0; i < count; ++i) {
            state[i] = _mm_aesenc_si128(state[i], key);
        }
    }
}

/// Enciphers independent blocks.
template <unsigned int count>
VX_AESNI_INLINE void encipher(AesniRounds const & rounds, __m128i (&blocks)[count]) noexcept {
#pragma GCC unroll 8
    for (unsigned int i = 0; i < count; ++i) {
        blocks[i] = _mm_xor_si128(blocks[i], rounds.first);
    }
    middle_rounds(rounds, blocks);
#pragma GCC unroll 8
    for (unsigned int i = 0; i < count; ++i) {
        blocks[i] = _mm_aesenclast_si128(blocks[i], rounds.last);
    }
}

/// As AesEncryptContext::chain, on a register. Each block depends on the previous one, so the
/// latency from one state to the next determines the cost. Only the rounds are on that path: the
/// data and the first round key of the next block are combined with the last round key in advance.
VX_AESNI_INLINE __m128i chain_blocks(AesniRounds const & rounds, __m128i x,
                                     unsigned char const * data, unsigned int blocks) noexcept {
    __m128i const ends = _mm_xor_si128(rounds.first, rounds.last);
    __m128i state[] = {_mm_xor_si128(x, rounds.first)};
    for (; blocks != 0; --blocks, data += aesBlockSize) {
        __m128i const last = _mm_xor_si128(ends, load(data));
        middle_rounds(rounds, state);
        state[0] = _mm_aesenclast_si128(state[0], last);
    }
    return _mm_xor_si128(state[0], rounds.first);
}

/// Leaves no round key and no key stream in the registers.
inline void wipe_registers() noexcept {
    asm volatile("pxor %%xmm0, %%xmm0\n\t"
                 "pxor %%xmm1, %%xmm1\n\t"
                 "pxor %%xmm2, %%xmm2\n\t"
                 "pxor %%xmm3, %%xmm3\n\t"
                 "pxor %%xmm4, %%xmm4\n\t"
                 "pxor %%xmm5, %%xmm5\n\t"
                 "pxor %%xmm6, %%xmm6\n\t"
                 "pxor %%xmm7, %%xmm7\n\t"
                 "pxor %%xmm8, %%xmm8\n\t"
                 "pxor %%xmm9, %%xmm9\n\t"
                 "pxor %%xmm10, %%xmm10\n\t"
                 "pxor %%xmm11, %%xmm11\n\t"
                 "pxor %%xmm12, %%xmm12\n\t"
                 "pxor %%xmm13, %%xmm13\n\t"
                 "pxor %%xmm14, %%xmm14\n\t"
                 "pxor %%xmm15, %%xmm15"
                 :
                 :
                 : "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", "xmm8", "xmm9",
                   "xmm10", "xmm11", "xmm12", "xmm13", "xmm14", "xmm15");
}

} // namespace vxcrypto::impl
