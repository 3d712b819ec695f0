#include "vxcrypto/aesni_internal.h"

#if defined(VX_AES_BULK) && defined(__x86_64__)

#include "vxcrypto/aesni_rounds_internal.h"

namespace vxcrypto::impl {

namespace {

/// Blocks of the key stream computed at the same time: enough to hide the latency of the
/// instructions, few enough for all states and a round key to stay in registers.
constexpr unsigned int width = 8;

/// The counter plus `ahead`, as a big-endian block.
__m128i counter_block(std::uint64_t high, std::uint64_t low, unsigned int ahead) noexcept {
    std::uint64_t const sum = low + ahead;
    return big_endian_block(high + (sum < low ? 1 : 0), sum);
}

} // namespace

bool has_aes_instructions() noexcept {
    __builtin_cpu_init(); // this may run before the constructors that call it
    return __builtin_cpu_supports("aes") != 0;
}

VX_AESNI void aesni_chain(AesniKeys keys, unsigned char * x, unsigned char const * data,
                          unsigned int blocks) noexcept {
    store(x, chain_blocks(AesniRounds(keys), load(x), data, blocks));
    wipe_registers();
}

/// Always computes eight blocks of the key stream, which takes as long as one, and uses as many as
/// needed.
VX_AESNI void aesni_xor_key_stream(AesniKeys keys, unsigned char * counter,
                                   unsigned char const * in, unsigned char * out,
                                   unsigned int blocks) noexcept {
    AesniRounds const rounds(keys);
    std::uint64_t high = load_big_endian(counter);
    std::uint64_t low = load_big_endian(counter + 8);
    while (blocks != 0) {
        unsigned int const used = blocks < width ? blocks : width;
        __m128i stream[width];
#pragma GCC unroll 8
        for (unsigned int i = 0; i < width; ++i) {
            stream[i] = counter_block(high, low, i);
        }
        encipher(rounds, stream);
#pragma GCC unroll 8
        for (unsigned int i = 0; i < width; ++i) {
            if (i < used) {
                store(out + i * aesBlockSize,
                      _mm_xor_si128(stream[i], load(in + i * aesBlockSize)));
            }
        }
        low += used;
        high += low < used ? 1 : 0;
        in += used * aesBlockSize;
        out += used * aesBlockSize;
        blocks -= used;
    }
    store_big_endian(counter, high);
    store_big_endian(counter + 8, low);
    wipe_registers();
}

} // namespace vxcrypto::impl

#endif
