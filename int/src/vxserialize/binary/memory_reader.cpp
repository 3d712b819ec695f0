#include "vxserialize/memory_reader.h"

#include "vxserialize/binary/binary_form_internal.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/failures_internal.h"
#include "vxserialize/memory/memory_list_stream_internal.h"

#include <bit>

namespace vxserialize {

using namespace impl::binary;

MemoryReader::MemoryReader() = default;

MemoryReader::MemoryReader(vxcore::RefCountPtr<MemoryList const> list) : m_list(std::move(list)) {
    if (!m_list) {
        return;
    }
    m_at = m_list->reader();
    // A stream may start with the version of its form. A version other than ours is not skipped, so
    // that the first read fails.
    unsigned int run = 0;
    unsigned char const * const first = m_at.data_at_cursor(run);
    if (run != 0 && *first == version_mark) {
        unsigned char mark[2] = {};
        m_at.read_at_cursor(mark, 2);
        m_at.cursor_advance(mark[1] == version ? 2 : 0);
    }
}

// The cursor of a copy points into the same list, which each of the two readers keeps alive.
MemoryReader::MemoryReader(MemoryReader const & other) = default;

MemoryReader & MemoryReader::operator=(MemoryReader const & other) = default;

MemoryReader::~MemoryReader() = default;

unsigned int MemoryReader::offset() const noexcept {
    return m_list ? m_list->size() - m_at.bytes_left() : 0;
}

void MemoryReader::fail_type(EElementKind expected) const {
    MemoryListCursor at = m_at;
    unsigned int run = 0;
    unsigned int const tag = *at.data_at_cursor(run); // there is one: callers have read it
    if (tag == version_mark && offset() == 0) {
        impl::throw_data(error::vxserialize_data_version, "vxserialize::MemoryReader", 0,
                         "the version of this stream is not known");
    }
    impl::throw_type("vxserialize::MemoryReader", offset(), expected,
                     static_cast<EElementKind>(kinds[tag]));
}

void MemoryReader::fail_truncated() const {
    impl::throw_truncated("vxserialize::MemoryReader", m_list ? m_list->size() : 0);
}

void MemoryReader::fail_count() const {
    impl::throw_data(error::vxserialize_data_count, "vxserialize::MemoryReader::begin_list()",
                     offset(), "a list announces more elements than the data can hold");
}

/// The tag of the next element, without moving the cursor. Raises at the end of the data.
inline unsigned int MemoryReader::peek_tag() {
    if (m_at.m_data == m_at.m_end) [[unlikely]] {
        if (!m_at.enter_next_segment()) {
            fail_truncated();
        }
    }
    return *m_at.m_data;
}

inline void MemoryReader::take_tag(unsigned int tag, EElementKind kind) {
    if (peek_tag() != tag) [[unlikely]] {
        fail_type(kind);
    }
    ++m_at.m_data;
}

/// A little-endian number of `width` bytes, 1 to 8. Loads 8 bytes where the segment has them, and
/// masks out those after the number.
inline unsigned long long MemoryReader::take_bits(unsigned int width) {
    if (m_at.m_end - m_at.m_data < 8) [[unlikely]] {
        return take_bits_slowly(width);
    }
    unsigned long long const bits = load(m_at.m_data) & (~0ull >> (64 - 8 * width));
    m_at.m_data += width;
    return bits;
}

unsigned long long MemoryReader::take_bits_slowly(unsigned int width) {
    unsigned char bytes[8] = {};
    take_bytes(bytes, width);
    return load(bytes);
}

void MemoryReader::take_bytes(void * buffer, unsigned int size) {
    if (m_at.read_at_cursor(buffer, size) != size) {
        fail_truncated();
    }
    m_at.cursor_advance(size);
}

/// A size, count or value that is part of the tag or follows it in 1 to 4 bytes.
inline unsigned int MemoryReader::take_number(NumberTags const & tags) {
    unsigned int const tag = peek_tag();
    // Differences are unsigned, so one comparison checks both ends of a range of tags: below the
    // first tag, the difference wraps to a large number.
    if (tag - tags.small <= tags.small_max) {
        ++m_at.m_data;
        return tag - tags.small;
    }
    if (tag - tags.wide >= 4) [[unlikely]] {
        fail_type(tags.kind);
    }
    ++m_at.m_data;
    return static_cast<unsigned int>(take_bits(tag - tags.wide + 1));
}

/// The size of a string or block. Raises unless all its bytes are there, so callers may allocate as
/// much.
inline unsigned int MemoryReader::take_size(NumberTags const & tags) {
    unsigned int const size = take_number(tags);
    if (size > m_at.bytes_left()) [[unlikely]] {
        fail_truncated();
    }
    return size;
}

unsigned int MemoryReader::take_block_size() {
    return take_size(block_tags);
}

EElementKind MemoryReader::next_type() {
    // Ends of lists are not in the bytes: what follows an empty list is an element outside of it.
    if (m_containers.in_empty_list()) {
        return eElement_None;
    }
    if (m_at.m_data == m_at.m_end && !m_at.enter_next_segment()) {
        return eElement_None;
    }
    return static_cast<EElementKind>(kinds[*m_at.m_data]);
}

void MemoryReader::read_null() {
    take_tag(null_value, eElement_Null);
    m_containers.element();
}

bool MemoryReader::read_if_null() {
    if (next_type() != eElement_Null) {
        return false;
    }
    read_null();
    return true;
}

bool MemoryReader::read_bool() {
    unsigned int const tag = peek_tag();
    if (tag != true_value && tag != false_value) [[unlikely]] {
        fail_type(eElement_Boolean);
    }
    ++m_at.m_data;
    m_containers.element();
    return tag == true_value;
}

long long MemoryReader::read_integer() {
    unsigned int const tag = peek_tag();
    if (tag - integer_small < integer_small_count) {
        ++m_at.m_data;
        m_containers.element();
        return static_cast<int>(tag - integer_small) + integer_small_min;
    }
    if (tag - integer_wide >= 8) [[unlikely]] {
        fail_type(eElement_Integer);
    }
    unsigned int const width = tag - integer_wide + 1;
    ++m_at.m_data;
    m_containers.element();
    // The shifts copy the sign from the top bit of the width to all bits above.
    unsigned int const shift = 64 - 8 * width;
    return static_cast<long long>(take_bits(width) << shift) >> shift;
}

unsigned int MemoryReader::read_uint() {
    unsigned int const value = take_number(unsigned_tags);
    m_containers.element();
    return value;
}

double MemoryReader::read_double() {
    take_tag(double_value, eElement_Double);
    m_containers.element();
    return std::bit_cast<double>(take_bits(8));
}

void MemoryReader::read_string(std::string & value) {
    unsigned int const size = take_size(string_tags);
    m_containers.element();
    if (is_contiguous(size)) {
        value.assign(reinterpret_cast<char const *>(m_at.m_data), size);
        m_at.m_data += size;
        return;
    }
    value.resize(size); // bounded by the bytes that are left
    take_bytes(value.data(), size);
}

vxcore::StringKey MemoryReader::read_string_key() {
    unsigned int const size = take_size(string_tags);
    m_containers.element();
    if (is_contiguous(size)) {
        std::string_view const text(reinterpret_cast<char const *>(m_at.m_data), size);
        m_at.m_data += size;
        return m_names.find(text);
    }
    std::string text(size, '\0');
    take_bytes(text.data(), size);
    return m_names.find(text);
}

vxcore::AbsoluteTime MemoryReader::read_absolute_time() {
    take_tag(absolute_time, eElement_AbsoluteTime);
    m_containers.element();
    return vxcore::AbsoluteTime(static_cast<long long>(take_bits(8)));
}

vxcore::RelativeTime MemoryReader::read_relative_time() {
    take_tag(relative_time, eElement_RelativeTime);
    m_containers.element();
    return vxcore::RelativeTime(static_cast<long long>(take_bits(8)));
}

vxcore::Uuid MemoryReader::read_uuid() {
    take_tag(uuid, eElement_Uuid);
    m_containers.element();
    vxcore::Uuid::BinaryData data;
    take_bytes(data.data(), static_cast<unsigned int>(data.size()));
    return vxcore::Uuid(data);
}

ReadStreamPtr MemoryReader::read_binary() {
    unsigned int const size = take_block_size();
    m_containers.element();
    ReadStreamPtr stream = impl::create_memory_list_stream(m_list, m_at, size);
    m_at.cursor_advance(size);
    return stream;
}

vxcore::RefCountPtr<MemoryList> MemoryReader::read_binary_as_memory_list() {
    unsigned int const size = take_block_size();
    m_containers.element();
    vxcore::RefCountPtr<MemoryList> list = m_at.sublist_at_cursor(size);
    m_at.cursor_advance(size);
    return list;
}

unsigned int MemoryReader::begin_list() {
    unsigned int const count = take_number(list_tags);
    m_containers.element();
    // Each announced element needs a byte, and so does each that the enclosing containers still
    // expect. So a false count is refused before a caller reserves memory for it.
    if (count + m_containers.pending() > m_at.bytes_left()) [[unlikely]] {
        fail_count();
    }
    m_containers.begin_list(count, true);
    // Below 2 the count is not reported, see docs/decisions/0004.
    return count < 2 ? 0 : count;
}

bool MemoryReader::has_next() {
    return m_containers.has_next_counted("vxserialize::MemoryReader::has_next()");
}

void MemoryReader::begin_record() {
    take_tag(record_begin, eElement_Record);
    m_containers.begin_record();
}

void MemoryReader::end_record() {
    m_containers.check_in_record("vxserialize::MemoryReader::end_record()");
    if (peek_tag() != record_end) {
        impl::throw_data(error::vxserialize_data, "vxserialize::MemoryReader::end_record()",
                         offset(), "a record holds more than was read");
    }
    ++m_at.m_data;
    m_containers.close();
}

} // namespace vxserialize
