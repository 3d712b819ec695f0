#pragma once

#include <string_view>

namespace vxcore {

/// Folds one element into a hash: h * 5 + x, unsigned and wrapping.
constexpr unsigned int hash_fold(unsigned int h, unsigned int x) noexcept {
    return h * 5 + x;
}

/// Mixes one part of a structure into a seed, unsigned and wrapping.
constexpr unsigned int hash_mix(unsigned int seed, unsigned int x) noexcept {
    return seed ^ (x + 0x9E3779B9u + (seed << 6) + (seed >> 2));
}

/// Folds the bytes of a text, each taken as a **signed** value, onto `h`.
constexpr unsigned int hash_bytes(std::string_view text, unsigned int h = 0) noexcept {
    for (char const c : text) {
        h = hash_fold(h, static_cast<unsigned int>(static_cast<signed char>(c)));
    }
    return h;
}

} // namespace vxcore
