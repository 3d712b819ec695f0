#pragma once

// Included by the direct reader of vxattribute; not for direct use.

#include "vxjson/export.h"
#include "vxjson/find_special_impl.h"
#include "vxjson/number_scan_impl.h"

#include <cstring>
#include <string>
#include <string_view>

namespace vxjson::impl {

/// JSON text in memory, and what a direct reader may accept of it.
struct PlainText {
    char const * at;            ///< the next byte to read
    char const * last;          ///< the last closing bracket of the text, at which every scan ends
    unsigned int maxDepth;      ///< objects and arrays open at a time, with the one that is read
    unsigned int maxNumberSize; ///< in bytes
    bool validatesUtf8;
    bool allowsReservedNames;

    /// Sets `last` to the bracket that ends the text up to `limit`, but for a few blanks. False if
    /// the text ends with anything else.
    bool cut(char const * limit) noexcept {
        constexpr std::ptrdiff_t maxBlanks = 64; // a caller may try again after each small value
        char const * const lowest = limit - std::min(limit - at, maxBlanks);
        while (limit != lowest && is_byte(limit[-1], eByte_Blank)) {
            --limit;
        }
        if (limit == lowest) {
            return false;
        }
        last = limit - 1;
        return *last == '}' || *last == ']';
    }
};

/// Reads the tokens of plain JSON from a text in memory.
///
/// Each function reads one token, or returns false when something else is there: the text is then
/// wrong, or needs a tolerance of Reader. The cursor is of no use afterwards.
///
/// The text ends with a bracket, so scans of white space and numbers need no test for the end: they
/// all stop there. After each closing bracket, test `is_past_end` before reading on.
///
/// Threads. A cursor belongs to one thread.
class TextCursor {
  public:
    /// The longest name or string that Reader returns as a whole, in bytes.
    static constexpr std::ptrdiff_t max_string_size = 0x8000000;

    /// @param text  Its bytes must outlive the cursor unchanged.
    explicit TextCursor(PlainText const & text) noexcept : m_text(text), m_at(text.at) {}

    char const * at() const noexcept { return m_at; }

    char const * last() const noexcept { return m_text.last; }

    bool is_past_end() const noexcept { return m_at > m_text.last; }

    char peek() const noexcept { return *m_at; }

    void skip(std::size_t size) noexcept { m_at += size; }

    void skip_space() noexcept {
        while (static_cast<unsigned char>(*m_at) <= ' ' && is_byte(*m_at, eByte_Blank)) {
            m_at = *m_at == '\n' ? skip_blanks(m_at + 1, m_text.last) : m_at + 1; // indentation
        }
    }

    bool take(char c) noexcept {
        bool const isNext = *m_at == c;
        m_at += isNext ? 1 : 0;
        return isNext;
    }

    /// Skips a comma with the white space around it. False when none is there.
    bool take_comma() noexcept {
        skip_space();
        if (!take(',')) {
            return false;
        }
        skip_space();
        return true;
    }

    /// Reads a literal, which is no prefix of a longer word.
    bool take_word(std::string_view word) noexcept {
        if (m_text.last - m_at < static_cast<std::ptrdiff_t>(word.size()) ||
            std::memcmp(m_at, word.data(), word.size()) != 0 || !is_token_end(m_at[word.size()])) {
            return false;
        }
        m_at += word.size();
        return true;
    }

    /// Scans the number at the cursor, which stays in front of it. Returned by value: copies of the
    /// struct would go through memory.
    NumberScan scan_number() const noexcept { return impl::scan_number(m_at, NoTextLimit()); }

    /// Moves the cursor after that number. False if it is not valid, too long or followed by a
    /// letter.
    bool take(NumberScan const & number) noexcept {
        std::ptrdiff_t const size = number.end - m_at;
        m_at = number.end;
        return number.expected == nullptr && is_token_end(*m_at) && size <= m_text.maxNumberSize;
    }

    /// Reads the rest of a string after its quote. The result refers to the text if the string is
    /// in it as it is, and otherwise to memory of the cursor, up to the next string.
    ///
    /// @raises std::bad_alloc: no memory for a string with escapes.
    bool take_string(std::string_view & string) {
        char const * const end = m_text.validatesUtf8 ? find_special<true>(m_at, m_text.last, '"')
                                                      : find_special<false>(m_at, m_text.last, '"');
        if (*end != '"') [[unlikely]] {
            return decode_string(string);
        }
        string = std::string_view(m_at, static_cast<std::size_t>(end - m_at));
        m_at = end + 1;
        return string.size() <= max_string_size;
    }

    /// True when `string`, the result of `take_string`, is part of the text.
    bool is_in_text(std::string_view string) const noexcept {
        return string.data() != m_decoded.data();
    }

  private:
    static bool is_token_end(char c) noexcept { return is_byte(c, eByte_Blank | eByte_Punctuator); }

    VXJSON_API bool decode_string(std::string_view & string);
    bool append_run(char const * end);

    PlainText const m_text;
    char const * m_at;
    std::string m_decoded; // a string with escapes, or with bytes that were checked
};

} // namespace vxjson::impl
