#include "vxattribute/name_index_impl.h"

#include <bit>
#include <stdexcept>

namespace vxattribute::impl {

NameIndex::NameIndex(std::size_t count) {
    if (count >= sm_none) {
        throw std::length_error("vxattribute: a list may have at most 4294967294 names");
    }
    // A power of two, so that a mask finds the slot. More than four slots a name keep probes short
    // and ensure an unused slot, at which every search ends.
    m_slots.assign(std::bit_ceil(4 * count + 1), sm_none);
}

bool NameIndex::insert(AttributeName const * names, unsigned int position) noexcept {
    unsigned int & slot = m_slots[slot_of(names, names[position])];
    if (slot != sm_none) {
        return false;
    }
    slot = position;
    return true;
}

} // namespace vxattribute::impl
