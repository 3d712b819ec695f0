#include "vxcrypto/aesni_internal.h"

#if defined(VX_AES_BULK) && defined(__x86_64__)

#include "vxcrypto/aes_block_internal.h"

#include <immintrin.h>

namespace vxcrypto::impl {

namespace {

constexpr unsigned int blockSize = 16;

/// Blocks of the key stream computed at the same time: enough to hide the latency of the
/// instructions, few enough for all states and a round key to stay in registers.
constexpr unsigned int width = 8;

__m128i load(unsigned char const * bytes) noexcept {
    return _mm_loadu_si128(reinterpret_cast<__m128i const *>(bytes));
}

void store(unsigned char * bytes, __m128i block) noexcept {
    _mm_storeu_si128(reinterpret_cast<__m128i *>(bytes), block);
}

/// The counter plus `ahead`, as a big-endian block.
__m128i counter_block(std::uint64_t high, std::uint64_t low, unsigned int ahead) noexcept {
    std::uint64_t const sum = low + ahead;
    std::uint64_t const carried = high + (sum < low ? 1 : 0);
    return _mm_set_epi64x(static_cast<long long>(__builtin_bswap64(sum)),
                          static_cast<long long>(__builtin_bswap64(carried)));
}

/// Leaves no round key and no key stream in the registers.
void wipe_registers() noexcept {
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

} // namespace

bool has_aes_instructions() noexcept {
    __builtin_cpu_init(); // this may run before the constructors that call it
    return __builtin_cpu_supports("aes") != 0;
}

/// Each block depends on the previous one, so the latency from one state to the next determines the
/// cost. Only the rounds are on that path: the data and the first round key of the next block are
/// combined with the last round key in advance.
__attribute__((target("aes"))) void aesni_chain(unsigned char const * roundKeys,
                                                unsigned int rounds, unsigned char * x,
                                                unsigned char const * data,
                                                unsigned int blocks) noexcept {
    __m128i const first = load(roundKeys);
    __m128i const ends = _mm_xor_si128(first, load(roundKeys + rounds * blockSize));
    __m128i state = _mm_xor_si128(load(x), first);
    for (; blocks != 0; --blocks, data += blockSize) {
        __m128i const last = _mm_xor_si128(ends, load(data));
        unsigned char const * key = roundKeys + blockSize;
        for (unsigned int round = 1; round < rounds; ++round, key += blockSize) {
            state = _mm_aesenc_si128(state, load(key));
        }
        state = _mm_aesenclast_si128(state, last);
    }
    store(x, _mm_xor_si128(state, first));
    wipe_registers();
}

/// Always computes eight blocks of the key stream, which takes as long as one, and uses as many as
/// needed.
__attribute__((target("aes"))) void
aesni_xor_key_stream(unsigned char const * roundKeys, unsigned int rounds, unsigned char * counter,
                     unsigned char * data, unsigned int blocks) noexcept {
    std::uint64_t high = load_big_endian(counter);
    std::uint64_t low = load_big_endian(counter + 8);
    unsigned char const * const lastKey = roundKeys + rounds * blockSize;
    while (blocks != 0) {
        unsigned int const used = blocks < width ? blocks : width;
        __m128i key = load(roundKeys);
        __m128i state[width];
#pragma GCC unroll 8
        for (unsigned int i = 0; i < width; ++i) {
            state[i] = _mm_xor_si128(counter_block(high, low, i), key);
        }
        for (unsigned char const * at = roundKeys + blockSize; at != lastKey; at += blockSize) {
            key = load(at);
#pragma GCC unroll 8
            for (unsigned int i = 0; i < width; ++i) {
                state[i] = _mm_aesenc_si128(state[i], key);
            }
        }
        key = load(lastKey);
#pragma GCC unroll 8
        for (unsigned int i = 0; i < width; ++i) {
            if (i < used) {
                __m128i const stream = _mm_aesenclast_si128(state[i], key);
                store(data + i * blockSize, _mm_xor_si128(stream, load(data + i * blockSize)));
            }
        }
        low += used;
        high += low < used ? 1 : 0;
        data += used * blockSize;
        blocks -= used;
    }
    store_big_endian(counter, high);
    store_big_endian(counter + 8, low);
    wipe_registers();
}

} // namespace vxcrypto::impl

#endif
