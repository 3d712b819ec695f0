#pragma once

// Included by attribute_name_package.h; not for direct use.

#include "vxattribute/attribute_name.h"

#include <cstddef>
#include <vector>

namespace vxattribute::impl {

/// Where the names of a list stand in it: an open hash table of positions.
///
/// The table holds no names but is given the list at each call, so a slot is 4 bytes. At most a
/// quarter of the slots is in use and the hash of a name is keyed and stored with its token: mostly
/// the first slot decides, and no characters are touched. Room is made once; nothing is ever
/// removed.
class NameIndex {
  public:
    /// No position: the name is not there.
    static constexpr unsigned int sm_none = 0xFFFFFFFF;

    /// Room for `count` names.
    ///
    /// @raises std::length_error: 2^32 - 1 names or more.
    explicit NameIndex(std::size_t count);

    /// Takes `names[position]` in; false, with nothing changed, when that name is there already.
    /// No more calls than the constructor was told of.
    bool insert(AttributeName const * names, unsigned int position) noexcept;

    unsigned int find(AttributeName const * names, AttributeName const & name) const noexcept {
        return m_slots[slot_of(names, name)];
    }

  private:
    /// The slot that holds the name, or the unused one where it would go. There always is one.
    std::size_t slot_of(AttributeName const * names, AttributeName const & name) const noexcept {
        std::size_t const mask = m_slots.size() - 1;
        std::size_t slot = name.hash() & mask;
        while (m_slots[slot] != sm_none && !(names[m_slots[slot]] == name)) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    std::vector<unsigned int> m_slots; // as many as a power of two
};

} // namespace vxattribute::impl
