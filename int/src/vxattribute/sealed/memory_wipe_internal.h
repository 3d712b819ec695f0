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

/// The result of a cipher as a list that may be wiped: `opened` itself, if nobody else uses it.
/// Null becomes an empty list. Pass a temporary.
WipedList wipeable(vxcore::RefCountPtr<vxserialize::MemoryList const> const & opened);

} // namespace vxattribute::impl
