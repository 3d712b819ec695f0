#include "vxserialize/memory_list.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <stdexcept>

namespace vxserialize {

namespace {

/// Returns `size + added`, the new size of a list, or raises if it is beyond the limit.
unsigned int grown_size(unsigned int size, unsigned int added) {
    if (added > std::numeric_limits<unsigned int>::max() - size) {
        throw std::length_error("vxserialize: a memory list may have at most 4294967295 bytes");
    }
    return size + added;
}

} // namespace

// A cursor at the end of a segment stays there until bytes of the next one are needed.
bool MemoryListCursor::enter_next_segment() noexcept {
    if (m_bytesAfter == 0) {
        m_data = m_end;
        return false;
    }
    m_data = m_next->data();
    m_end = m_data + m_next->size();
    m_bytesAfter -= m_next->size();
    ++m_next;
    return true;
}

unsigned char const * MemoryListCursor::data_at_cursor(unsigned int & size) noexcept {
    if (m_data == m_end) {
        enter_next_segment();
    }
    size = static_cast<unsigned int>(m_end - m_data);
    return m_data;
}

unsigned int MemoryListCursor::read_at_cursor(void * buffer, unsigned int size) const noexcept {
    auto * out = static_cast<unsigned char *>(buffer);
    MemoryListCursor from = *this; // moves in place of this cursor
    unsigned int left = std::min(size, bytes_left());
    unsigned int const copied = left;
    while (left != 0) {
        unsigned int run = 0;
        unsigned char const * const data = from.data_at_cursor(run);
        run = std::min(run, left);
        std::memcpy(out, data, run);
        out += run;
        left -= run;
        from.m_data += run;
    }
    return copied;
}

unsigned int MemoryListCursor::cursor_advance(unsigned int size) noexcept {
    unsigned int left = std::min(size, bytes_left());
    unsigned int const moved = left;
    // Not >=: at the end of a segment the cursor stays there, as above.
    while (left > static_cast<unsigned int>(m_end - m_data)) {
        left -= static_cast<unsigned int>(m_end - m_data);
        enter_next_segment();
    }
    if (left != 0) {
        m_data += left;
    }
    return moved;
}

// The segments refer to the same blocks: no byte is copied.
std::vector<MemorySegment> MemoryListCursor::segments_at_cursor(unsigned int size) const {
    std::vector<MemorySegment> segments;
    MemoryListCursor from = *this;
    for (unsigned int left = std::min(size, bytes_left()); left != 0;) {
        unsigned int run = 0;
        unsigned char const * const data = from.data_at_cursor(run);
        run = std::min(run, left);
        MemorySegment const & segment = from.m_next[-1]; // the current one
        segments.push_back(
            MemorySegment(segment.m_block, segment.m_data + (data - segment.m_data), run));
        left -= run;
        from.m_data += run;
    }
    return segments;
}

vxcore::RefCountPtr<MemoryList> MemoryListCursor::sublist_at_cursor(unsigned int size) const {
    vxcore::RefCountPtr<MemoryList> list = MemoryList::create();
    list->add_segments(segments_at_cursor(size));
    return list;
}

MemoryListCursor MemoryListBase::reader(unsigned int position) const noexcept {
    MemoryListCursor cursor;
    cursor.m_next = m_segments.data();
    cursor.m_bytesAfter = m_size;
    cursor.m_listSize = m_size;
    cursor.cursor_advance(position);
    return cursor;
}

unsigned int MemoryListBase::read_at(unsigned int position, void * buffer,
                                     unsigned int size) const noexcept {
    return reader(position).read_at_cursor(buffer, size);
}

vxcore::RefCountPtr<MemoryList> MemoryListBase::sublist(unsigned int position,
                                                        unsigned int size) const {
    if (position > m_size) {
        throw std::out_of_range("vxserialize::MemoryListBase::sublist()");
    }
    return reader(position).sublist_at_cursor(size);
}

vxcore::RefCountPtr<MemoryList> MemoryListBase::shallow_clone() const {
    return sublist(0);
}

void MemoryListBase::append(void const * data, unsigned int size) {
    if (size == 0) {
        return;
    }
    unsigned int const newSize = grown_size(m_size, size);
    auto const * const bytes = static_cast<unsigned char const *>(data);
    // Room at the end of the last block, if no other list uses the block: that list might append to
    // the same place.
    unsigned int const slack = m_segments.empty() ? 0 : m_segments.back().own_slack();
    unsigned int const inPlace = std::min(size, slack);
    // Everything that can fail comes first.
    vxcore::RefCountPtr<impl::MemoryBlock> block;
    if (inPlace < size) {
        reserve_segments(1);
        block = create_block(size - inPlace);
        std::memcpy(block->data(), bytes + inPlace, size - inPlace);
    }
    if (inPlace != 0) {
        MemorySegment & last = m_segments.back();
        std::memcpy(last.m_data + last.m_size, bytes, inPlace);
        last.m_size += inPlace;
        m_size += inPlace;
    }
    if (block) {
        unsigned char * const start = block->data();
        add_reserved_segment(MemorySegment(std::move(block), start, newSize - m_size));
    }
}

void MemoryListBase::append(MemoryListBase const & list, unsigned int position, unsigned int size) {
    if (position > list.m_size) {
        throw std::out_of_range("vxserialize::MemoryListBase::append()");
    }
    grown_size(m_size, std::min(size, list.m_size - position)); // for its check only
    // Collected first: `list` may be this list.
    add_segments(list.reader(position).segments_at_cursor(size));
}

void MemoryListBase::append_defragmented(MemoryListBase const & list, unsigned int position,
                                         unsigned int size) {
    if (position > list.m_size) {
        throw std::out_of_range("vxserialize::MemoryListBase::append_defragmented()");
    }
    size = std::min(size, list.m_size - position);
    if (size == 0) {
        return;
    }
    grown_size(m_size, size);
    if (!m_segments.empty() && m_segments.back().own_slack() >= size) {
        MemorySegment & last = m_segments.back();
        list.read_at(position, last.m_data + last.m_size, size);
        last.m_size += size;
        m_size += size;
        return;
    }
    reserve_segments(1); // before the copy: a failure leaves no copy of a secret in a freed block
    vxcore::RefCountPtr<impl::MemoryBlock> block = impl::MemoryBlock::create(size);
    list.read_at(position, block->data(), size);
    unsigned char * const start = block->data();
    add_reserved_segment(MemorySegment(std::move(block), start, size));
}

void MemoryListBase::overwrite_own_bytes(void (*overwrite)(void *, std::size_t) noexcept) noexcept {
    // Sorted by block, so that the segments of one block are neighbours.
    std::sort(m_segments.begin(), m_segments.end(), [](auto const & a, auto const & b) {
        return std::less<>()(a.m_block.get(), b.m_block.get());
    });
    for (auto first = m_segments.begin(); first != m_segments.end();) {
        auto const second = first + 1;
        auto const last = std::find_if(second, m_segments.end(), [&first](auto const & segment) {
            return segment.m_block != first->m_block;
        });
        // Keep one reference of this list: if it is the only one, no other list uses the block.
        std::for_each(second, last, [](auto & segment) { segment.m_block.reset(); });
        bool const isOwn = first->m_block->has_unique_ref();
        std::for_each(second, last, [&first](auto & segment) { segment.m_block = first->m_block; });
        for (; first != last; ++first) {
            if (isOwn) {
                overwrite(first->m_data, first->m_size);
            }
        }
    }
}

void MemoryListBase::reserve_segments(std::size_t count) {
    std::size_t const needed = m_segments.size() + count;
    if (needed > m_segments.capacity()) {
        // Twice the capacity: `reserve` alone may grow by exactly what is asked for.
        m_segments.reserve(std::max(needed, 2 * m_segments.capacity()));
    }
}

void MemoryListBase::add_segments(std::vector<MemorySegment> segments) {
    if (m_segments.empty()) {
        m_segments.swap(segments); // no copy
        for (MemorySegment const & segment : m_segments) {
            m_size += segment.size();
        }
        return;
    }
    reserve_segments(segments.size());
    for (MemorySegment & segment : segments) {
        add_reserved_segment(std::move(segment));
    }
}

void MemoryListBase::add_reserved_segment(MemorySegment segment) noexcept {
    m_size += segment.size();
    m_segments.push_back(std::move(segment));
}

vxcore::RefCountPtr<impl::MemoryBlock> MemoryListBase::create_block(unsigned int needed) {
    vxcore::RefCountPtr<impl::MemoryBlock> block =
        impl::MemoryBlock::create(std::max(needed, m_nextCapacity));
    // After a small first segment, a list continues with at least the default size.
    m_nextCapacity = m_nextCapacity >= MemoryList::max_segment_size / 2
                         ? MemoryList::max_segment_size
                         : std::max(2 * m_nextCapacity, MemoryList::first_segment_size);
    return block;
}

vxcore::RefCountPtr<MemoryList> MemoryList::create() {
    return create(first_segment_size);
}

vxcore::RefCountPtr<MemoryList> MemoryList::create(unsigned int segmentSize) {
    return vxcore::RefCountPtr<MemoryList>(new MemoryList(segmentSize));
}

vxcore::RefCountPtr<MemoryList> MemoryList::create(void const * data, unsigned int size) {
    vxcore::RefCountPtr<MemoryList> list = create(size);
    list->append(data, size);
    list->m_nextCapacity = first_segment_size; // later appends start small
    return list;
}

MemoryList::~MemoryList() = default;

} // namespace vxserialize
