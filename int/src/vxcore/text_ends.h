#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vxcore {

/// The size and up to 8 bytes of both ends of a text: a print that is made in a few instructions,
/// for small caches of names.
///
/// It is all there is of a text of 16 bytes or less: two of them are equal exactly when their
/// prints are. Longer texts with equal prints may differ in the middle.
struct TextEnds {
    TextEnds() noexcept = default;

    explicit TextEnds(std::string_view text) noexcept : size(text.size()) {
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

    /// A number for choosing a slot by its upper bits. Anybody can find texts with equal numbers:
    /// for tables where that costs time only, and little of it.
    unsigned int hash() const noexcept {
        std::uint64_t const mixed = (head * 0x9E3779B97F4A7C15u) ^ (tail + size);
        return static_cast<unsigned int>((mixed * 0xD6E8FEB86659FD93u) >> 32);
    }

    bool operator==(TextEnds const &) const = default;

    std::uint64_t head = 0;
    std::uint64_t tail = 0;
    std::size_t size = 0;
};

} // namespace vxcore
