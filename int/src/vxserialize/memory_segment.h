#pragma once

#include "vxcore/ref_count_ptr.h"
#include "vxserialize/export.h"
#include "vxserialize/fwd.h"

namespace vxserialize {

namespace impl {

/// A piece of memory that segments of any number of lists refer to. The bytes follow the object in
/// the same allocation.
class VXSERIALIZE_API MemoryBlock final : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    /// Makes a block in one allocation.
    ///
    /// @param capacity  Bytes; they are not initialised.
    /// @raises std::bad_alloc: no memory.
    static vxcore::RefCountPtr<MemoryBlock> create(unsigned int capacity);

    /// The first of the bytes. They never move while the block lives.
    unsigned char * data() noexcept { return reinterpret_cast<unsigned char *>(this + 1); }

    /// Bytes, used or not.
    unsigned int capacity() const noexcept { return m_capacity; }

  private:
    explicit MemoryBlock(unsigned int capacity) noexcept : m_capacity(capacity) {}

    ~MemoryBlock() override = default;

    void destroy() noexcept override;

    unsigned int const m_capacity;
};

} // namespace impl

/// A run of bytes of a MemoryList: a view into a block of memory that other lists may share.
///
/// A segment that is the only user of its block is written in place. Otherwise the segment first
/// copies its bytes, so a write is never seen through another list.
///
/// Threads. Segments of different lists may be read and written in different threads, even if they
/// share a block. One segment: many readers or one writer.
///
///     for (auto it = list->segment_write_iterator(); !it.at_end(); ++it) {
///         std::memset(it->get_inplace_write_ptr(it->size()), 0, it->size());
///     }
class VXSERIALIZE_API MemorySegment {
  public:
    /// A segment of no bytes.
    MemorySegment() noexcept = default;

    /// The bytes.
    ///
    /// @keeps  Until the list is changed or destroyed.
    unsigned char const * data() const noexcept { return m_data; }

    /// Bytes; not 0 in a segment of a list.
    unsigned int size() const noexcept { return m_size; }

    /// True while another segment, of this or another list, or a MemoryWriter uses the same block.
    /// The next write then copies.
    bool is_shared() const noexcept { return m_block && !m_block->has_unique_ref(); }

    /// Returns the first `size` bytes for writing, with their present content.
    ///
    /// @raises std::out_of_range: `size` is above `size()`. std::bad_alloc: no memory for the copy.
    ///         The segment is unchanged.
    /// @cost   None, or one allocation and copy of the segment if it is shared.
    /// @keeps  Until the list is changed, copied or destroyed. A list made from this one afterwards
    ///         shares the bytes, so call this again before writing again.
    unsigned char * get_inplace_write_ptr(unsigned int size);

  private:
    friend class MemoryList;
    friend class MemoryListBase;
    friend class MemoryListCursor;
    friend class MemoryWriter;

    MemorySegment(vxcore::RefCountPtr<impl::MemoryBlock> block, unsigned char * data,
                  unsigned int size) noexcept
        : m_block(std::move(block)), m_data(data), m_size(size) {}

    /// Bytes of the block after this segment that no other segment can see or write.
    unsigned int own_slack() const noexcept;

    vxcore::RefCountPtr<impl::MemoryBlock> m_block;
    unsigned char * m_data = nullptr;
    unsigned int m_size = 0;
};

} // namespace vxserialize
