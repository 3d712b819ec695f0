#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vxcore {

/// The size of a text and up to 8 bytes of both its ends: a fingerprint for small caches of names,
/// made in a few instructions.
///
/// Texts of up to `exact_size` bytes are equal exactly when their fingerprints are. Longer texts
/// with equal fingerprints may differ in the middle.
struct TextFingerprint {
    /// The longest text, in bytes, that its fingerprint holds completely.
    static constexpr std::size_t exact_size = 16;

    TextFingerprint() noexcept = default;

    explicit TextFingerprint(std::string_view text) noexcept : size(text.size()) {
        char const * const data = text.data();
        if (size >= 8) {
            std::memcpy(&head, data, 8);
            std::memcpy(&tail, data + size - 8, 8);
        } else if (size >= 4) {
            std::memcpy(&head, data, 4);
            std::memcpy(&tail, data + size - 4, 4);
        } else if (size != 0) {
            head = static_cast<unsigned char>(data[0]);
            tail = static_cast<std::uint64_t>(static_cast<unsigned char>(data[size / 2])) << 8 |
                   static_cast<unsigned char>(data[size - 1]);
        }
    }

    /// A hash whose upper bits choose a slot. Texts with equal hashes are easy to find, so use it
    /// only in tables where a collision costs a little time and nothing else.
    unsigned int hash() const noexcept {
        std::uint64_t const mixed = (head * 0x9E3779B97F4A7C15u) ^ (tail + size);
        return static_cast<unsigned int>((mixed * 0xD6E8FEB86659FD93u) >> 32);
    }

    bool operator==(TextFingerprint const &) const = default;

    std::uint64_t head = 0;
    std::uint64_t tail = 0;
    std::size_t size = 0; // bytes of the text
};

} // namespace vxcore
