#pragma once

#include <string_view>

/// The hashes of values and structures: 32 bits, the same in every process and on every machine.
///
/// They are fast and not keyed, so texts that collide are easy to construct. A table whose keys
/// come from untrusted data needs another hash, such as `StringKey::hash()`.
///
///     unsigned int h = hash_mix(0, hash_bytes(name)); // a structure: mix its parts in order
///     h = hash_mix(h, id.hash());
namespace vxcore {

/// Folds one element into a hash: h * 5 + x, unsigned and wrapping. The order of the elements
/// counts.
constexpr unsigned int hash_fold(unsigned int h, unsigned int x) noexcept {
    return h * 5 + x;
}

/// Mixes one part of a structure, usually its hash, into a seed, unsigned and wrapping. The order
/// of the parts counts. The constant is 2^32 divided by the golden ratio, whose bits are irregular.
constexpr unsigned int hash_mix(unsigned int seed, unsigned int x) noexcept {
    return seed ^ (x + 0x9E3779B9u + (seed << 6) + (seed >> 2));
}

/// Folds the bytes of a text, each taken as a **signed** value, onto `h`. A long text may be folded
/// piece by piece: pass the result for one piece as `h` of the next.
constexpr unsigned int hash_bytes(std::string_view text, unsigned int h = 0) noexcept {
    for (char const c : text) {
        h = hash_fold(h, static_cast<unsigned int>(static_cast<signed char>(c)));
    }
    return h;
}

} // namespace vxcore
