// EAX (Bellare, Rogaway and Wagner, "The EAX Mode of Operation", 2004) of whole messages, with
// everything but the message and the round keys in registers. The time of a small message is the
// latency of the blocks that wait for each other, so independent blocks are enciphered together:
//
// 1. the first blocks of the three MACs, which depend on the key only;
// 2. the last blocks of the MACs of nonce and header;
// 3. while the message is sealed, the next block of its MAC and a block of the key stream.

#include "vxcrypto/aesni_internal.h"

#if defined(VX_AES_BULK) && defined(__x86_64__)

#include "vxcrypto/aesni_rounds_internal.h"

#include <utility>

namespace vxcrypto::impl {

namespace {

/// The first block of each MAC: its number.
__m128i number_block(std::uint64_t number) noexcept {
    return big_endian_block(0, number);
}

/// Multiplies a big-endian block by x in GF(2^128), without a branch on its secret bits.
__m128i doubled(__m128i block) noexcept {
    __m128i const topBits = _mm_and_si128(_mm_srli_epi16(block, 7), _mm_set1_epi8(1));
    __m128i const shifted =
        _mm_or_si128(_mm_add_epi8(block, block), _mm_srli_si128(topBits, 1)); // byte 0 is the top
    __m128i const mask = _mm_sub_epi8(_mm_setzero_si128(), _mm_slli_si128(topBits, 15));
    return _mm_xor_si128(shifted, _mm_and_si128(mask, _mm_set1_epi8(static_cast<char>(0x87))));
}

/// The first `size` bytes, at most 8, as a little-endian number. A loop that the compiler cannot
/// turn into a call.
std::uint64_t load_some(unsigned char const * bytes, unsigned int size) noexcept {
    std::uint64_t number = 0;
    while (size != 0) {
        number = number << 8 | bytes[--size];
    }
    return number;
}

void store_some(unsigned char * bytes, std::uint64_t number, unsigned int size) noexcept {
    for (; size != 0; --size, number >>= 8) {
        *bytes++ = static_cast<unsigned char>(number);
    }
}

/// The first `size` bytes, 1 to 16, followed by zeros.
__m128i load_part(unsigned char const * bytes, unsigned int size) noexcept {
    if (size == aesBlockSize) {
        return load(bytes);
    }
    bool const isLong = size > 8;
    std::uint64_t const low = load_some(bytes, isLong ? 8 : size);
    std::uint64_t const high = isLong ? load_some(bytes + 8, size - 8) : 0;
    return block_of(low, high);
}

/// Stores the first `size` bytes, 1 to 16.
void store_part(unsigned char * bytes, __m128i block, unsigned int size) noexcept {
    if (size == aesBlockSize) {
        store(bytes, block);
        return;
    }
    auto const low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(block));
    auto const high = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_srli_si128(block, 8)));
    bool const isLong = size > 8;
    store_some(bytes, low, isLong ? 8 : size);
    if (isLong) {
        store_some(bytes + 8, high, size - 8);
    }
}

/// `16 - size` bytes into the first table begin a block whose first `size` bytes are ones; into the
/// second, a block whose byte `size` is 0x80.
constexpr unsigned char firstBytes[2 * aesBlockSize] = {
    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
constexpr unsigned char padding[2 * aesBlockSize] = {0, 0, 0, 0, 0, 0, 0, 0,   0,
                                                     0, 0, 0, 0, 0, 0, 0, 0x80};

/// What follows from the key alone. The CMAC subkeys (NIST SP 800-38B, section 6.1) come from the
/// enciphered number 0, which is a block of zeros.
struct EaxKeys {
    VX_AESNI_INLINE explicit EaxKeys(AesniKeys keys) noexcept
        : rounds(keys), begun{number_block(0), number_block(1), number_block(2)} {
        encipher(rounds, begun);
        k1 = doubled(begun[0]);
        k2 = doubled(k1);
    }

    AesniRounds rounds;
    __m128i begun[3]; // the chains of the three MACs after their numbers
    __m128i k1;
    __m128i k2;
};

/// The last block of a MAC's input, of 1 to 16 bytes followed by zeros, as it enters the chain
/// (section 6.2): combined with a subkey, and padded when it is not whole.
__m128i last_block(EaxKeys const & keys, __m128i block, unsigned int size) noexcept {
    if (size == aesBlockSize) {
        return _mm_xor_si128(block, keys.k1);
    }
    return _mm_xor_si128(_mm_xor_si128(block, load(padding + aesBlockSize - size)), keys.k2);
}

/// MAC `number` of `data` without its last step: the block that is to be enciphered.
VX_AESNI_INLINE __m128i begin_mac(EaxKeys const & keys, unsigned int number,
                                  unsigned char const * data, unsigned int size) noexcept {
    if (size == 0) {
        return _mm_xor_si128(number_block(number), keys.k1);
    }
    __m128i x = keys.begun[number];
    if (unsigned int const blocks = (size - 1) / aesBlockSize; blocks != 0) { // without the last
        x = chain_blocks(keys.rounds, _mm_xor_si128(x, load(data)), data + aesBlockSize,
                         blocks - 1);
        __m128i state[] = {x};
        encipher(keys.rounds, state);
        x = state[0];
        data += blocks * aesBlockSize;
        size -= blocks * aesBlockSize;
    }
    return _mm_xor_si128(x, last_block(keys, load_part(data, size), size));
}

VX_AESNI_INLINE __m128i begin_nonce_mac(EaxKeys const & keys, EaxPrefix const & prefix) noexcept {
    return _mm_xor_si128(keys.begun[0], last_block(keys, load(prefix.nonce), aesBlockSize));
}

VX_AESNI_INLINE __m128i begin_header_mac(EaxKeys const & keys, EaxPrefix const & prefix) noexcept {
    return begin_mac(keys, 1, reinterpret_cast<unsigned char const *>(prefix.header.data()),
                     static_cast<unsigned int>(prefix.header.size()));
}

/// The counter of a key stream.
class Counter {
  public:
    explicit Counter(__m128i start) noexcept
        : m_high(__builtin_bswap64(static_cast<std::uint64_t>(_mm_cvtsi128_si64(start)))),
          m_low(__builtin_bswap64(
              static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_srli_si128(start, 8))))) {}

    /// Returns the counter as a block and adds 1.
    __m128i next() noexcept {
        __m128i const block = big_endian_block(m_high, m_low);
        m_high += ++m_low == 0 ? 1 : 0;
        return block;
    }

  private:
    std::uint64_t m_high;
    std::uint64_t m_low;
};

/// The part of a message that is not yet enciphered.
struct Rest {
    unsigned char * at;
    unsigned int size;

    /// Enciphers the next block with a block of the key stream and returns it as it enters the
    /// chain of the MAC. Returns zeros when no byte is left.
    __m128i encipher_next(EaxKeys const & keys, __m128i stream) noexcept {
        if (size > aesBlockSize) {
            __m128i const block = _mm_xor_si128(stream, load(at));
            store(at, block);
            at += aesBlockSize;
            size -= aesBlockSize;
            return block;
        }
        if (size == 0) {
            return _mm_setzero_si128();
        }
        unsigned int const part = std::exchange(size, 0);
        __m128i const block = _mm_and_si128(_mm_xor_si128(stream, load_part(at, part)),
                                            load(firstBytes + aesBlockSize - part));
        store_part(at, block, part);
        return last_block(keys, block, part);
    }
};

/// Enciphers a message and returns its MAC. The key stream is two blocks ahead of the chain: one
/// step of the chain combines its result with a block that was enciphered during the step before,
/// so that a step takes no longer than the rounds of a block.
VX_AESNI_INLINE __m128i seal_message(EaxKeys const & keys, Counter counter, Rest rest) noexcept {
    AesniRounds const & rounds = keys.rounds;
    __m128i const ends = _mm_xor_si128(rounds.first, rounds.last);
    unsigned int steps = rest.size == 0 ? 1 : (rest.size - 1) / aesBlockSize + 1;
    __m128i pair[2] = {counter.next(), counter.next()};
    encipher(rounds, pair);
    __m128i x = rest.size == 0 ? _mm_xor_si128(number_block(2), keys.k1)
                               : _mm_xor_si128(keys.begun[2], rest.encipher_next(keys, pair[0]));
    x = _mm_xor_si128(x, rounds.first);
    __m128i block = rest.encipher_next(keys, pair[1]);
    for (; steps != 0; --steps) {
        pair[0] = x;
        pair[1] = _mm_xor_si128(counter.next(), rounds.first);
        middle_rounds(rounds, pair);
        x = _mm_aesenclast_si128(pair[0], _mm_xor_si128(ends, block));
        block = rest.encipher_next(keys, _mm_aesenclast_si128(pair[1], rounds.last));
    }
    return _mm_xor_si128(x, rounds.first);
}

} // namespace

VX_AESNI void aesni_eax_seal(AesniKeys schedule, EaxPrefix const & prefix, unsigned char * message,
                             unsigned int size, unsigned char * tag) noexcept {
    EaxKeys const keys(schedule);
    __m128i macs[] = {begin_nonce_mac(keys, prefix), begin_header_mac(keys, prefix)};
    encipher(keys.rounds, macs);
    __m128i const messageMac = seal_message(keys, Counter(macs[0]), {message, size});
    store(tag, _mm_xor_si128(messageMac, _mm_xor_si128(macs[0], macs[1])));
    wipe_registers();
}

VX_AESNI void aesni_eax_tag(AesniKeys schedule, EaxPrefix const & prefix,
                            unsigned char const * message, unsigned int size, unsigned char * tag,
                            unsigned char * counter) noexcept {
    EaxKeys const keys(schedule);
    __m128i macs[] = {begin_nonce_mac(keys, prefix), begin_header_mac(keys, prefix),
                      begin_mac(keys, 2, message, size)};
    encipher(keys.rounds, macs);
    store(counter, macs[0]);
    store(tag, _mm_xor_si128(macs[2], _mm_xor_si128(macs[0], macs[1])));
    wipe_registers();
}

} // namespace vxcrypto::impl

#endif
