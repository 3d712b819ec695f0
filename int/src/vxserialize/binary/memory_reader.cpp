#include "vxserialize/memory_reader.h"

#include "vxcore/text_size.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/failures_internal.h"
#include "vxserialize/memory/memory_list_stream_internal.h"
#include "vxserialize/memory_reader_impl.h"

namespace vxserialize {

using namespace impl::binary;
using impl::MemoryReaderView;

MemoryReader::MemoryReader() = default;

MemoryReader::MemoryReader(vxcore::RefCountPtr<MemoryList const> list) : m_list(std::move(list)) {
    if (m_list) {
        m_at = m_list->reader();
        skip_version();
    }
}

MemoryReader::MemoryReader(vxcore::ByteView bytes) {
    m_at.m_listSize = vxcore::text_size(bytes.size());
    m_at.m_data = bytes.begin();
    m_at.m_end = bytes.end();
    skip_version();
}

/// A stream may start with the version of its form. A version other than ours is not skipped, so
/// that the first read fails.
void MemoryReader::skip_version() noexcept {
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

vxcore::RefCountPtr<MemoryList const> MemoryReader::own_memory_list() const {
    if (m_list || m_at.m_listSize == 0) {
        return m_list;
    }
    return MemoryList::create(m_at.m_end - m_at.m_listSize, m_at.m_listSize);
}

void MemoryReader::expect_end() const {
    if (!at_end()) {
        impl::throw_data(error::vxserialize_data, "vxserialize::MemoryReader::expect_end()",
                         position(), impl::more_data);
    }
}

void MemoryReader::fail_type(EElementKind expected) const {
    MemoryListCursor at = m_at;
    unsigned int run = 0;
    unsigned int const tag = *at.data_at_cursor(run); // there is one: callers have read it
    if (tag == version_mark && position() == 0) {
        impl::throw_data(error::vxserialize_data_version, "vxserialize::MemoryReader", 0,
                         "the version of this stream is not known");
    }
    impl::throw_type("vxserialize::MemoryReader", position(), expected,
                     static_cast<EElementKind>(kinds[tag]));
}

void MemoryReader::fail_truncated() const {
    impl::throw_truncated("vxserialize::MemoryReader", position() + bytes_left());
}

void MemoryReader::fail_count() const {
    impl::throw_data(error::vxserialize_data_count, "vxserialize::MemoryReader::begin_list()",
                     position(), "a list announces more elements than the data can hold");
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

EElementKind MemoryReader::next_type() {
    return MemoryReaderView(*this).next_type();
}

void MemoryReader::read_null() {
    MemoryReaderView(*this).read_null();
}

bool MemoryReader::read_if_null() {
    MemoryReaderView view(*this);
    if (view.next_type() != eElement_Null) {
        return false;
    }
    view.read_null();
    return true;
}

bool MemoryReader::read_bool() {
    return MemoryReaderView(*this).read_bool();
}

long long MemoryReader::read_integer() {
    return MemoryReaderView(*this).read_integer();
}

unsigned int MemoryReader::read_uint() {
    return MemoryReaderView(*this).read_uint();
}

double MemoryReader::read_double() {
    return MemoryReaderView(*this).read_double();
}

void MemoryReader::read_string(std::string & value) {
    std::string_view const text = MemoryReaderView(*this).read_text(value);
    if (text.data() != value.data()) {
        value.assign(text);
    }
}

vxcore::StringKey MemoryReader::read_string_key() {
    std::string joined;
    return MemoryReaderView(*this).read_string_key(joined);
}

vxcore::AbsoluteTime MemoryReader::read_absolute_time() {
    return MemoryReaderView(*this).read_absolute_time();
}

vxcore::RelativeTime MemoryReader::read_relative_time() {
    return MemoryReaderView(*this).read_relative_time();
}

vxcore::Uuid MemoryReader::read_uuid() {
    MemoryReaderView(*this).take_tag(uuid, eElement_Uuid);
    m_containers.element();
    vxcore::Uuid::BinaryData data;
    take_bytes(data.data(), static_cast<unsigned int>(data.size()));
    return vxcore::Uuid(data);
}

ReadStreamPtr MemoryReader::read_binary() {
    if (!m_list) {
        return impl::create_memory_list_stream(MemoryReader::read_binary_as_memory_list());
    }
    unsigned int const size = MemoryReaderView(*this).take_size(block_tags);
    m_containers.element();
    ReadStreamPtr stream = impl::create_memory_list_stream(m_list, m_at, size);
    m_at.cursor_advance(size);
    return stream;
}

vxcore::RefCountPtr<MemoryList> MemoryReader::read_binary_as_memory_list() {
    unsigned int const size = MemoryReaderView(*this).take_size(block_tags);
    m_containers.element();
    vxcore::RefCountPtr<MemoryList> list =
        m_list ? m_at.sublist_at_cursor(size) : MemoryList::create(m_at.m_data, size);
    m_at.cursor_advance(size);
    return list;
}

unsigned int MemoryReader::begin_list() {
    return MemoryReaderView(*this).begin_list();
}

bool MemoryReader::has_next() {
    return MemoryReaderView(*this).has_next();
}

void MemoryReader::begin_record() {
    MemoryReaderView(*this).take_tag(record_begin, eElement_Record);
    m_containers.begin_record();
}

void MemoryReader::end_record() {
    m_containers.check_in_record("vxserialize::MemoryReader::end_record()");
    if (MemoryReaderView(*this).peek_tag() != record_end) {
        impl::throw_data(error::vxserialize_data, "vxserialize::MemoryReader::end_record()",
                         position(), "a record holds more than was read");
    }
    ++m_at.m_data;
    m_containers.close();
}

} // namespace vxserialize
