#include "vxserialize/memory/memory_list_stream_internal.h"

#include <algorithm>

namespace vxserialize::impl {

namespace {

/// A stream over part of a list. It has a cursor of its own, so it is independent of the reader.
class MemoryListStream final : public vxcore::RefCounted<vxcore::AtomicRefCount>,
                               public vxcore::IReadStream {
  public:
    MemoryListStream(vxcore::RefCountPtr<MemoryList const> list, MemoryListCursor const & cursor,
                     unsigned int size) noexcept
        : m_list(std::move(list)), m_cursor(cursor), m_left(size) {}

    unsigned int read(void * buffer, unsigned int size) override {
        size = m_cursor.read_at_cursor(buffer, std::min(size, m_left));
        return skip(size);
    }

    unsigned int skip(unsigned int size) override {
        size = m_cursor.cursor_advance(std::min(size, m_left));
        m_left -= size;
        return size;
    }

    long long size() const override { return m_left; }

  private:
    ~MemoryListStream() override = default;

    vxcore::RefCountPtr<MemoryList const> const m_list; // keeps the bytes for the cursor
    MemoryListCursor m_cursor;
    unsigned int m_left; // bytes of the block, which may end before the list does
};

} // namespace

ReadStreamPtr create_memory_list_stream(vxcore::RefCountPtr<MemoryList const> list,
                                        MemoryListCursor const & cursor, unsigned int size) {
    auto stream = vxcore::make_ref_counted<MemoryListStream>(std::move(list), cursor, size);
    MemoryListStream * const object = stream.get(); // first: the owner is moved from next
    return ReadStreamPtr(object, std::move(stream));
}

ReadStreamPtr create_memory_list_stream(vxcore::RefCountPtr<MemoryList const> list) {
    MemoryListCursor const start = list->reader(); // first: the list is moved from next
    return create_memory_list_stream(std::move(list), start, start.bytes_left());
}

} // namespace vxserialize::impl
