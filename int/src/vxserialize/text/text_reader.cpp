#include "vxserialize/text_reader.h"

#include "vxcore/default_floating_point.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/failures_internal.h"
#include "vxserialize/memory/memory_list_stream_internal.h"
#include "vxserialize/text/text_form_internal.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace vxserialize {

using namespace impl::text;

namespace {

constexpr char const * class_name = "vxserialize::TextReader";

/// Reads a NaN from its bits, as in "nan(7ff8000000000001)".
bool parse_nan(std::string_view text, double & value) noexcept {
    if (text.size() != nan_prefix.size() + nan_digits + 1 || !text.starts_with(nan_prefix)) {
        return false;
    }
    unsigned long long bits = 0;
    char const * const digits = text.data() + nan_prefix.size();
    auto const result = std::from_chars(digits, digits + nan_digits, bits, 16);
    value = std::bit_cast<double>(bits);
    return result.ptr == digits + nan_digits && std::isnan(value);
}

/// Independent of the rounding mode and the flush-to-zero modes of the thread.
bool parse_double(std::string_view text, double & value) noexcept {
    if (text == "inf" || text == "-inf") {
        double const infinity = std::numeric_limits<double>::infinity();
        value = text == "inf" ? infinity : -infinity;
        return true;
    }
    vxcore::impl::DefaultFloatingPoint const environment;
    return text.front() == 'n' ? parse_nan(text, value) : parse_number(text, value);
}

} // namespace

TextReader::TextReader(vxcore::IReadStream & stream, unsigned int size)
    : m_stream(stream), m_buffer(new char[std::max(size, 1u)]), m_bufferSize(std::max(size, 1u)) {
    m_cursor = m_limit = m_buffer.get();
}

TextReader::~TextReader() = default;

unsigned long long TextReader::offset() const noexcept {
    // The current word has left the buffer but is still to be read.
    return m_received - static_cast<unsigned long long>(m_limit - m_cursor) - m_wordSize;
}

void TextReader::fail(char const * detail) const {
    impl::throw_data(error::vxserialize_data, class_name, offset(), detail);
}

void TextReader::fail_count(char const * detail) const {
    impl::throw_data(error::vxserialize_data_count, class_name, offset(), detail);
}

void TextReader::fail_truncated() const {
    impl::throw_truncated(class_name, m_received);
}

void TextReader::fail_type(EElementKind expected, EElementKind found) const {
    impl::throw_type(class_name, offset(), expected, found);
}

/// Refills the buffer after all its bytes are used. False at the end of the stream.
bool TextReader::refill() {
    if (m_streamEnded) {
        return false;
    }
    unsigned int const size = m_stream.read(m_buffer.get(), m_bufferSize);
    m_streamEnded = size < m_bufferSize; // a short read is the last one
    m_received += size;
    m_cursor = m_buffer.get();
    m_limit = m_cursor + size;
    return size != 0;
}

bool TextReader::at_end() {
    return peek_token() < 0;
}

void TextReader::expect_end() {
    if (!at_end()) {
        fail(impl::more_data);
    }
}

void TextReader::read_null() {
    peek_word(eElement_Null);
    take_word();
}

bool TextReader::read_if_null() {
    if (next_type() != eElement_Null) {
        return false;
    }
    take_word();
    return true;
}

bool TextReader::read_bool() {
    bool const value = peek_word(eElement_Boolean) == "true";
    take_word();
    return value;
}

long long TextReader::read_integer() {
    long long value = 0;
    if (!parse_number(peek_word(eElement_Integer), value)) {
        fail("an integer that is no number of 64 bits");
    }
    take_word();
    return value;
}

unsigned int TextReader::read_uint() {
    std::string_view text = peek_word(eElement_Unsigned);
    text.remove_suffix(1);
    unsigned int value = 0;
    if (!parse_number(text, value)) {
        fail("an unsigned integer that is no number of 32 bits");
    }
    take_word();
    return value;
}

double TextReader::read_double() {
    double value = 0;
    if (!parse_double(peek_word(eElement_Double), value)) {
        fail("a double that is no number or beyond the range");
    }
    take_word();
    return value;
}

void TextReader::read_string(std::string & value) {
    take_mark('<', eElement_String);
    m_containers.element();
    value.clear();
    // Runs of plain characters are copied at once, up to an escape or the end of the buffer.
    while (true) {
        char const * run = m_cursor;
        while (run != m_limit && is_char(static_cast<unsigned char>(*run), eChar_Plain)) {
            ++run;
        }
        value.append(m_cursor, run);
        m_cursor = run;
        int const c = peek();
        if (is_char(c, eChar_Plain)) {
            continue; // the run goes on in the next buffer
        }
        if (c < 0) {
            fail_truncated();
        }
        if (c != '>' && c != '%') {
            fail("a character that must be escaped in a string");
        }
        ++m_cursor;
        if (c == '>') {
            return;
        }
        value.push_back(static_cast<char>(take_hex_pair()));
    }
}

// The member keeps its memory from name to name.
vxcore::StringKey TextReader::read_string_key() {
    TextReader::read_string(m_text);
    return m_names.find(m_text);
}

vxcore::AbsoluteTime TextReader::read_absolute_time() {
    vxcore::AbsoluteTime value;
    if (!vxcore::AbsoluteTime::parse(peek_word(eElement_AbsoluteTime).substr(1), value)) {
        fail("no absolute time");
    }
    take_word();
    return value;
}

vxcore::RelativeTime TextReader::read_relative_time() {
    vxcore::RelativeTime value;
    if (!vxcore::RelativeTime::parse(peek_word(eElement_RelativeTime), value)) {
        fail("no relative time");
    }
    take_word();
    return value;
}

vxcore::Uuid TextReader::read_uuid() {
    vxcore::Uuid value;
    std::string_view const text = peek_word(eElement_Uuid).substr(1);
    if (!text.ends_with('}') || !vxcore::Uuid::parse(text.substr(0, text.size() - 1), value)) {
        fail("no UUID");
    }
    take_word();
    return value;
}

/// Takes two hexadecimal digits and returns their byte.
unsigned char TextReader::take_hex_pair() {
    int value = 0;
    for (int i = 0; i < 2; ++i) {
        int const c = peek();
        if (c < 0) {
            fail_truncated();
        }
        if (hex_value(c) < 0) {
            fail("a hexadecimal digit is missing");
        }
        value = value * 16 + hex_value(c);
        ++m_cursor;
    }
    return static_cast<unsigned char>(value);
}

vxcore::RefCountPtr<MemoryList> TextReader::read_binary_as_memory_list() {
    take_mark('#', eElement_Binary);
    m_containers.element();
    vxcore::RefCountPtr<MemoryList> list = MemoryList::create();
    unsigned char bytes[256]; // appended when full, so memory grows only with the data
    unsigned int size = 0;
    while (hex_value(peek()) >= 0) {
        if (size == sizeof(bytes)) {
            list->append(bytes, size);
            size = 0;
        }
        bytes[size++] = take_hex_pair();
    }
    // Only digits belong to the block; a blank or a mark ends it.
    if (is_char(peek(), eChar_Word)) {
        fail("a character that is no hexadecimal digit");
    }
    list->append(bytes, size);
    return list;
}

ReadStreamPtr TextReader::read_binary() {
    return impl::create_memory_list_stream(TextReader::read_binary_as_memory_list());
}

} // namespace vxserialize
