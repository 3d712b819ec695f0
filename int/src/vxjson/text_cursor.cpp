#include "vxjson/escape_impl.h"
#include "vxjson/text_cursor_impl.h"
#include "vxjson/utf8_impl.h"

namespace vxjson::impl {

/// Appends the text up to `end`. False if it is to be valid UTF-8 and is not.
bool TextCursor::append_run(char const * end) {
    for (char const * at = m_at; m_text.validatesUtf8 && at != end;) {
        unsigned int const size = read_utf8(at, end).size;
        if (size == 0) {
            return false;
        }
        at += size;
    }
    m_decoded.append(m_at, end);
    m_at = end;
    return true;
}

/// Reads a string with escapes, or with bytes that must be checked.
bool TextCursor::decode_string(std::string_view & string) {
    m_decoded.clear();
    while (append_run(find_special<false>(m_at, m_text.last, '"'))) {
        if (m_at == m_text.last) {
            return false;
        }
        if (*m_at == '"') {
            ++m_at;
            string = m_decoded;
            return string.size() <= max_string_size;
        }
        Escape const escape = read_escape(m_at, m_text.last, false);
        if (*m_at != '\\' || escape.expected != nullptr) {
            return false;
        }
        char bytes[4];
        m_decoded.append(bytes, write_utf8(bytes, static_cast<unsigned int>(escape.codePoint)));
        m_at = escape.end;
    }
    return false;
}

} // namespace vxjson::impl
