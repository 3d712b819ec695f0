#include "vxjson/text_writer.h"

#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/number_scan_impl.h"
#include "vxjson/number_text_internal.h"
#include "vxjson/text_output_impl.h"
#include "vxjson/writer_failures_internal.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace vxjson {

using namespace error;
using impl::TextOutput;

TextWriter::TextWriter(ITextTarget & target) : TextWriter(target, Options()) {}

TextWriter::TextWriter(ITextTarget & target, Options const & options)
    : TextWriter(&target, nullptr, options) {}

TextWriter::TextWriter(std::string & text) : TextWriter(text, Options()) {}

TextWriter::TextWriter(std::string & text, Options const & options)
    : TextWriter(nullptr, &text, options) {}

TextWriter::TextWriter(ITextTarget * target, std::string * text, Options const & options)
    : m_options(options), m_target(target), m_string(text),
      m_highBits(checks_utf8() ? 0x8080808080808080 : 0) {
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
    if (m_state == eState_String) {
        throw_place(vxjson_writer_unexpected_string, function);
    }
    if (!m_open.empty()) {
        throw_place(vxjson_writer_unexpected_container, function);
    }
    check_place(ePlace_Done, vxjson_writer_unexpected, function);
    flush();
}

TextWriter::EPlace TextWriter::place() const noexcept {
    switch (m_state) {
    case eState_Failed:
        return ePlace_Failed;
    case eState_String:
        return ePlace_String;
    case eState_Named:
        return ePlace_NameValue;
    default:
        break;
    }
    if (m_open.empty()) {
        return m_state == eState_Empty ? ePlace_Top : ePlace_Done;
    }
    return m_open.back() == '}' ? ePlace_Name : ePlace_Element;
}

bool TextWriter::is_value_due() const noexcept {
    EPlace const now = place();
    return now == ePlace_Element || now == ePlace_NameValue || now == ePlace_Top;
}

void TextWriter::check_place(EPlace due, vxcore::ErrorCode const & code,
                             char const * function) const {
    if (place() != due) {
        throw_place(code, function);
    }
}

void TextWriter::check_value(vxcore::ErrorCode const & code, char const * function) const {
    if (!is_value_due()) {
        throw_place(code, function);
    }
}

/// Raises `code` for a call out of place. The reason in the message depends on the place only.
void TextWriter::throw_place(vxcore::ErrorCode const & code, char const * function) const {
    static constexpr char const * reasons[] = {"the document has not begun",
                                               "the document is complete",
                                               "a name or the end of the object is due",
                                               "the value of a name is due",
                                               "an element or the end of the array is due",
                                               "a string is open",
                                               "the target of the text has failed"};
    vxcore::ErrorComposer("A call of the JSON writer is out of place: {@reason}")
        .param("reason", reasons[place()])
        .throw_error(code, VXCORE_LOCATION(function));
}

/// Writes the comma and line break before a name or element, so that neither is due any more.
void TextWriter::begin_line() {
    if (m_state == eState_Named || m_open.empty()) {
        return;
    }
    if (m_state == eState_Full) {
        m_at = room();
        *m_at++ = ',';
    }
    put_line();
    m_state = eState_Named;
}

/// Writes a line break and the indentation of the innermost open container.
void TextWriter::put_line() {
    m_at = room();
    *m_at++ = '\n';
    for (std::size_t left = m_options.indent * m_open.size(); left != 0;) {
        std::size_t const size = std::min<std::size_t>(left, sm_room);
        std::memset(room(), ' ', sm_room); // of a fixed size: no call
        m_at += size;
        left -= size;
    }
}

void TextWriter::write_name(char const * data, unsigned int size) {
    check_place(ePlace_Name, vxjson_writer_unexpected_name, "vxjson::TextWriter::write_name()");
    TextOutput(*this).write_name(data, size);
}

void TextWriter::write_string(char const * data, unsigned int size) {
    check_value(vxjson_writer_unexpected_string, "vxjson::TextWriter::write_string()");
    TextOutput(*this).write_string(data, size);
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
    put_value({data, size});
}

/// Writes a value that needs no escapes.
void TextWriter::put_value(std::string_view text) {
    m_at = begin_value();
    put(text);
    m_state = eState_Full;
}

void TextWriter::write_bool(bool value) {
    check_value(vxjson_writer_unexpected_literal, "vxjson::TextWriter::write_bool()");
    TextOutput(*this).write_bool(value);
}

void TextWriter::write_null() {
    check_value(vxjson_writer_unexpected_literal, "vxjson::TextWriter::write_null()");
    TextOutput(*this).write_null();
}

void TextWriter::write_integer(long long value) {
    check_value(vxjson_writer_unexpected_number, "vxjson::TextWriter::write_integer()");
    TextOutput(*this).write_integer(value);
}

void TextWriter::write_unsigned(unsigned long long value) {
    check_value(vxjson_writer_unexpected_number, "vxjson::TextWriter::write_unsigned()");
    TextOutput(*this).write_unsigned(value);
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
    put_value(text.view());
}

/// Makes room for one more open container.
void TextWriter::grow_open(char bracketDue) {
    if (m_open.size() >= m_options.max_depth) {
        vxcore::ErrorComposer("More than {@limit} objects and arrays are open")
            .param("limit", vxcore::to_string(m_options.max_depth))
            .throw_error(vxjson_writer_unexpected_container_begin,
                         VXCORE_LOCATION(bracketDue == '}' ? "vxjson::TextWriter::begin_object()"
                                                           : "vxjson::TextWriter::begin_array()"));
    }
    m_open.reserve(2 * m_open.size() + 16);
}

void TextWriter::begin_object() {
    check_value(vxjson_writer_unexpected_container_begin, "vxjson::TextWriter::begin_object()");
    TextOutput(*this).begin_object();
}

void TextWriter::end_object() {
    check_place(ePlace_Name, vxjson_writer_unexpected_container_end,
                "vxjson::TextWriter::end_object()");
    TextOutput(*this).end_object();
}

void TextWriter::begin_array() {
    check_value(vxjson_writer_unexpected_container_begin, "vxjson::TextWriter::begin_array()");
    TextOutput(*this).begin_array();
}

void TextWriter::end_array() {
    check_place(ePlace_Element, vxjson_writer_unexpected_container_end,
                "vxjson::TextWriter::end_array()");
    TextOutput(*this).end_array();
}

/// Text as large as the whole buffer goes to the target directly, without a copy.
void TextWriter::put(std::string_view text) {
    if (text.size() > static_cast<std::size_t>(m_buffer + sm_bufferSize - m_at)) {
        flush();
        if (text.size() >= sm_bufferSize) {
            send(text);
            return;
        }
    }
    m_at += text.copy(m_at, text.size());
}

void TextWriter::flush() {
    if (m_at != m_buffer) {
        send({m_buffer, static_cast<std::size_t>(m_at - m_buffer)});
        m_at = m_buffer;
    }
}

/// Passes text to the target or string. If that raises, part of the text may be written, so the
/// writer accepts no more calls.
void TextWriter::send(std::string_view text) {
    EState const state = std::exchange(m_state, eState_Failed);
    if (m_string != nullptr) {
        m_string->append(text);
    } else {
        m_target->write_data(text.data(), static_cast<unsigned int>(text.size()));
    }
    m_state = state;
}

} // namespace vxjson
