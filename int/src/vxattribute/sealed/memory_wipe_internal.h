#pragma once

#include "vxserialize/memory_list.h"

#include <utility>

namespace vxattribute::impl {

/// Overwrites the bytes of the list with zeros in place.
///
/// Memory that other lists use too is not changed: they still need it. Destroy readers, sublists
/// and other lists over the same bytes first.
void wipe(vxserialize::MemoryList & list) noexcept;

/// Owns a list that may hold a key and wipes it at the end of its scope, also when an exception
/// leaves the scope. Declare objects that read the list after it, so that they are destroyed first.
class WipedList {
  public:
    using Ptr = vxcore::RefCountPtr<vxserialize::MemoryList>;

    /// @param list  Not null.
    explicit WipedList(Ptr list) noexcept : m_list(std::move(list)) {}

    WipedList(WipedList const &) = delete;
    WipedList & operator=(WipedList const &) = delete;

    ~WipedList() {
        if (m_list) {
            wipe(*m_list);
        }
    }

    Ptr const & get() const noexcept { return m_list; }

    vxserialize::MemoryList & operator*() const noexcept { return *m_list; }

    vxserialize::MemoryList * operator->() const noexcept { return m_list.get(); }

    /// Passes the list to the caller without wiping it.
    Ptr release() noexcept { return std::move(m_list); }

  private:
    Ptr m_list;
};

/// Calls `action(data, size)` for each run of bytes from `offset` on, in order. The action may
/// change the bytes.
template <typename Action>
void for_each_run_from(vxserialize::MemoryList & list, unsigned int offset, Action action) {
    for (auto segment = list.segment_write_iterator(); !segment.at_end(); ++segment) {
        unsigned int const size = segment->size();
        if (offset >= size) {
            offset -= size;
            continue;
        }
        action(segment->get_inplace_write_ptr(size) + offset, size - offset);
        offset = 0;
    }
}

} // namespace vxattribute::impl
