#include "vxserialize/text/text_form_internal.h"
#include "vxserialize/text_reader.h"

/// The tokens of TextReader: marks such as '[', and words: numbers, names, times and UUIDs.
namespace vxserialize {

using namespace impl::text;

namespace {

/// The forms of words. The first character decides which characters may follow.
enum class EWord : unsigned char { eNone, ePlain, eTime, eUuid };

EWord word_started_by(int c) noexcept {
    switch (c) {
    case '@':
        return EWord::eTime;
    case '{':
        return EWord::eUuid;
    default:
        return is_char(c, eChar_Word) ? EWord::ePlain : EWord::eNone;
    }
}

bool continues_word(EWord form, int c) noexcept {
    return is_char(c, eChar_Word) || (form == EWord::eTime && c == ':');
}

} // namespace

/// The first byte of the next token, without taking it; -1 at the end of the stream.
int TextReader::peek_token() {
    if (m_wordSize != 0) {
        return static_cast<unsigned char>(m_word[0]);
    }
    int c = peek();
    while (is_char(c, eChar_Blank)) {
        ++m_cursor;
        c = peek();
    }
    return c;
}

/// Callers stop at `sm_maxWord`, so `m_word` cannot overflow. A word of that size is too long to be
/// an element.
void TextReader::add_to_word(int c) {
    m_word[m_wordSize++] = static_cast<char>(c);
    ++m_cursor;
}

/// Moves the word that starts at the next byte, if any, to `m_word` and finds its kind. A word is
/// copied because the next buffer of the stream may contain the rest of it.
void TextReader::scan_word() {
    int c = peek();
    EWord const form = word_started_by(c);
    if (form == EWord::eNone) {
        return;
    }
    do {
        add_to_word(c);
        c = peek();
    } while (m_wordSize < sm_maxWord && continues_word(form, c));
    if (form == EWord::eUuid && c == '}' && m_wordSize < sm_maxWord) {
        add_to_word(c);
    } else if (c == '(' && word() == "nan") {
        scan_nan_bits();
    }
    m_wordKind = m_wordSize < sm_maxWord ? word_kind() : eElement_None;
}

/// Adds the rest of a NaN, such as "(7ff8000000000001)", to the word.
void TextReader::scan_nan_bits() {
    int c = peek();
    do {
        add_to_word(c);
        c = peek();
    } while (m_wordSize < nan_prefix.size() + nan_digits && hex_value(c) >= 0);
    if (c == ')') {
        add_to_word(c);
    }
}

EElementKind TextReader::word_kind() const noexcept {
    std::string_view const text = word();
    if (text == "null") {
        return eElement_Null;
    }
    if (text == "true" || text == "false") {
        return eElement_Boolean;
    }
    if (text.front() == '@') {
        return eElement_AbsoluteTime;
    }
    if (text.front() == '{') {
        return eElement_Uuid;
    }
    std::string_view const magnitude = text.substr(text.front() == '-' ? 1 : 0);
    if (magnitude.starts_with('P')) {
        return eElement_RelativeTime;
    }
    if (magnitude == "inf" || text.starts_with(nan_prefix)) {
        return eElement_Double;
    }
    if (magnitude.empty() || !is_digit(magnitude.front())) {
        return eElement_None;
    }
    if (text.back() == 'u') {
        return eElement_Unsigned;
    }
    return text.find_first_of(".eE") == text.npos ? eElement_Integer : eElement_Double;
}

EElementKind TextReader::next_type() {
    switch (peek_token()) {
    case '<':
        return eElement_String;
    case '#':
        return eElement_Binary;
    case '[':
        return eElement_List;
    case '(':
        return eElement_Record;
    default:
        break;
    }
    if (m_wordSize == 0) {
        scan_word();
    }
    return m_wordSize == 0 ? eElement_None : m_wordKind;
}

std::string_view TextReader::peek_word(EElementKind kind) {
    EElementKind const found = next_type();
    if (found == kind) {
        return word();
    }
    if (m_wordSize == 0 && peek() < 0) {
        fail_truncated();
    }
    fail_type(kind, found);
}

void TextReader::take_word() noexcept {
    m_wordSize = 0;
    m_containers.element();
}

/// Takes the mark that an element of this kind starts with.
void TextReader::take_mark(char mark, EElementKind kind) {
    if (peek_token() != mark) {
        peek_word(kind); // raises
    }
    ++m_cursor;
}

} // namespace vxserialize
