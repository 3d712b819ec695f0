#pragma once

#include "vxattribute/attribute_name.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace vxattribute::impl {

/// Names that one call of reading met: a name that comes again costs neither the hash nor the lock
/// of the intern table. A name has two slots side by side; the one that came first makes way.
class JsonNameCache {
  public:
    /// The reference holds until the next call.
    AttributeName const & find(std::string const & text) {
        AttributeName & first = m_slots[slot_of(text)];
        if (first.value() == text) {
            return first;
        }
        AttributeName & second = m_slots[slot_of(text) ^ 1];
        if (second.value() != text) {
            AttributeName fresh(text);
            second.swap(first);
            first.swap(fresh);
            return first;
        }
        return second;
    }

  private:
    static constexpr unsigned int sm_bits = 7;

    /// Mixes the size and up to 8 bytes of both ends. Names chosen to fall on one slot only lose
    /// time.
    static unsigned int slot_of(std::string const & text) noexcept {
        char const * const data = text.data();
        std::size_t const size = text.size();
        std::uint64_t head = 0;
        std::uint64_t tail = 0;
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
        std::uint64_t const mixed = (head * 0x9E3779B97F4A7C15u) ^ (tail + size);
        return static_cast<unsigned int>((mixed * 0xD6E8FEB86659FD93u) >> (64 - sm_bits));
    }

    std::array<AttributeName, 1u << sm_bits> m_slots;
};

} // namespace vxattribute::impl
