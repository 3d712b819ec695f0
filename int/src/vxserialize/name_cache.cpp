#include "vxserialize/name_cache_impl.h"

#include <utility>

namespace vxserialize::impl {

bool NameCache::is_to_grow() const noexcept {
    unsigned int const bits = 32 - m_shift;
    if (bits == 0) {
        return true;
    }
    bool const isFull = m_misses >= 1u << bits && bits < sm_maxBits;
    return isFull && (bits < sm_freeBits || m_repeated > m_misses / 4);
}

vxcore::StringKey NameCache::intern(Print const & print, std::string_view text) {
    vxcore::StringKey key(text);
    if (!m_slots && m_misses < sm_missesBeforeSlots) {
        ++m_misses;
        return key;
    }
    if (!m_slots || (m_misses == 1u << (32 - m_shift) && 32 - m_shift < sm_maxBits)) {
        grow();
    }
    unsigned int const hash = print.hash();
    if (std::exchange(m_slots[hash >> m_shift].seen, hash) == hash) {
        ++m_misses;
        Slot fresh{key, print};
        add(fresh);
    }
    return key;
}

/// Puts the slot in the first place; what stood there moves on and the older one into `slot`.
void NameCache::add(Slot & slot) {
    unsigned int const place = slot.print.hash() >> m_shift;
    Slot & first = m_slots[place];
    Slot & second = m_slots[place ^ 1];
    second.key.swap(first.key);
    second.print = first.print;
    first.key.swap(slot.key);
    first.print = slot.print;
}

void NameCache::grow() {
    unsigned int const bits = 32 - m_shift;
    unsigned int const newBits = bits == 0 ? sm_minBits : bits + 2;
    std::unique_ptr<Slot[]> slots(new Slot[1u << newBits]);
    m_slots.swap(slots);
    m_shift = 32 - newBits;
    m_misses = 0;
    m_repeated = 0;
    for (unsigned int i = 0; bits != 0 && i < 1u << bits; ++i) {
        if (slots[i].print.size != 0) {
            add(slots[i]);
        }
    }
}

} // namespace vxserialize::impl
