#pragma once

#include "vxserialize/memory_segment.h"

#include <cstddef>
#include <vector>

namespace vxserialize {

namespace impl {

/// A walk over the segments of a list, `Segment` being `MemorySegment`, const for reading.
template <typename Segment>
class SegmentIterator {
  public:
    SegmentIterator(Segment * begin, Segment * end) noexcept : m_segment(begin), m_end(end) {}

    bool at_end() const noexcept { return m_segment == m_end; }

    Segment & operator*() const noexcept { return *m_segment; }

    Segment * operator->() const noexcept { return m_segment; }

    SegmentIterator & operator++() noexcept {
        ++m_segment;
        return *this;
    }

  private:
    Segment * m_segment;
    Segment * m_end;
};

} // namespace impl

using SegmentReadIterator = impl::SegmentIterator<MemorySegment const>;
using SegmentWriteIterator = impl::SegmentIterator<MemorySegment>;

/// A place in a MemoryList that moves forward.
///
/// Holds until the list is changed or destroyed. Copies are places of their own.
class VXSERIALIZE_API MemoryListCursor {
  public:
    /// At the end of an empty list.
    MemoryListCursor() noexcept = default;

    bool is_eof() const noexcept { return bytes_left() == 0; }

    unsigned int bytes_left() const noexcept {
        return m_behind + static_cast<unsigned int>(m_end - m_data);
    }

    /// The bytes that stand in one piece at the cursor; `size` gets their number, 0 only at the
    /// end.
    unsigned char const * data_at_cursor(unsigned int & size) noexcept;

    /// Copies up to `size` bytes without moving, and gives their number, less only at the end.
    unsigned int read_at_cursor(void * buffer, unsigned int size) const noexcept;

    /// Moves on by up to `size` bytes and gives their number, less only at the end.
    unsigned int cursor_advance(unsigned int size) noexcept;

    /// The next `size` bytes, or those left, as a list that shares them.
    vxcore::RefCountPtr<MemoryList> sublist_at_cursor(unsigned int size) const;

  private:
    friend class MemoryListBase;
    friend class MemoryReader;

    /// Steps over the rest of the current segment. False at the end of the list.
    bool enter_next_segment() noexcept;

    std::vector<MemorySegment> segments_at_cursor(unsigned int size) const;

    unsigned char const * m_data = nullptr; // at the cursor
    unsigned char const * m_end = nullptr;  // of the current segment
    MemorySegment const * m_next = nullptr; // the segment behind the current one
    unsigned int m_behind = 0;              // bytes in the segments behind the current one
};

/// Bytes in a row of segments that lists share: see MemoryList.
class VXSERIALIZE_API MemoryListBase {
  public:
    /// As a size: everything up to the end.
    static constexpr unsigned int all = 0xFFFFFFFFu;

    MemoryListBase(MemoryListBase const &) = delete;
    MemoryListBase & operator=(MemoryListBase const &) = delete;

    /// Bytes.
    unsigned int size() const noexcept { return m_size; }

    bool empty() const noexcept { return m_size == 0; }

    /// Copies up to `size` bytes from `position` on to `buffer` and gives their number, which is
    /// less only at the end; a position beyond the end gives 0.
    ///
    /// @cost  O(segments before `position`). A cursor is the way to read in order.
    unsigned int read_at(unsigned int position, void * buffer, unsigned int size) const noexcept;

    /// A list of up to `size` bytes from `position` on. It shares them.
    ///
    /// @raises std::out_of_range: `position` is above `size()`.
    /// @cost   O(segments); no byte is copied.
    vxcore::RefCountPtr<MemoryList> sublist(unsigned int position, unsigned int size = all) const;

    /// A list of the same bytes, which it shares: `sublist` of everything.
    vxcore::RefCountPtr<MemoryList> shallow_clone() const;

    /// Adds a copy of `size` bytes. They go behind the last segment where its block has room that
    /// nobody else sees, and to a new segment.
    ///
    /// @raises std::length_error: the list would be beyond 2^32 - 1 bytes. As in the other two, a
    ///         failure leaves the list as it was.
    void append(void const * data, unsigned int size);

    /// Adds up to `size` bytes of `list` from `position` on. They are shared; the list itself is a
    /// good argument.
    ///
    /// @raises std::out_of_range: `position` is above the size of `list`. std::length_error: as
    /// above.
    void append(MemoryListBase const & list, unsigned int position = 0, unsigned int size = all);

    /// As the function above, but with a copy of the bytes, in one piece.
    void append_defragmented(MemoryListBase const & list, unsigned int position = 0,
                             unsigned int size = all);

    /// Calls `overwrite(data, size)` for each run of bytes in memory that only this list uses, for
    /// wiping a secret in its place. That includes a block that several segments of this list
    /// share, for which `MemorySegment::is_shared()` is true. Other bytes keep their values, but
    /// the segments may be in another order afterwards.
    ///
    /// @cost  O(n log n) for n segments; no allocation.
    void overwrite_own_bytes(void (*overwrite)(void *, std::size_t) noexcept) noexcept;

    /// A cursor at `position`, or at the end.
    MemoryListCursor reader(unsigned int position = 0) const noexcept VXCORE_LIFETIMEBOUND;

    /// A walk over all segments. Writing goes through `MemorySegment::get_inplace_write_ptr`.
    SegmentReadIterator segment_read_iterator() const noexcept VXCORE_LIFETIMEBOUND {
        return {m_segments.data(), m_segments.data() + m_segments.size()};
    }

    SegmentWriteIterator segment_write_iterator() noexcept VXCORE_LIFETIMEBOUND {
        return {m_segments.data(), m_segments.data() + m_segments.size()};
    }

  protected:
    explicit MemoryListBase(unsigned int segmentSize) noexcept : m_nextCapacity(segmentSize) {}

    ~MemoryListBase() = default;

  private:
    friend class MemoryList;
    friend class MemoryListCursor;
    friend class MemoryWriter;

    /// Makes place in the row of segments for `count` more, so that adding them cannot fail.
    void reserve_segments(std::size_t count);

    void add_segments(std::vector<MemorySegment> segments);

    /// Adds a segment that there is place for.
    void add_reserved_segment(MemorySegment segment) noexcept;

    /// A block for at least `needed` bytes; each is twice as large as the one before, to a limit.
    vxcore::RefCountPtr<impl::MemoryBlock> create_block(unsigned int needed);

    std::vector<MemorySegment> m_segments; // none of them empty
    unsigned int m_size = 0;
    unsigned int m_nextCapacity;
};

/// A run of bytes in segments, shared and counted: what payloads and marshaled data are held in.
///
/// Sublists and clones share the memory; only the row of segments is a list's own. Lists that share
/// memory are independent all the same: a write through one of them is never seen in another.
/// `MemorySegment` tells which writes copy. To overwrite secrets in their place, drop the other
/// lists, and the readers' sublists of them, first; then call `overwrite_own_bytes()`.
///
/// Threads. A list held as `MemoryList const` may be read anywhere. Different lists may be used in
/// different threads even when they share memory.
class VXSERIALIZE_API MemoryList final : public vxcore::RefCounted<vxcore::AtomicRefCount>,
                                         public MemoryListBase {
  public:
    /// The size of the first segment that a list makes for itself, in bytes.
    static constexpr unsigned int first_segment_size = 256;

    /// Segments grow up to this size, in bytes; only a larger single piece makes a larger one.
    static constexpr unsigned int max_segment_size = 64 * 1024;

    /// An empty list.
    static vxcore::RefCountPtr<MemoryList> create();

    /// An empty list whose first segment will have room for `segmentSize` bytes.
    static vxcore::RefCountPtr<MemoryList> create(unsigned int segmentSize);

    /// A list of a copy of the bytes, in one segment without room behind it.
    static vxcore::RefCountPtr<MemoryList> create(void const * data, unsigned int size);

  private:
    explicit MemoryList(unsigned int segmentSize) noexcept : MemoryListBase(segmentSize) {}

    ~MemoryList() override;
};

} // namespace vxserialize
