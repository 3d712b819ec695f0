#include "vxserialize/memory_writer.h"

#include "vxserialize/failures_internal.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer_impl.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace vxserialize {

using namespace impl::binary;
using impl::MemoryWriterView;

MemoryWriter::MemoryWriter() : m_list(MemoryList::create()) {}

MemoryWriter::~MemoryWriter() = default;

MemoryReader MemoryWriter::reader() const {
    vxcore::RefCountPtr<MemoryList> list = m_list ? m_list->shallow_clone() : MemoryList::create();
    // The list has the full blocks only. The reader shares the current block too: later writes
    // append to the block after the bytes that the reader sees.
    if (m_cursor != m_begin) {
        list->reserve_segments(1);
        list->add_reserved_segment(
            MemorySegment(m_block, m_begin, static_cast<unsigned int>(m_cursor - m_begin)));
    }
    return MemoryReader(std::move(list));
}

/// Adds what was written to the current block to the list. Its segment was reserved together with
/// the block.
inline void MemoryWriter::finish_block() noexcept {
    if (m_cursor != m_begin) {
        m_list->add_reserved_segment(MemorySegment(std::move(m_block), m_begin,
                                                   static_cast<unsigned int>(m_cursor - m_begin)));
    }
}

vxcore::RefCountPtr<MemoryList> MemoryWriter::close_and_detach_memory_list() {
    if (!m_list) {
        return MemoryList::create();
    }
    finish_block();
    m_block.reset();
    m_begin = m_cursor = m_limit = nullptr;
    return std::move(m_list);
}

/// Called only for a new block: a closed writer has no room, so each of its writes asks for one.
void MemoryWriter::check_open() const {
    if (!m_list) {
        impl::throw_usage("vxserialize::MemoryWriter", "a write to a closed writer");
    }
}

/// Creates a block for `needed` bytes that the current block has no room for. A failure changes
/// nothing. Entering the block later cannot fail.
MemoryWriter::BlockPtr MemoryWriter::create_block(unsigned int needed) {
    check_open();
    unsigned int const full = m_list->size() + static_cast<unsigned int>(m_limit - m_begin);
    if (needed > std::numeric_limits<unsigned int>::max() - full) {
        throw std::length_error("vxserialize: a memory list may have at most 4294967295 bytes");
    }
    m_list->reserve_segments(2); // for the current block and for the new one
    return m_list->create_block(needed);
}

void MemoryWriter::enter_block(BlockPtr block) noexcept {
    finish_block();
    m_block = std::move(block);
    m_begin = m_cursor = m_block->data();
    // Near 4 GiB the block may have more room than the size of the list can count.
    m_limit = m_begin + std::min(m_block->capacity(),
                                 std::numeric_limits<unsigned int>::max() - m_list->size());
}

void MemoryWriter::start_block(unsigned int needed) {
    enter_block(create_block(needed));
}

/// Writes the tag and size of an element of `size` bytes. Returns the block that `put_bytes` needs
/// for the bytes that do not fit into the current one, or null. A failure writes nothing, so it
/// leaves neither half an element nor bytes of a secret that nobody wipes.
MemoryWriter::BlockPtr MemoryWriter::put_head(unsigned int size, NumberTags const & tags) {
    room(number_room);
    unsigned int const left = static_cast<unsigned int>(m_limit - m_cursor) - number_room;
    BlockPtr next;
    if (size > left) {
        next = create_block(size - left);
    }
    MemoryWriterView(*this).put_number(size, tags);
    return next;
}

/// Writes bytes of an element. The last of them may go to the block that `put_head` returned.
void MemoryWriter::put_bytes(void const * data, unsigned int size, BlockPtr & next) noexcept {
    auto const * const bytes = static_cast<unsigned char const *>(data);
    unsigned int const run = std::min(size, static_cast<unsigned int>(m_limit - m_cursor));
    if (run != 0) {
        std::memcpy(m_cursor, bytes, run);
        m_cursor += run;
    }
    if (run != size) {
        enter_block(std::move(next));
        std::memcpy(m_cursor, bytes + run, size - run);
        m_cursor += size - run;
    }
}

void MemoryWriter::put_block(void const * data, unsigned int size, NumberTags const & tags) {
    BlockPtr next = put_head(size, tags);
    put_bytes(data, size, next);
}

void MemoryWriter::write_null() {
    MemoryWriterView(*this).write_null();
}

void MemoryWriter::write_bool(bool value) {
    MemoryWriterView(*this).write_bool(value);
}

void MemoryWriter::write_integer(long long value) {
    MemoryWriterView(*this).write_integer(value);
}

void MemoryWriter::write_uint(unsigned int value) {
    MemoryWriterView(*this).write_uint(value);
}

void MemoryWriter::write_double(double value) {
    MemoryWriterView(*this).write_double(value);
}

void MemoryWriter::write_string(char const * data, unsigned int size) {
    MemoryWriterView(*this).write_string(data, size);
}

void MemoryWriter::write_string_key(vxcore::StringKey const & key) {
    MemoryWriterView(*this).write_string_key(key);
}

void MemoryWriter::write_absolute_time(vxcore::AbsoluteTime value) {
    MemoryWriterView(*this).write_absolute_time(value);
}

void MemoryWriter::write_relative_time(vxcore::RelativeTime value) {
    MemoryWriterView(*this).write_relative_time(value);
}

void MemoryWriter::write_uuid(vxcore::Uuid const & value) {
    unsigned char * const out = room(uuid_size);
    *out = static_cast<unsigned char>(uuid);
    std::memcpy(out + 1, value.data().data(), value.data().size());
    m_cursor = out + uuid_size;
    m_containers.mark_element();
}

void MemoryWriter::write_binary(void const * data, unsigned int size) {
    put_block(data, size, block_tags);
    m_containers.mark_element();
}

void MemoryWriter::write_memory_list(MemoryListBase const & list) {
    BlockPtr next = put_head(list.size(), block_tags);
    for (auto segment = list.segment_read_iterator(); !segment.at_end(); ++segment) {
        put_bytes(segment->data(), segment->size(), next);
    }
    m_containers.mark_element();
}

void MemoryWriter::begin_list(unsigned int count) {
    MemoryWriterView(*this).begin_list(count);
}

void MemoryWriter::next_list_item() {
    MemoryWriterView(*this).next_list_item();
}

void MemoryWriter::end_list() {
    MemoryWriterView(*this).end_list();
}

void MemoryWriter::begin_record() {
    room(1); // first, as for a list
    m_containers.begin_record();
    MemoryWriterView(*this).put_tag(record_begin);
}

void MemoryWriter::end_record() {
    room(1);
    m_containers.end_record("vxserialize::MemoryWriter::end_record()");
    MemoryWriterView(*this).put_tag(record_end);
}

} // namespace vxserialize
