#include "vxserialize/name_cache_impl.h"

namespace vxserialize::impl {

vxcore::StringKey NameCache::intern(Print const & print, std::string_view text) {
    unsigned int const bits = 32 - m_shift;
    if (bits == 0 && m_misses < sm_missesBeforeSlots) {
        ++m_misses;
        return vxcore::StringKey(text);
    }
    if (bits == 0 || (m_misses == 1u << bits && bits < sm_maxBits)) {
        grow();
    }
    ++m_misses;
    Slot fresh{vxcore::StringKey(text), print};
    vxcore::StringKey const key = fresh.key;
    add(fresh);
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
    for (unsigned int i = 0; bits != 0 && i < 1u << bits; ++i) {
        if (slots[i].print.size != 0) {
            add(slots[i]);
        }
    }
}

} // namespace vxserialize::impl
