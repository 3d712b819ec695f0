#include "vxserialize/memory_writer.h"

#include "vxserialize/binary/binary_form_internal.h"
#include "vxserialize/failures_internal.h"
#include "vxserialize/memory_reader.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>

namespace vxserialize {

using namespace impl::binary;

namespace {

/// Copies up to 63 bytes in a few moves that may overlap. A call of memcpy would cost more.
inline void copy_small(unsigned char * out, char const * in, unsigned int size) noexcept {
    if (size >= 16) {
        std::memcpy(out, in, 16);
        if (size > 32) {
            std::memcpy(out + 16, in + 16, 16);
            if (size > 48) {
                std::memcpy(out + 32, in + 32, 16);
            }
        }
        std::memcpy(out + size - 16, in + size - 16, 16);
    } else if (size >= 8) {
        std::memcpy(out, in, 8);
        std::memcpy(out + size - 8, in + size - 8, 8);
    } else if (size >= 4) {
        std::memcpy(out, in, 4);
        std::memcpy(out + size - 4, in + size - 4, 4);
    } else if (size != 0) {
        out[0] = static_cast<unsigned char>(in[0]);
        out[size / 2] = static_cast<unsigned char>(in[size / 2]);
        out[size - 1] = static_cast<unsigned char>(in[size - 1]);
    }
}

} // namespace

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

inline void MemoryWriter::put_tag(unsigned int tag) {
    *room(1) = static_cast<unsigned char>(tag);
    ++m_cursor;
}

inline void MemoryWriter::put_tag_and_bits(unsigned int tag, unsigned long long bits) {
    unsigned char * const out = room(number_room);
    *out = static_cast<unsigned char>(tag);
    store(out + 1, bits);
    m_cursor = out + number_room;
}

inline void MemoryWriter::put_number(unsigned int value, NumberTags const & tags) {
    unsigned char * const out = room(number_room);
    if (value <= tags.small_max) {
        *out = static_cast<unsigned char>(tags.small + value);
        m_cursor = out + 1;
        return;
    }
    unsigned int const width = width_of(value);
    *out = static_cast<unsigned char>(tags.wide + width - 1);
    store(out + 1, value);
    m_cursor = out + 1 + width;
}

/// Writes the tag and size of an element of `size` bytes. Returns the block that `put_bytes` needs
/// for the bytes that do not fit into the current one, or null. A failure writes nothing, so it
/// leaves neither half an element nor bytes of a secret that nobody wipes.
inline MemoryWriter::BlockPtr MemoryWriter::put_head(unsigned int size, NumberTags const & tags) {
    room(number_room);
    unsigned int const left = static_cast<unsigned int>(m_limit - m_cursor) - number_room;
    BlockPtr next;
    if (size > left) {
        next = create_block(size - left);
    }
    put_number(size, tags);
    return next;
}

/// Writes bytes of an element. The last of them may go to the block that `put_head` returned.
inline void MemoryWriter::put_bytes(void const * data, unsigned int size,
                                    BlockPtr & next) noexcept {
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

void MemoryWriter::write_null() {
    put_tag(null_value);
    m_containers.mark_element();
}

void MemoryWriter::write_bool(bool value) {
    put_tag(value ? true_value : false_value);
    m_containers.mark_element();
}

void MemoryWriter::write_integer(long long value) {
    unsigned char * const out = room(number_room);
    if (value >= integer_small_min && value <= integer_small_max) {
        *out = static_cast<unsigned char>(static_cast<int>(integer_small) +
                                          static_cast<int>(value) - integer_small_min);
        m_cursor = out + 1;
    } else {
        unsigned int const width = signed_width_of(value);
        *out = static_cast<unsigned char>(integer_wide + width - 1);
        store(out + 1, static_cast<unsigned long long>(value));
        m_cursor = out + 1 + width;
    }
    m_containers.mark_element();
}

void MemoryWriter::write_uint(unsigned int value) {
    put_number(value, unsigned_tags);
    m_containers.mark_element();
}

void MemoryWriter::write_double(double value) {
    put_tag_and_bits(double_value, std::bit_cast<unsigned long long>(value));
    m_containers.mark_element();
}

void MemoryWriter::write_string(char const * data, unsigned int size) {
    // The common case, a short string with room for it: one check and a copy without a call.
    if (size <= string_tags.small_max && static_cast<unsigned int>(m_limit - m_cursor) > size) {
        unsigned char * const out = m_cursor;
        *out = static_cast<unsigned char>(string_tags.small + size);
        copy_small(out + 1, data, size);
        m_cursor = out + 1 + size;
    } else {
        BlockPtr next = put_head(size, string_tags);
        put_bytes(data, size, next);
    }
    m_containers.mark_element();
}

void MemoryWriter::write_string_key(vxcore::StringKey const & key) {
    std::string const & text = key.value();
    MemoryWriter::write_string(text.data(), static_cast<unsigned int>(text.size()));
}

void MemoryWriter::write_absolute_time(vxcore::AbsoluteTime value) {
    put_tag_and_bits(absolute_time, static_cast<unsigned long long>(value.ticks()));
    m_containers.mark_element();
}

void MemoryWriter::write_relative_time(vxcore::RelativeTime value) {
    put_tag_and_bits(relative_time, static_cast<unsigned long long>(value.ticks()));
    m_containers.mark_element();
}

void MemoryWriter::write_uuid(vxcore::Uuid const & value) {
    unsigned char * const out = room(uuid_size);
    *out = static_cast<unsigned char>(uuid);
    std::memcpy(out + 1, value.data().data(), value.data().size());
    m_cursor = out + uuid_size;
    m_containers.mark_element();
}

void MemoryWriter::write_binary(void const * data, unsigned int size) {
    BlockPtr next = put_head(size, block_tags);
    put_bytes(data, size, next);
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
    room(number_room); // first, so that a failure leaves no list open
    m_containers.begin_list(count);
    put_number(count, list_tags);
}

void MemoryWriter::next_list_item() {
    m_containers.next_list_item("vxserialize::MemoryWriter::next_list_item()");
}

void MemoryWriter::end_list() {
    m_containers.end_list("vxserialize::MemoryWriter::end_list()");
}

void MemoryWriter::begin_record() {
    room(1); // first, as for a list
    m_containers.begin_record();
    put_tag(record_begin);
}

void MemoryWriter::end_record() {
    room(1);
    m_containers.end_record("vxserialize::MemoryWriter::end_record()");
    put_tag(record_end);
}

} // namespace vxserialize
