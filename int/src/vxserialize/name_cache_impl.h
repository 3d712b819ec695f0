#pragma once

// Included by the readers; not for direct use.

#include "vxcore/string_key.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace vxserialize::impl {

/// Names that were read lately: a name that comes again costs neither the hash nor the lock of the
/// intern table.
///
/// A name has two slots, side by side; the older of the two makes way for a new one. A name is
/// taken in when it comes for the second time: those that come once, such as the keys of a large
/// map, cost little here and push out no other. There are no slots at all at first, then few, and
/// four times as many after every so many misses, to a limit. A copy starts anew: slots are a
/// matter of speed alone.
class NameCache {
  public:
    NameCache() noexcept = default;

    NameCache(NameCache const &) noexcept {}

    NameCache & operator=(NameCache const &) noexcept { return *this; }

    /// The key of `text`.
    vxcore::StringKey find(std::string_view text) {
        Print const print(text);
        if (m_slots) {
            unsigned int const slot = print.hash() >> m_shift;
            if (m_slots[slot].holds(print, text)) {
                return m_slots[slot].key;
            }
            if (m_slots[slot ^ 1].holds(print, text)) {
                return m_slots[slot ^ 1].key;
            }
        }
        return intern(print, text);
    }

  private:
    /// The size and up to 8 bytes of both ends: all there is of a text of 16 bytes or less.
    struct Print {
        Print() noexcept = default;
        explicit Print(std::string_view text) noexcept;

        /// Names that fall on one slot only lose time, so nothing is gained by choosing them.
        unsigned int hash() const noexcept;

        bool operator==(Print const &) const = default;

        std::uint64_t head = 0;
        std::uint64_t tail = 0;
        std::size_t size = 0;
    };

    /// An unused slot holds the empty text, whose key is the empty one.
    struct Slot {
        bool holds(Print const & other, std::string_view text) const noexcept {
            return print == other && (text.size() <= 16 || key.value() == text);
        }

        vxcore::StringKey key;
        Print print;
        unsigned int seen = 0; // the hash of a name that came by and was not known
    };

    static constexpr unsigned int sm_missesBeforeSlots = 8;
    static constexpr unsigned int sm_missesPerSlot = 4;
    static constexpr unsigned int sm_minBits = 5;
    static constexpr unsigned int sm_maxBits = 11;

    vxcore::StringKey intern(Print const & print, std::string_view text);
    bool was_seen(unsigned int hash) noexcept;
    void grow();
    void add(Slot & slot);

    std::unique_ptr<Slot[]> m_slots;
    unsigned int m_shift = 32; // of a hash to the number of a slot
    unsigned int m_misses = 0; // since the slots last grew
    unsigned int m_dice = 1;
};

inline NameCache::Print::Print(std::string_view text) noexcept : size(text.size()) {
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

inline unsigned int NameCache::Print::hash() const noexcept {
    std::uint64_t const mixed = (head * 0x9E3779B97F4A7C15u) ^ (tail + size);
    return static_cast<unsigned int>((mixed * 0xD6E8FEB86659FD93u) >> 32);
}

} // namespace vxserialize::impl
