#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vxcore::impl {

struct SipHashKey {
    std::uint64_t k0;
    std::uint64_t k1;
};

/// SipHash (Aumasson and Bernstein, 2012) with `C` compression and `D` finalisation rounds.
///
/// A keyed hash: without the key, nobody can choose texts that collide. 1-3 rounds are enough for
/// hash tables; 2-4 is the form with published results.
template <int C, int D>
class SipHash {
  public:
    static std::uint64_t hash(SipHashKey key, char const * data, std::size_t size) noexcept {
        SipHash state(key);
        std::size_t const tail = size & 7;
        char const * const lastWord = data + (size - tail);
        for (; data != lastWord; data += 8) {
            state.compress(load(data, 8));
        }
        state.compress(load(data, tail) | static_cast<std::uint64_t>(size) << 56);
        state.m_v2 ^= 0xff;
        state.rounds(D);
        return state.m_v0 ^ state.m_v1 ^ state.m_v2 ^ state.m_v3;
    }

  private:
    explicit SipHash(SipHashKey key) noexcept
        : m_v0(key.k0 ^ 0x736f6d6570736575u), m_v1(key.k1 ^ 0x646f72616e646f6du),
          m_v2(key.k0 ^ 0x6c7967656e657261u), m_v3(key.k1 ^ 0x7465646279746573u) {}

    /// The first `size` bytes, 8 at most, as a little-endian word.
    static std::uint64_t load(char const * data, std::size_t size) noexcept {
        if constexpr (std::endian::native == std::endian::little) {
            // Two loads that may overlap: names are short, and a loop over bytes would cost more
            // than the rounds.
            if (size == 8) {
                return load_as<std::uint64_t>(data);
            }
            if (size >= 4) {
                return load_as<std::uint32_t>(data) | load_as<std::uint32_t>(data + size - 4)
                                                          << (8 * (size - 4));
            }
        }
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < size; ++i) {
            word |= static_cast<std::uint64_t>(static_cast<unsigned char>(data[i])) << (8 * i);
        }
        return word;
    }

    template <typename Word>
    static std::uint64_t load_as(char const * data) noexcept {
        Word word;
        std::memcpy(&word, data, sizeof(word));
        return word;
    }

    void compress(std::uint64_t word) noexcept {
        m_v3 ^= word;
        rounds(C);
        m_v0 ^= word;
    }

    void rounds(int count) noexcept {
        for (int i = 0; i < count; ++i) {
            m_v0 += m_v1;
            m_v1 = std::rotl(m_v1, 13) ^ m_v0;
            m_v0 = std::rotl(m_v0, 32);
            m_v2 += m_v3;
            m_v3 = std::rotl(m_v3, 16) ^ m_v2;
            m_v0 += m_v3;
            m_v3 = std::rotl(m_v3, 21) ^ m_v0;
            m_v2 += m_v1;
            m_v1 = std::rotl(m_v1, 17) ^ m_v2;
            m_v2 = std::rotl(m_v2, 32);
        }
    }

    std::uint64_t m_v0, m_v1, m_v2, m_v3;
};

} // namespace vxcore::impl
