#include "vxjson/text_writer.h"

#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/find_special_impl.h"
#include "vxjson/number_scan_impl.h"
#include "vxjson/number_text_internal.h"
#include "vxjson/writer_failures_internal.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

namespace vxjson {

using namespace error;

TextWriter::TextWriter(ITextTarget & target) : TextWriter(target, Options()) {}

TextWriter::TextWriter(ITextTarget & target, Options const & options)
    : TextWriter(&target, nullptr, options) {}

TextWriter::TextWriter(std::string & text) : TextWriter(text, Options()) {}

TextWriter::TextWriter(std::string & text, Options const & options)
    : TextWriter(nullptr, &text, options) {}

TextWriter::TextWriter(ITextTarget * target, std::string * text, Options const & options)
    : m_options(options), m_target(target), m_string(text) {
    if (options.min_exponent < -324 || options.min_exponent > 0 || options.max_exponent < 0 ||
        options.max_exponent > 308) {
        vxcore::ErrorComposer("Limits of exponents must be -324 to 0 and 0 to 308, and are {@min} "
                              "and {@max}")
            .param("min", vxcore::to_string(options.min_exponent))
            .param("max", vxcore::to_string(options.max_exponent))
            .throw_error(vxjson_writer_config_invalidExponent,
                         VXCORE_LOCATION("vxjson::TextWriter::TextWriter()"));
    }
}

TextWriter::~TextWriter() = default;

void TextWriter::finish() {
    constexpr char const * function = "vxjson::TextWriter::finish()";
    check_place(m_place != ePlace_String, vxjson_writer_unexpected_string, function);
    check_place(m_open.empty(), vxjson_writer_unexpected_container, function);
    check_place(m_place == ePlace_Done, vxjson_writer_unexpected, function);
    flush();
}

/// Raises `code` for a call out of place. The reason in the message depends on the place only.
void TextWriter::check_place(bool isRight, vxcore::ErrorCode const & code,
                             char const * function) const {
    if (isRight) {
        return;
    }
    static constexpr char const * reasons[] = {"the document has not begun",
                                               "the document is complete",
                                               "a name or the end of the object is due",
                                               "the value of a name is due",
                                               "an element or the end of the array is due",
                                               "a string is open",
                                               "the target of the text has failed"};
    vxcore::ErrorComposer("A call of the JSON writer is out of place: {@reason}")
        .param("reason", reasons[m_place])
        .throw_error(code, VXCORE_LOCATION(function));
}

void TextWriter::check_value(vxcore::ErrorCode const & code, char const * function) const {
    check_place(m_place == ePlace_Element || m_place == ePlace_NameValue || m_place == ePlace_Top,
                code, function);
}

/// Writes the comma and line break before an element.
void TextWriter::begin_value() {
    if (m_place == ePlace_Element) {
        if (!m_isFirst) {
            put(',');
        }
        put_line(m_open.size());
    }
}

/// After a value: back to the place that the innermost open container determines.
void TextWriter::end_value() noexcept {
    m_isFirst = false;
    m_place = m_open.empty() ? ePlace_Done : m_open.back() == '}' ? ePlace_Name : ePlace_Element;
}

/// Writes a line break and the indentation, if the output is indented.
void TextWriter::put_line(std::size_t level) {
    if (m_options.indent == 0) {
        return;
    }
    put("\n");
    constexpr std::string_view blanks = "                                ";
    for (std::size_t left = m_options.indent * level; left != 0;) {
        std::string_view const some = blanks.substr(0, left);
        put(some);
        left -= some.size();
    }
}

void TextWriter::write_name(char const * data, unsigned int size) {
    constexpr char const * function = "vxjson::TextWriter::write_name()";
    std::string_view const name(data, size);
    check_place(m_place == ePlace_Name, vxjson_writer_unexpected_name, function);
    if (put_short(name, true)) {
        m_place = ePlace_NameValue;
        return;
    }
    check_text(name, 0, false, function);
    put(m_isFirst ? "" : ",");
    put_line(m_open.size());
    put("\"");
    put_text(name);
    put(m_options.indent == 0 ? "\":" : "\": ");
    m_place = ePlace_NameValue;
}

/// Writes a name or string with the punctuation around it directly into the buffer. Most names and
/// strings take this path. Returns false and writes nothing when the text is too long, needs an
/// escape or a UTF-8 check, or the output is indented.
bool TextWriter::put_short(std::string_view text, bool isName) {
    // Comma, quotes and colon, and the bytes that has_special() reads after the text.
    constexpr std::size_t around = 4 + 15;
    if (text.size() + around > sm_bufferSize - m_size || m_options.indent != 0 || checks_utf8()) {
        return false;
    }
    char * at = m_buffer + m_size;
    if (!m_isFirst && m_place != ePlace_NameValue) {
        *at++ = ',';
    }
    *at++ = '"';
    if (!text.empty()) {
        std::memcpy(at, text.data(), text.size());
    }
    if (impl::has_special(at, text.size())) {
        return false; // m_size is unchanged, so these bytes are overwritten
    }
    at += text.size();
    *at++ = '"';
    if (isName) {
        *at++ = ':';
    }
    m_size = static_cast<unsigned int>(at - m_buffer);
    return true;
}

void TextWriter::write_string(char const * data, unsigned int size) {
    constexpr char const * function = "vxjson::TextWriter::write_string()";
    std::string_view const text(data, size);
    check_value(vxjson_writer_unexpected_string, function);
    if (put_short(text, false)) {
        end_value();
        return;
    }
    check_text(text, 0, false, function);
    begin_value();
    put("\"");
    put_text(text);
    put("\"");
    end_value();
}

/// Writes a value that needs no escapes.
void TextWriter::write_literal(std::string_view text, vxcore::ErrorCode const & code,
                               char const * function) {
    check_value(code, function);
    begin_value();
    put(text);
    end_value();
}

void TextWriter::write_number(char const * data, unsigned int size) {
    constexpr char const * function = "vxjson::TextWriter::write_number()";
    check_value(vxjson_writer_unexpected_number, function);
    // Checked as a whole before any of it is written: the text of a caller must not break the
    // document.
    impl::NumberScan const scan = impl::scan_number(data, data + size);
    if (scan.expected != nullptr || scan.end != data + size) {
        impl::throw_character("No number of JSON at byte {@offset}",
                              static_cast<std::size_t>(scan.end - data), function);
    }
    write_literal({data, size}, vxjson_writer_unexpected_number, function);
}

void TextWriter::write_bool(bool value) {
    write_literal(value ? "true" : "false", vxjson_writer_unexpected_literal,
                  "vxjson::TextWriter::write_bool()");
}

void TextWriter::write_null() {
    write_literal("null", vxjson_writer_unexpected_literal, "vxjson::TextWriter::write_null()");
}

void TextWriter::write_integer(long long value) {
    char text[24]; // 20 bytes hold any 64-bit number with its sign
    char * const end = std::to_chars(text, text + sizeof(text), value).ptr;
    write_literal({text, end}, vxjson_writer_unexpected_number,
                  "vxjson::TextWriter::write_integer()");
}

void TextWriter::write_unsigned(unsigned long long value) {
    char text[24];
    char * const end = std::to_chars(text, text + sizeof(text), value).ptr;
    write_literal({text, end}, vxjson_writer_unexpected_number,
                  "vxjson::TextWriter::write_unsigned()");
}

void TextWriter::write_double(double value) {
    constexpr char const * function = "vxjson::TextWriter::write_double()";
    check_value(vxjson_writer_unexpected_number, function);
    if (!std::isfinite(value)) {
        vxcore::ErrorComposer("JSON has no number {@value}")
            .param("value", std::isnan(value) ? "NaN"
                            : value < 0       ? "-infinity"
                                              : "infinity")
            .throw_error(std::isnan(value) ? vxjson_writer_unsupported_value_nan
                                           : vxjson_writer_unsupported_value_inf,
                         VXCORE_LOCATION(function));
    }
    impl::DoubleText const text(value, m_options.min_exponent, m_options.max_exponent);
    write_literal(text.view(), vxjson_writer_unexpected_number, function);
}

void TextWriter::begin_container(char bracket, char bracketDue, char const * function) {
    check_value(vxjson_writer_unexpected_container_begin, function);
    if (m_open.size() >= m_options.max_depth) {
        vxcore::ErrorComposer("More than {@limit} objects and arrays are open")
            .param("limit", vxcore::to_string(m_options.max_depth))
            .throw_error(vxjson_writer_unexpected_container_begin, VXCORE_LOCATION(function));
    }
    if (m_open.size() == m_open.capacity()) {
        m_open.reserve(2 * m_open.size() + 16);
    }
    begin_value();
    put(bracket);
    m_open.push_back(bracketDue); // cannot raise: reserved above, before any output
    m_isFirst = true;
    m_place = bracketDue == '}' ? ePlace_Name : ePlace_Element;
}

/// @param place  The place at which a container of that kind may end.
void TextWriter::end_container(char bracket, EPlace place, char const * function) {
    check_place(m_place == place, vxjson_writer_unexpected_container_end, function);
    m_open.pop_back();
    if (!m_isFirst) {
        put_line(m_open.size());
    }
    put(bracket);
    end_value();
}

void TextWriter::begin_object() {
    begin_container('{', '}', "vxjson::TextWriter::begin_object()");
}

void TextWriter::end_object() {
    end_container('}', ePlace_Name, "vxjson::TextWriter::end_object()");
}

void TextWriter::begin_array() {
    begin_container('[', ']', "vxjson::TextWriter::begin_array()");
}

void TextWriter::end_array() {
    end_container(']', ePlace_Element, "vxjson::TextWriter::end_array()");
}

void TextWriter::put(char c) {
    if (m_size == sm_bufferSize) {
        flush();
    }
    m_buffer[m_size++] = c;
}

/// Text as large as the whole buffer goes to the target directly, without a copy.
void TextWriter::put(std::string_view text) {
    if (text.size() > sm_bufferSize - m_size) {
        flush();
        if (text.size() >= sm_bufferSize) {
            send(text);
            return;
        }
    }
    if (!text.empty()) {
        std::memcpy(m_buffer + m_size, text.data(), text.size());
        m_size += static_cast<unsigned int>(text.size());
    }
}

void TextWriter::flush() {
    if (m_size != 0) {
        send({m_buffer, m_size});
        m_size = 0;
    }
}

/// Passes text to the target or string. If that raises, part of the text may be written, so the
/// writer accepts no more calls.
void TextWriter::send(std::string_view text) {
    EPlace const place = std::exchange(m_place, ePlace_Failed);
    if (m_string != nullptr) {
        m_string->append(text);
    } else {
        m_target->write_data(text.data(), static_cast<unsigned int>(text.size()));
    }
    m_place = place;
}

} // namespace vxjson
