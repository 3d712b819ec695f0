#pragma once

// Included by attribute_name_package.h; not for direct use.

#include "vxattribute/attribute_name.h"

#include <cstddef>
#include <vector>

namespace vxattribute::impl {

/// Finds the position of a name in a list: a hash table of positions with linear probing.
///
/// The table does not contain the names: each call passes the list, so a slot is 4 bytes. At most a
/// quarter of the slots are used, and the hash of a name is keyed and stored with its token. So
/// most searches end at the first slot, and none reads characters. The table has a fixed size, and
/// nothing is ever removed.
///
/// Every call must pass the same list of names, unchanged.
///
/// Cost. 16 to 32 bytes per name, in one allocation. `insert` and `find` are O(1) on average. The
/// key is a secret of the process, so names cannot be chosen to collide.
///
/// Threads. `find` may be called from many threads.
class NameIndex {
  public:
    /// Not a position: the name is absent.
    static constexpr unsigned int sm_none = 0xFFFFFFFF;

    /// A table for `count` names, still without any.
    ///
    /// @raises std::length_error: 2^32 - 1 names or more; std::bad_alloc.
    explicit NameIndex(std::size_t count);

    /// Inserts `names[position]`. Returns false and changes nothing when that name is present. At
    /// most as many calls as the constructor's `count`.
    bool insert(AttributeName const * names, unsigned int position) noexcept;

    /// The position of the name, or `sm_none`. Tokens are compared, not characters.
    unsigned int find(AttributeName const * names, AttributeName const & name) const noexcept {
        return m_slots[slot_of(names, name)];
    }

  private:
    /// The slot that has the name, or the unused slot where it would be inserted. There is always
    /// one, as most slots are unused.
    std::size_t slot_of(AttributeName const * names, AttributeName const & name) const noexcept {
        std::size_t const mask = m_slots.size() - 1;
        std::size_t slot = name.hash() & mask;
        while (m_slots[slot] != sm_none && !(names[m_slots[slot]] == name)) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    std::vector<unsigned int> m_slots; // a power of two of them
};

} // namespace vxattribute::impl
