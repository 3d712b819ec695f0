#pragma once

#include "vxserialize/memory_list.h"

namespace vxattribute::impl {

/// Overwrites the bytes of the list with zeros, in their place.
///
/// Memory that somebody else uses too is left alone: a write would wipe a copy. Drop readers,
/// sublists and other lists over the same bytes first.
void wipe(vxserialize::MemoryList & list) noexcept;

/// Calls `action(data, size)` for each run of bytes behind `offset`, in order, for changing them in
/// place.
template <typename Action>
void for_each_run_behind(vxserialize::MemoryList & list, unsigned int offset, Action action) {
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
