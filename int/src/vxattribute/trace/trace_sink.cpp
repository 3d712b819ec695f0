#include "vxattribute/trace/trace_sink_internal.h"
#include "vxcore/default_floating_point.h"
#include "vxcore/hex.h"

#include <algorithm>
#include <charconv>
#include <locale>

namespace vxattribute::impl {

namespace {

/// Passes the start of a new line to `append`, piece by piece.
template <typename Append>
void put_new_line(TraceFormatterImpl const & settings, unsigned int level, Append append) {
    append(settings.line_prefix.view());
    for (unsigned int i = 0; i < level; ++i) {
        append(settings.indent.view());
    }
}

/// The same with a text of the settings.
template <typename Append>
void put_indented(TraceFormatterImpl const & settings, unsigned int level, std::string_view text,
                  Append append) {
    if (text.find('\n') == std::string_view::npos) {
        append(text); // a carriage return at its end stays, unlike that of a line
    } else {
        for_each_line(text, append, [&] { put_new_line(settings, level, append); });
    }
}

} // namespace

void TraceSink::flush() {
    if (m_next != m_storage) {
        m_stream.write(m_storage, m_next - m_storage);
        m_next = m_storage;
    }
}

void TraceSink::append_long(std::string_view text) {
    // A text larger than the room left bypasses the buffer.
    stream().write(text.data(), static_cast<std::streamsize>(text.size()));
}

void TraceSink::reserve_number() {
    // 20 bytes hold any 64-bit number in decimal, 13 any double in six digits.
    if (room() < 32) {
        flush();
    }
}

void TraceSink::append_number(long long value) {
    reserve_number();
    m_next = std::to_chars(m_next, m_next + room(), value).ptr;
}

void TraceSink::append_number(unsigned long long value) {
    reserve_number();
    m_next = std::to_chars(m_next, m_next + room(), value).ptr;
}

void TraceSink::append_number(double value) {
    reserve_number();
    vxcore::impl::DefaultFloatingPoint const environment;
    m_next = std::to_chars(m_next, m_next + room(), value, std::chars_format::general, 6).ptr;
}

void TraceSink::append_hex(unsigned char const * data, std::size_t size) {
    for (unsigned char const * const end = data + size; data != end; ++data) {
        char const pair[] = {vxcore::hex_digit(*data >> 4), vxcore::hex_digit(*data)};
        append(std::string_view(pair, sizeof pair));
    }
}

void TraceSink::append_left_out(std::size_t count) {
    append("...(+");
    append_number(static_cast<unsigned long long>(count));
    append(")");
}

void TraceSink::append_new_line() {
    put_new_line(m_settings, m_level, [this](std::string_view piece) { append(piece); });
}

void TraceSink::append_indented_lines(std::string_view text) {
    put_indented(m_settings, m_level, text, [this](std::string_view piece) { append(piece); });
}

std::string TraceSink::indented(vxcore::SourceString const & text) const {
    std::string result;
    put_indented(m_settings, m_level, text.view(),
                 [&result](std::string_view piece) { result += piece; });
    return result;
}

TraceSink::ENumbers TraceSink::find_numbers() const {
    // The flags that change how a number looks. Padding does not count: it needs a width, and
    // numbers with a width go to the stream.
    constexpr std::ios_base::fmtflags numberFlags =
        std::ios_base::basefield | std::ios_base::floatfield | std::ios_base::showpos |
        std::ios_base::showpoint | std::ios_base::uppercase;
    bool const isPlain = (m_stream.flags() & numberFlags) == std::ios_base::dec &&
                         m_stream.precision() == 6 && m_stream.getloc() == std::locale::classic();
    return isPlain ? eNumbers_Plain : eNumbers_Custom;
}

} // namespace vxattribute::impl
