#pragma once

// Included by text_writer.cpp and by the JSON renderer of vxattribute; not for direct use.

#include "vxjson/short_text_impl.h"
#include "vxjson/text_writer.h"

#include <charconv>
#include <typeinfo>

namespace vxjson::impl {

/// Writes to a TextWriter without checks of the order of calls and without virtual calls, for code
/// that has the right order by itself. Everything else is as in TextWriter: the text, its limits,
/// and the state in which an exception leaves the writer.
///
/// Each call writes straight into the buffer of the writer. What is rare or long is in TextWriter.
class TextOutput {
  public:
    /// True if `writer` is a TextWriter that is due to receive a value, so that
    /// `TextOutput(static_cast<TextWriter &>(writer))` may write one.
    static bool takes_value(Writer const & writer) noexcept {
        return typeid(writer) == typeid(TextWriter) &&
               static_cast<TextWriter const &>(writer).is_value_due();
    }

    explicit TextOutput(TextWriter & writer) noexcept : m_writer(writer) {}

    void write_name(char const * data, unsigned int size) {
        if (size < ShortText::limit) {
            ShortText const text(data, size);
            if (!text.has_special(m_writer.m_highBits)) [[likely]] {
                char * at = m_writer.begin_value();
                *at++ = '"';
                at = text.copy(at);
                *at++ = '"';
                *at++ = ':';
                *at = ' ';
                end(at + (m_writer.m_options.indent != 0 ? 1 : 0), TextWriter::eState_Named);
                return;
            }
        }
        m_writer.put_name({data, size});
    }

    void write_string(char const * data, unsigned int size) {
        if (size < ShortText::limit) {
            ShortText const text(data, size);
            if (!text.has_special(m_writer.m_highBits)) [[likely]] {
                char * at = m_writer.begin_value();
                *at++ = '"';
                at = text.copy(at);
                *at++ = '"';
                m_writer.end_value(at);
                return;
            }
        }
        m_writer.put_string({data, size});
    }

    void write_null() { write_word("null"); }

    void write_bool(bool value) { value ? write_word("true") : write_word("false"); }

    void write_integer(long long value) { write_number(value); }

    void write_double(double value) { m_writer.write_double(value); }

    void write_unsigned(unsigned long long value) { write_number(value); }

    void begin_object() { begin_container('{', '}'); }

    void end_object() { end_container('}'); }

    void begin_array() { begin_container('[', ']'); }

    void end_array() { end_container(']'); }

    void begin_string() {
        char * const at = m_writer.begin_value();
        *at = '"';
        end(at + 1, TextWriter::eState_String);
    }

    /// Writes a part of a string that needs no escape: ASCII without quotes, backslashes and
    /// control characters.
    void write_plain_data(char const * data, unsigned int size) { m_writer.put({data, size}); }

    void end_string() {
        char * const at = m_writer.room();
        *at = '"';
        m_writer.end_value(at + 1);
    }

  private:
    /// Takes over what was written up to `at`.
    void end(char * at, TextWriter::EState state) noexcept {
        m_writer.m_at = at;
        m_writer.m_state = state;
    }

    template <std::size_t Size>
    void write_word(char const (&word)[Size]) {
        char * const at = m_writer.begin_value();
        std::memcpy(at, word, Size - 1);
        m_writer.end_value(at + Size - 1);
    }

    template <typename Number>
    void write_number(Number value) {
        char * const at = m_writer.begin_value();
        m_writer.end_value(std::to_chars(at, at + 20, value).ptr);
    }

    void begin_container(char bracket, char bracketDue) {
        std::string & open = m_writer.m_open;
        if (open.size() >= m_writer.m_options.max_depth || open.size() == open.capacity())
            [[unlikely]] {
            m_writer.grow_open(bracketDue);
        }
        char * const at = m_writer.begin_value();
        *at = bracket;
        open.push_back(bracketDue);
        end(at + 1, TextWriter::eState_Empty);
    }

    void end_container(char bracket) {
        m_writer.m_open.pop_back();
        if (m_writer.m_options.indent != 0 && m_writer.m_state == TextWriter::eState_Full) {
            m_writer.put_line();
        }
        char * const at = m_writer.room();
        *at = bracket;
        m_writer.end_value(at + 1);
    }

    TextWriter & m_writer;
};

} // namespace vxjson::impl
