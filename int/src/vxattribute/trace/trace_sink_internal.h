#pragma once

#include "vxattribute/trace/trace_formatter_internal.h"
#include "vxcore/default_floating_point.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace vxattribute::impl {

/// Calls `line` with each line of a text, without the carriage return at its end, and `newLine`
/// between two.
template <typename Line, typename NewLine>
void for_each_line(std::string_view text, Line line, NewLine newLine) {
    for (;;) {
        std::size_t const lineFeed = text.find('\n');
        std::string_view const whole = text.substr(0, lineFeed);
        line(whole.substr(0, whole.size() - (whole.ends_with('\r') ? 1 : 0)));
        if (lineFeed == std::string_view::npos) {
            return;
        }
        newLine();
        text.remove_prefix(lineFeed + 1);
    }
}

/// Buffers the text of one rendering, so that the stream gets few and large writes: a call of the
/// stream costs more than formatting a number. One sink serves a value and everything nested in it,
/// which keeps the stack frames of the recursion small.
///
/// Buffered text is written unformatted. Use `stream` or one of the `insert` functions where the
/// flags of the caller's stream must apply. The function that makes a sink must call `flush` at the
/// end: the destructor does not, because the stream may raise.
class TraceSink {
  public:
    TraceSink(std::ostream & stream, TraceFormatter const & formatter, unsigned int level) noexcept
        : m_stream(stream), m_formatter(formatter), m_settings(TraceFormatterImpl::of(formatter)),
          m_outerLevel(level), m_level(level) {}

    TraceSink(TraceSink const &) = delete;
    TraceSink & operator=(TraceSink const &) = delete;

    TraceFormatter const & formatter() const noexcept { return m_formatter; }

    TraceFormatterImpl const & settings() const noexcept { return m_settings; }

    unsigned int level() const noexcept { return m_level; }

    /// Levels entered since the sink was made: the maps around what is rendered now.
    unsigned int depth() const noexcept { return m_level - m_outerLevel; }

    void enter_level() noexcept { ++m_level; }

    void leave_level() noexcept { --m_level; }

    void append(std::string_view text) {
        if (text.size() > room()) [[unlikely]] {
            append_long(text);
        } else {
            m_next += text.copy(m_next, text.size());
        }
    }

    /// The decimal digits, whatever the stream's flags and locale.
    void append_number(long long value);
    void append_number(unsigned long long value);
    /// As a stream with its default flags and the classic locale writes it.
    void append_number(double value);

    /// Two digits a byte.
    void append_hex(unsigned char const * data, std::size_t size);

    /// Marks that `count` elements or bytes are not shown.
    void append_left_out(std::size_t count);

    /// Line prefix and indentation.
    void append_new_line();

    /// The lines of a text; calls `newLine` between two.
    template <typename NewLine>
    void append_lines(std::string_view text, NewLine newLine) {
        auto const appendLine = [this](std::string_view line) { append(line); };
        for_each_line(text, appendLine, newLine);
    }

    /// A text of the settings: new lines in place of its line feeds.
    void append_indented(vxcore::SourceString const & text) {
        if (text.size() > room()) [[unlikely]] {
            append_indented_lines(text.view());
            return;
        }
        // Mostly a few bytes: a loop costs less than the calls to search and to copy them.
        char * next = m_next;
        for (char const c : text.view()) {
            if (c == '\n') {
                append_indented_lines(text.view());
                return;
            }
            *next++ = c;
        }
        m_next = next;
    }

    /// What `append_indented` appends, for a text that is repeated at this level.
    std::string indented(vxcore::SourceString const & text) const;

    /// What `stream() << text` writes.
    void insert(std::string_view text) {
        if (has_width()) [[unlikely]] {
            stream() << text;
        } else {
            append(text);
        }
    }

    /// What `stream() << number` writes in the default floating-point environment. While flags and
    /// locale are the defaults, the number is formatted here, since the stream would take several
    /// times as long.
    template <typename Number>
    void insert_number(Number number) {
        if (has_width() || !has_plain_numbers()) [[unlikely]] {
            flush();
            vxcore::impl::DefaultFloatingPoint const environment;
            m_stream << number;
        } else {
            append_number(number);
        }
    }

    /// The stream, after the buffered text was written to it.
    std::ostream & stream() {
        flush();
        return m_stream;
    }

    void flush();

  private:
    enum ENumbers { eNumbers_Unknown, eNumbers_Plain, eNumbers_Custom };

    std::size_t room() const noexcept {
        return static_cast<std::size_t>(m_storage + sizeof m_storage - m_next);
    }

    /// True while the stream would pad the next thing inserted.
    bool has_width() const noexcept { return m_stream.width() != 0; }

    /// Asks the stream once, since reading its locale changes a count that threads share.
    bool has_plain_numbers() {
        if (m_numbers == eNumbers_Unknown) {
            m_numbers = find_numbers();
        }
        return m_numbers == eNumbers_Plain;
    }

    ENumbers find_numbers() const;
    void append_long(std::string_view text);
    void append_indented_lines(std::string_view text);
    /// Makes room for any number.
    void reserve_number();

    std::ostream & m_stream;
    TraceFormatter const & m_formatter;
    TraceFormatterImpl const & m_settings;
    unsigned int const m_outerLevel;
    unsigned int m_level;
    ENumbers m_numbers = eNumbers_Unknown;
    char * m_next = m_storage;
    char m_storage[1024];
};

} // namespace vxattribute::impl
