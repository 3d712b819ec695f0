#pragma once

#include <cstdint>
#include <cstring>

/// Arithmetic on blocks of 16 bytes.
namespace vxcrypto::impl {

/// `to` becomes `to` XOR `from`. Neither needs an alignment.
inline void xor_block(unsigned char * to, unsigned char const * from) noexcept {
    std::uint64_t a[2];
    std::uint64_t b[2];
    std::memcpy(a, to, sizeof a);
    std::memcpy(b, from, sizeof b);
    a[0] ^= b[0];
    a[1] ^= b[1];
    std::memcpy(to, a, sizeof a);
}

inline std::uint64_t load_big_endian(unsigned char const * bytes) noexcept {
    std::uint64_t number = 0;
    for (int i = 0; i < 8; ++i) {
        number = number << 8 | bytes[i];
    }
    return number;
}

inline void store_big_endian(unsigned char * bytes, std::uint64_t number) noexcept {
    for (int i = 7; i >= 0; --i, number >>= 8) {
        bytes[i] = static_cast<unsigned char>(number);
    }
}

/// Adds 1 to a big-endian number of 128 bits; all ones become zero.
inline void increment_counter(unsigned char * counter) noexcept {
    std::uint64_t const low = load_big_endian(counter + 8) + 1;
    store_big_endian(counter + 8, low);
    if (low == 0) {
        store_big_endian(counter, load_big_endian(counter) + 1);
    }
}

} // namespace vxcrypto::impl
