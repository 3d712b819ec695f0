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
/// with equal fingerprints may differ in the middle: compare them as well.
///
///     TextFingerprint const fingerprint(text);
///     Slot & slot = slots[fingerprint.hash() >> 27]; // one of 32
///     if (slot.fingerprint == fingerprint &&
///         (text.size() <= TextFingerprint::exact_size || slot.text == text)) { ... }
///
/// The bytes are loaded in the order of the machine: neither fingerprint nor hash belongs into a
/// stream.
struct TextFingerprint {
    /// The longest text, in bytes, that its fingerprint holds completely.
    static constexpr std::size_t exact_size = 16;

    /// The fingerprint of the empty text.
    TextFingerprint() noexcept = default;

    /// Reads the two ends of `text`, which is not kept. The loads overlap in texts of less than 16
    /// bytes, so that no loop is needed; of the shortest each byte is in one of the words.
    explicit TextFingerprint(std::string_view text) noexcept : size(text.size()) {
        char const * const data = text.data();
        if (size >= 8) {
            head = load<std::uint64_t>(data);
            tail = load<std::uint64_t>(data + size - 8);
        } else if (size >= 4) {
            head = load<std::uint32_t>(data);
            tail = load<std::uint32_t>(data + size - 4);
        } else if (size != 0) {
            head = static_cast<unsigned char>(data[0]);
            tail = static_cast<std::uint64_t>(static_cast<unsigned char>(data[size / 2])) << 8 |
                   static_cast<unsigned char>(data[size - 1]);
        }
    }

    /// A hash whose upper bits choose a slot: the upper half of a product by an odd constant of
    /// irregular bits depends on all bits below. Texts with equal hashes are easy to find, so use
    /// it only in tables where a collision costs a little time and nothing else.
    unsigned int hash() const noexcept {
        std::uint64_t const mixed = (head * 0x9E3779B97F4A7C15u) ^ (tail + size);
        return static_cast<unsigned int>((mixed * 0xD6E8FEB86659FD93u) >> 32);
    }

    /// Compares three words.
    bool operator==(TextFingerprint const &) const = default;

    /// The first and the last bytes of the text, and its size in bytes.
    std::uint64_t head = 0;
    std::uint64_t tail = 0;
    std::size_t size = 0;

  private:
    template <typename Word>
    static Word load(char const * data) noexcept {
        Word word;
        std::memcpy(&word, data, sizeof(word));
        return word;
    }
};

} // namespace vxcore
