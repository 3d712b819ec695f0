#include "vxserialize/name_cache_impl.h"

namespace vxserialize::impl {

vxcore::StringKey NameCache::intern(vxcore::TextFingerprint const & fingerprint,
                                    std::string_view text) {
    vxcore::StringKey key(text);
    unsigned int const bits = 32 - m_shift;
    ++m_misses;
    // Few names in all: slots would cost more than they save.
    if (bits == 0 && m_misses <= sm_missesBeforeSlots) {
        return key;
    }
    if (bits == 0 || (bits < sm_maxBits && m_misses > sm_missesPerSlot << bits)) {
        grow();
    }
    if (was_seen(fingerprint.hash())) {
        Slot fresh{vxcore::impl::KeyLoan(key), fingerprint, 0};
        add(fresh);
    }
    return key;
}

/// True if a name of that hash appeared recently; otherwise notes the hash. Which of two notes is
/// replaced is random: in a fixed order, names that appear in turn could evict each other forever.
bool NameCache::was_seen(unsigned int hash) noexcept {
    unsigned int const index = hash >> m_shift;
    if (m_slots[index].seen == hash || m_slots[index ^ 1].seen == hash) {
        return true;
    }
    m_random = m_random * 1664525u + 1013904223u;
    m_slots[index ^ (m_random >> 31)].seen = hash;
    return false;
}

/// Moves `slot` to the first of its two places, and the content of that place to the second. `slot`
/// is left with the loan that was in the second.
void NameCache::add(Slot & slot) {
    unsigned int const index = slot.fingerprint.hash() >> m_shift;
    Slot & first = m_slots[index];
    Slot & second = m_slots[index ^ 1];
    second.loan.swap(first.loan);
    second.fingerprint = first.fingerprint;
    first.loan.swap(slot.loan);
    first.fingerprint = slot.fingerprint;
}

void NameCache::grow() {
    unsigned int const bits = 32 - m_shift;
    unsigned int const newBits = bits == 0 ? sm_minBits : bits + 2;
    std::unique_ptr<Slot[]> slots(new Slot[1u << newBits]);
    m_slots.swap(slots);
    m_shift = 32 - newBits;
    m_misses = 0;
    // Notes of names seen once are not taken over.
    for (unsigned int i = 0; bits != 0 && i < 1u << bits; ++i) {
        if (slots[i].fingerprint.size != 0) {
            add(slots[i]);
        }
    }
}

} // namespace vxserialize::impl
