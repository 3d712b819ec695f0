#include "vxserialize/text_writer.h"

#include "vxcore/hex.h"
#include "vxserialize/failures_internal.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/text/double_text_internal.h"
#include "vxserialize/text/text_form_internal.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace vxserialize {

namespace {

/// In characters: an integer of 64 bits with its sign.
constexpr unsigned int number_size = 20;

template <typename T>
std::string_view format(char (&buffer)[number_size], T value) {
    auto const result = std::to_chars(buffer, buffer + number_size, value);
    return {buffer, static_cast<std::size_t>(result.ptr - buffer)};
}

} // namespace

TextWriter::TextWriter(ITextTarget & target, Options const & options)
    : m_target(target), m_options(options) {}

TextWriter::~TextWriter() = default;

void TextWriter::close() {
    if (m_state == eState_Closed) {
        return;
    }
    check_open();
    if (m_containers.depth() != 0) {
        impl::throw_usage("vxserialize::TextWriter::close()", "a list or record is open");
    }
    flush();
    m_state = eState_Closed;
}

void TextWriter::flush() {
    m_state = eState_Failed; // remains if the target raises: half an element may be written
    if (m_size == 1) {
        m_target.write_char(m_buffer[0]);
    } else if (m_size != 0) {
        m_target.write_data(m_buffer, m_size);
    }
    m_size = 0;
    m_state = eState_Open;
}

/// Returns the place for the next `size` characters. They count once m_size does.
char * TextWriter::room(unsigned int size) {
    if (size > sm_bufferSize - m_size) {
        flush();
    }
    return m_buffer + m_size;
}

void TextWriter::put(char c) {
    *room(1) = c;
    ++m_size;
}

void TextWriter::put(std::string_view text) {
    while (!text.empty()) {
        if (m_size == sm_bufferSize) {
            flush();
        }
        std::size_t const run = std::min<std::size_t>(text.size(), sm_bufferSize - m_size);
        std::memcpy(m_buffer + m_size, text.data(), run);
        m_size += static_cast<unsigned int>(run);
        text.remove_prefix(run);
    }
}

void TextWriter::put_hex(unsigned char byte) {
    put(vxcore::hex_digit(byte >> 4));
    put(vxcore::hex_digit(byte));
}

void TextWriter::put_hex_bytes(unsigned char const * data, unsigned int size) {
    for (unsigned int i = 0; i < size; ++i) {
        put_hex(data[i]);
    }
}

void TextWriter::put_line() {
    if (m_options.indent != 0) {
        put('\n');
        // In 64 bits: a large indent times the depth would wrap.
        for (unsigned long long i = 0; i < 1ull * m_options.indent * m_lists; ++i) {
            put(' ');
        }
    }
}

void TextWriter::check_open() const {
    if (m_state != eState_Open) {
        impl::throw_usage("vxserialize::TextWriter", m_state == eState_Closed
                                                         ? "a write to a closed writer"
                                                         : "a call after the target has failed");
    }
}

/// Marks the element as written and separates it from the primitive before it.
void TextWriter::begin_element() {
    check_open();
    if (!m_containers.element()) {
        put(' ');
    }
}

void TextWriter::put_word(std::string_view text) {
    begin_element();
    put(text);
}

void TextWriter::write_null() {
    put_word("null");
}

void TextWriter::write_bool(bool value) {
    put_word(value ? "true" : "false");
}

void TextWriter::write_integer(long long value) {
    char buffer[number_size];
    put_word(format(buffer, value));
}

void TextWriter::write_uint(unsigned int value) {
    char buffer[number_size];
    put_word(format(buffer, value));
    put('u');
}

void TextWriter::write_double(double value) {
    if (std::isnan(value)) {
        put_word(impl::text::nan_prefix);
        auto const bits = std::bit_cast<unsigned long long>(value);
        for (int shift = 56; shift >= 0; shift -= 8) {
            put_hex(static_cast<unsigned char>(bits >> shift));
        }
        put(')');
        return;
    }
    begin_element();
    char * const start = room(impl::text::double_size);
    char * const end = impl::text::write_double(start, value);
    m_size += static_cast<unsigned int>(end - start);
    // A double must not look like an integer; "inf" does not.
    std::string_view const text(start, static_cast<std::size_t>(end - start));
    if (text.find('.') == text.npos && text.find_first_of("en") == text.npos) {
        put(".0");
    }
}

void TextWriter::write_string(char const * data, unsigned int size) {
    begin_element();
    put('<');
    char const * const end = data + size;
    // Runs of plain characters are copied at once; each is followed by an escape or the end.
    while (data != end) {
        char const * run = data;
        while (run != end &&
               impl::text::is_char(static_cast<unsigned char>(*run), impl::text::eChar_Plain)) {
            ++run;
        }
        put(std::string_view(data, static_cast<std::size_t>(run - data)));
        data = run;
        if (data != end) {
            put('%');
            put_hex(static_cast<unsigned char>(*data));
            ++data;
        }
    }
    put('>');
}

void TextWriter::write_string_key(vxcore::StringKey const & key) {
    std::string const & text = key.value();
    write_string(text.data(), static_cast<unsigned int>(text.size()));
}

void TextWriter::write_absolute_time(vxcore::AbsoluteTime value) {
    std::string const text = value.as_string(); // first, since it allocates
    put_word("@");
    put(text);
}

void TextWriter::write_relative_time(vxcore::RelativeTime value) {
    put_word(value.as_string()); // allocates before anything is written, as above
}

void TextWriter::write_uuid(vxcore::Uuid const & value) {
    // Formatted first, since it allocates.
    std::string const text = value.as_string(0);
    put_word("{");
    put(text);
    put('}');
}

void TextWriter::write_binary(void const * data, unsigned int size) {
    put_word("#");
    put_hex_bytes(static_cast<unsigned char const *>(data), size);
}

void TextWriter::write_memory_list(MemoryListBase const & list) {
    put_word("#");
    for (auto segment = list.segment_read_iterator(); !segment.at_end(); ++segment) {
        put_hex_bytes(segment->data(), segment->size());
    }
}

void TextWriter::begin_list(unsigned int count) {
    check_open();
    // A list or record after another primitive of the same element needs the blank between them.
    put(m_containers.begin_list(count) ? "[" : " [");
    ++m_lists;
    // Readers return 0 for smaller counts, so those would tell nothing.
    if (count >= 2) {
        char buffer[number_size];
        put(format(buffer, count));
        put(m_options.indent != 0 ? ":" : ": ");
    }
    if (count != 0) {
        put_line();
    }
}

void TextWriter::next_list_item() {
    check_open();
    m_containers.next_list_item("vxserialize::TextWriter::next_list_item()");
    put(',');
    if (m_options.indent == 0) {
        put(' ');
    } else {
        put_line();
    }
}

void TextWriter::end_list() {
    check_open();
    bool const empty = m_containers.end_list("vxserialize::TextWriter::end_list()") == 0;
    --m_lists;
    if (!empty) {
        put_line();
    }
    put(']');
}

void TextWriter::begin_record() {
    check_open();
    put(m_containers.begin_record() ? "(" : " (");
}

void TextWriter::end_record() {
    check_open();
    m_containers.end_record("vxserialize::TextWriter::end_record()");
    put(')');
}

} // namespace vxserialize
