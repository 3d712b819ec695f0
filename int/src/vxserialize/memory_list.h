#pragma once

#include "vxserialize/memory_segment.h"

#include <cstddef>
#include <vector>

namespace vxserialize {

namespace impl {

/// Iterates over the segments of a list. `Segment` is `MemorySegment`, const for reading.
///
///     for (auto it = list->segment_read_iterator(); !it.at_end(); ++it) {
///         send(it->data(), it->size());
///     }
template <typename Segment>
class SegmentIterator {
  public:
    /// Starts at `begin`. The iterator does not keep the segments.
    SegmentIterator(Segment * begin, Segment * end) noexcept : m_segment(begin), m_end(end) {}

    /// True if no segment is left. The operators below need one.
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

/// Iterators until `at_end()`: see `MemoryListBase::segment_read_iterator()`.
using SegmentReadIterator = impl::SegmentIterator<MemorySegment const>;
using SegmentWriteIterator = impl::SegmentIterator<MemorySegment>;

/// A position in a MemoryList that moves forward. Copies are independent.
///
/// A cursor does not keep the list alive: it dangles when the list is changed or destroyed.
class VXSERIALIZE_API MemoryListCursor {
  public:
    /// At the end of an empty list.
    MemoryListCursor() noexcept = default;

    /// True if no bytes are left.
    bool is_eof() const noexcept { return bytes_left() == 0; }

    /// Bytes from the cursor to the end of the list.
    unsigned int bytes_left() const noexcept {
        return m_bytesAfter + static_cast<unsigned int>(m_end - m_data);
    }

    /// Bytes from the start of the list to the cursor.
    unsigned int position() const noexcept { return m_listSize - bytes_left(); }

    /// Returns the contiguous bytes at the cursor. `size` receives their number, 0 only at the end.
    unsigned char const * data_at_cursor(unsigned int & size) noexcept;

    /// Copies up to `size` bytes without moving. Returns their number, less only at the end.
    ///
    /// @cost  The copy; it starts in the current segment.
    unsigned int read_at_cursor(void * buffer, unsigned int size) const noexcept;

    /// Moves on by up to `size` bytes. Returns their number, less only at the end.
    ///
    /// @cost  O(segments passed).
    unsigned int cursor_advance(unsigned int size) noexcept;

    /// Returns the next `size` bytes, or those left, as a list that shares them. The cursor stays.
    ///
    /// @raises std::bad_alloc: no memory for the segments; no byte is copied.
    vxcore::RefCountPtr<MemoryList> sublist_at_cursor(unsigned int size) const;

  private:
    friend class MemoryListBase;
    friend class MemoryReader;
    friend class impl::MemoryReaderView;

    /// Steps over the rest of the current segment. False at the end of the list.
    bool enter_next_segment() noexcept;

    std::vector<MemorySegment> segments_at_cursor(unsigned int size) const;

    unsigned char const * m_data = nullptr; // at the cursor
    unsigned char const * m_end = nullptr;  // of the current segment
    MemorySegment const * m_next = nullptr; // the segment after the current one
    unsigned int m_bytesAfter = 0;          // bytes in the segments after the current one
    unsigned int m_listSize = 0;            // bytes of the whole list
};

/// The operations of MemoryList, without the count of references. See there for what a list is;
/// only MemoryList is made.
class VXSERIALIZE_API MemoryListBase {
  public:
    /// As a size: all bytes up to the end.
    static constexpr unsigned int all = 0xFFFFFFFFu;

    MemoryListBase(MemoryListBase const &) = delete;
    MemoryListBase & operator=(MemoryListBase const &) = delete;

    /// Bytes.
    unsigned int size() const noexcept { return m_size; }

    bool empty() const noexcept { return m_size == 0; }

    /// Copies up to `size` bytes, starting at `position`, to `buffer`. Returns their number, which
    /// is less only at the end; 0 for a position beyond the end.
    ///
    /// @cost  O(segments before `position`). To read in order, use a cursor.
    unsigned int read_at(unsigned int position, void * buffer, unsigned int size) const noexcept;

    /// Returns a list of up to `size` bytes, starting at `position`. It shares them.
    ///
    /// @raises std::out_of_range: `position` is above `size()`.
    ///         std::bad_alloc: no memory. So do all functions below that are not noexcept.
    /// @cost   O(segments); no byte is copied.
    vxcore::RefCountPtr<MemoryList> sublist(unsigned int position, unsigned int size = all) const;

    /// Returns a list of the same bytes, which it shares: `sublist(0)`.
    vxcore::RefCountPtr<MemoryList> shallow_clone() const;

    /// Appends a copy of `size` bytes: first to the last segment, as far as its block has room that
    /// no other list can see, then to a new segment.
    ///
    /// @raises std::length_error: the list would exceed 2^32 - 1 bytes. After any failure, here and
    ///         in the two functions below, the list is as it was.
    void append(void const * data, unsigned int size);

    /// Appends up to `size` bytes of `list`, starting at `position`. They are shared. `list` may be
    /// this list.
    ///
    /// @raises std::out_of_range: `position` is above the size of `list`. std::length_error: as
    /// above.
    void append(MemoryListBase const & list, unsigned int position = 0, unsigned int size = all);

    /// As the function above, but appends a copy of the bytes, in one piece.
    void append_defragmented(MemoryListBase const & list, unsigned int position = 0,
                             unsigned int size = all);

    /// Calls `overwrite(data, size)` for each run of bytes in memory that only this list uses, to
    /// wipe a secret in place. That includes blocks that several segments of this list share, for
    /// which `MemorySegment::is_shared()` is true. Other bytes keep their values. The order of the
    /// segments may change.
    ///
    /// @cost  O(n log n) for n segments; no allocation.
    void overwrite_own_bytes(void (*overwrite)(void *, std::size_t) noexcept) noexcept;

    /// Returns a cursor at `position`, or at the end of a shorter list.
    MemoryListCursor reader(unsigned int position = 0) const noexcept VXCORE_LIFETIMEBOUND;

    /// Iterators over all segments, none of which is empty, in the order of the bytes. To write,
    /// call `MemorySegment::get_inplace_write_ptr`.
    ///
    /// @keeps  Until the list is changed or destroyed.
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

    /// Makes room in `m_segments` for `count` more, so that adding them cannot fail.
    void reserve_segments(std::size_t count);

    void add_segments(std::vector<MemorySegment> segments);

    /// Adds a segment for which room was reserved.
    void add_reserved_segment(MemorySegment segment) noexcept;

    /// Creates a block for at least `needed` bytes. Each is twice as large as the previous one, up
    /// to `max_segment_size`.
    vxcore::RefCountPtr<impl::MemoryBlock> create_block(unsigned int needed);

    std::vector<MemorySegment> m_segments; // none of them empty
    unsigned int m_size = 0;
    unsigned int m_nextCapacity;
};

/// A reference-counted sequence of bytes in segments. It holds payloads and marshaled data.
///
/// Sublists and clones share the memory; each list only owns its vector of segments. A write
/// through one list is never seen through another: MemorySegment documents which writes copy. To
/// overwrite secrets in place, first drop the other lists, and the readers' sublists of them, then
/// call `overwrite_own_bytes()`.
///
///     auto list = MemoryList::create();
///     list->append("payload", 7);
///     auto head = list->sublist(0, 3); // shares 3 bytes
///
/// Threads. A list held as `MemoryList const` may be read from any thread. Different lists may be
/// used in different threads even if they share memory.
class VXSERIALIZE_API MemoryList final : public vxcore::RefCounted<vxcore::AtomicRefCount>,
                                         public MemoryListBase {
  public:
    /// Size in bytes of the first segment that a list allocates.
    static constexpr unsigned int first_segment_size = 256;

    /// Segments grow up to this size in bytes. Only a larger single piece gets a larger segment.
    static constexpr unsigned int max_segment_size = 64 * 1024;

    /// An empty list.
    static vxcore::RefCountPtr<MemoryList> create();

    /// An empty list whose first segment will have room for `segmentSize` bytes.
    static vxcore::RefCountPtr<MemoryList> create(unsigned int segmentSize);

    /// A list of a copy of the bytes, in one segment without spare room. `data` may be null if
    /// `size` is 0.
    ///
    /// @raises std::bad_alloc: no memory, as in the other two.
    static vxcore::RefCountPtr<MemoryList> create(void const * data, unsigned int size);

  private:
    explicit MemoryList(unsigned int segmentSize) noexcept : MemoryListBase(segmentSize) {}

    ~MemoryList() override;
};

} // namespace vxserialize
