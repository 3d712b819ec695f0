#include "vxserialize/name_cache_impl.h"

namespace vxserialize::impl {

vxcore::StringKey NameCache::intern(vxcore::TextEnds const & print, std::string_view text) {
    vxcore::StringKey key(text);
    unsigned int const bits = 32 - m_shift;
    ++m_misses;
    if (bits == 0 && m_misses <= sm_missesBeforeSlots) {
        return key;
    }
    if (bits == 0 || (bits < sm_maxBits && m_misses > sm_missesPerSlot << bits)) {
        grow();
    }
    if (was_seen(print.hash())) {
        Slot fresh{key, print, 0};
        add(fresh);
    }
    return key;
}

/// Tells whether a name of that hash came by lately, and notes it when not. Chance decides which of
/// the two notes makes way: in any fixed order, names that come in turn could push each other out
/// for ever.
bool NameCache::was_seen(unsigned int hash) noexcept {
    unsigned int const place = hash >> m_shift;
    if (m_slots[place].seen == hash || m_slots[place ^ 1].seen == hash) {
        return true;
    }
    m_dice = m_dice * 1664525u + 1013904223u;
    m_slots[place ^ (m_dice >> 31)].seen = hash;
    return false;
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
