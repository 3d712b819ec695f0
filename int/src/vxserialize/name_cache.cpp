#include "vxserialize/name_cache_impl.h"

#include <cstdint>
#include <cstring>

namespace vxserialize::impl {

/// From the size and up to 16 bytes of both ends. Names that fall on one slot only lose time, so
/// nothing is gained by choosing them.
unsigned int NameCache::hash_of(std::string_view text) noexcept {
    std::uint64_t head = 0;
    std::uint64_t tail = 0;
    char const * const data = text.data();
    std::size_t const size = text.size();
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
    return static_cast<unsigned int>((mixed * 0xD6E8FEB86659FD93u) >> 32);
}

vxcore::StringKey NameCache::intern(std::string_view text, unsigned int hash) {
    unsigned int const bits = 32 - m_shift;
    if (bits == 0 || (m_misses == 1u << bits && bits < sm_maxBits)) {
        grow();
    }
    ++m_misses;
    Slot & slot = m_slots[hash >> m_shift];
    slot.text = {}; // the old key may take it along
    slot.key = vxcore::StringKey(text);
    slot.text = slot.key.value();
    return slot.key;
}

void NameCache::grow() {
    unsigned int const bits = 32 - m_shift;
    unsigned int const newBits = bits == 0 ? sm_minBits : bits + 2;
    std::unique_ptr<Slot[]> slots(new Slot[1u << newBits]);
    for (unsigned int i = 0; bits != 0 && i < 1u << bits; ++i) {
        Slot & slot = slots[hash_of(m_slots[i].text) >> (32 - newBits)];
        slot.key.swap(m_slots[i].key);
        slot.text = m_slots[i].text;
    }
    m_slots.swap(slots);
    m_shift = 32 - newBits;
    m_misses = 0;
}

} // namespace vxserialize::impl
