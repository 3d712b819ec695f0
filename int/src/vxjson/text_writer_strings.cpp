#include "vxcore/error_composer.h"
#include "vxcore/hex.h"
#include "vxcore/text_conversion.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/find_special_impl.h"
#include "vxjson/text_output_impl.h"
#include "vxjson/utf8_impl.h"
#include "vxjson/writer_failures_internal.h"

#include <algorithm>

namespace vxjson {

using namespace impl;

namespace impl {

void throw_character(char const * message, std::size_t offset, char const * function) {
    vxcore::ErrorComposer(message)
        .param("offset", vxcore::to_string(static_cast<unsigned long long>(offset)))
        .throw_error(error::vxjson_writer_unexpected_character, VXCORE_LOCATION(function));
}

} // namespace impl

namespace {

constexpr char const * ill_formed = "Ill-formed UTF-8 at byte {@offset}";

/// The escaped text of one character.
class Escape {
  public:
    /// @param codePoint  A quote, a backslash, a control character, or anything from U+0080 on.
    explicit Escape(unsigned int codePoint) noexcept {
        m_text[0] = '\\';
        if (char const letter = letter_of(codePoint); letter != '\0') {
            m_text[1] = letter;
            m_size = 2;
        } else if (codePoint < 0x10000) {
            put_unit(codePoint);
        } else {
            put_unit(0xD800 + ((codePoint - 0x10000) >> 10));
            put_unit(0xDC00 + (codePoint & 0x3FF));
        }
    }

    std::string_view view() const noexcept { return {m_text, m_size}; }

  private:
    static char letter_of(unsigned int codePoint) noexcept {
        switch (codePoint) {
        case '"':
        case '\\':
            return static_cast<char>(codePoint);
        case '\b':
            return 'b';
        case '\f':
            return 'f';
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case '\t':
            return 't';
        default:
            return '\0';
        }
    }

    void put_unit(unsigned int unit) noexcept {
        m_text[m_size++] = '\\';
        m_text[m_size++] = 'u';
        for (int shift = 12; shift >= 0; shift -= 4) {
            m_text[m_size++] = vxcore::hex_digit(unit >> shift);
        }
    }

    char m_text[12];
    unsigned int m_size = 0;
};

} // namespace

/// Checks UTF-8 if the options require it. Returns the size of the whole sequences, in bytes. The
/// rest of the text, if any, is the start of a sequence that continues in the next piece.
///
/// @param offset    Offset of the text in the data of the call, for messages.
/// @param mayBeCut  False where no further piece follows.
std::size_t TextWriter::check_text(std::string_view text, std::size_t offset, bool mayBeCut,
                                   char const * function) const {
    if (!checks_utf8()) {
        return text.size();
    }
    char const * at = text.data();
    char const * const limit = at + text.size();
    while ((at = find_special<true>(at, limit, '"')) != limit) {
        Utf8 const sequence = read_utf8(at, limit);
        if (sequence.size == 0) {
            if (sequence.cut && mayBeCut) {
                break;
            }
            throw_character(ill_formed, offset + static_cast<std::size_t>(at - text.data()),
                            function);
        }
        at += sequence.size;
    }
    return static_cast<std::size_t>(at - text.data());
}

/// Completes the sequence cut by the end of the previous piece with the first bytes of `text`,
/// which it removes. Returns the sequence, which is still cut if `text` is too short.
std::string_view TextWriter::join_cut(std::string_view & text, char (&sequence)[4],
                                      char const * function) const {
    std::copy_n(m_cut, m_cutSize, sequence);
    std::size_t size = m_cutSize;
    Utf8 found{0, 0, true};
    while (found.cut && !text.empty()) {
        sequence[size++] = text.front();
        text.remove_prefix(1);
        found = read_utf8(sequence, sequence + size);
    }
    if (found.size == 0 && !found.cut) {
        throw_character(ill_formed, size - m_cutSize - 1, function);
    }
    return {sequence, size};
}

/// Writes a name that is long or has special bytes.
void TextWriter::put_name(std::string_view name) {
    char * at = put_quoted(name, "vxjson::TextWriter::write_name()");
    *at++ = ':';
    *at = ' ';
    m_at = at + (m_options.indent != 0 ? 1 : 0);
    m_state = eState_Named;
}

/// Writes a string that is long or has special bytes.
void TextWriter::put_string(std::string_view text) {
    end_value(put_quoted(text, "vxjson::TextWriter::write_string()"));
}

/// Writes the text up to the second quote, and returns its end with room for two more bytes.
char * TextWriter::put_quoted(std::string_view text, char const * function) {
    constexpr std::size_t mostAtOnce = 256;
    if (text.size() <= mostAtOnce &&
        !(checks_utf8() ? has_special<true>(text) : has_special<false>(text))) {
        char * at = begin_value(text.size());
        *at++ = '"';
        at += text.copy(at, text.size());
        *at++ = '"';
        return at;
    }
    check_text(text, 0, false, function);
    char * const at = begin_value();
    *at = '"';
    m_at = at + 1;
    put_text(text);
    char * const end = room();
    *end = '"';
    return end + 1;
}

void TextWriter::put_text(std::string_view text) {
    if (m_options.ascii_only) {
        put_runs<true>(text);
    } else {
        put_runs<false>(text);
    }
}

/// Writes checked text with escapes. With `High`, U+0080 and above are escaped too.
template <bool High>
void TextWriter::put_runs(std::string_view text) {
    char const * at = text.data();
    char const * const limit = at + text.size();
    while (true) {
        char const * const end = find_special<High>(at, limit, '"');
        put({at, end});
        if (end == limit) {
            return;
        }
        Utf8 const special = read_utf8(end, limit);
        put(Escape(special.codePoint).view());
        at = end + special.size;
    }
}

void TextWriter::begin_string() {
    check_value(error::vxjson_writer_unexpected_string, "vxjson::TextWriter::begin_string()");
    TextOutput(*this).begin_string();
}

void TextWriter::write_string_data(char const * data, unsigned int size) {
    constexpr char const * function = "vxjson::TextWriter::write_string_data()";
    check_place(ePlace_String, error::vxjson_writer_unexpected_string_data, function);
    std::string_view text(data, size);
    char sequence[4];
    std::string_view head;
    if (m_cutSize != 0) {
        head = join_cut(text, sequence, function);
    }
    // Still cut: all of `text` is in it. Wait for more.
    if (m_cutSize != 0 && read_utf8(head.data(), head.data() + head.size()).cut) {
        std::copy(head.begin(), head.end(), m_cut);
        m_cutSize = static_cast<unsigned int>(head.size());
        return;
    }
    // Head and rest are both checked before either is written, so a failure changes nothing.
    std::size_t const whole = check_text(text, size - text.size(), true, function);
    put_text(head);
    put_text(text.substr(0, whole));
    text.remove_prefix(whole);
    std::copy(text.begin(), text.end(), m_cut);
    m_cutSize = static_cast<unsigned int>(text.size());
}

void TextWriter::end_string() {
    constexpr char const * function = "vxjson::TextWriter::end_string()";
    check_place(ePlace_String, error::vxjson_writer_unexpected_string_end, function);
    if (m_cutSize != 0) {
        throw_character(ill_formed, 0, function);
    }
    TextOutput(*this).end_string();
}

} // namespace vxjson
