#include "vxjson/escape_impl.h"
#include "vxjson/tokenizer_plain_internal.h"
#include "vxjson/utf8_impl.h"

#include <algorithm>
#include <cstring>

namespace vxjson {

using namespace impl;

namespace {

/// The longest run between two escapes that is copied into the scratch area with them, in bytes. So
/// text full of escapes becomes few tokens.
constexpr std::ptrdiff_t max_joined_run = 64;

/// A surrogate pair: two escapes of six bytes.
constexpr std::size_t longest_escape = 12;

} // namespace

/// The end of the plain run at the cursor: a special byte, or the limit. With `High` the run
/// consists of whole UTF-8 sequences.
template <bool High>
inline char const * Tokenizer::run_end() const noexcept {
    char const quote = m_mode == eMode_String ? '"' : '\'';
    char const * const limit = m_cursor + std::min(m_limit - m_cursor, max_run);
    char const * at = find_special<High>(m_cursor, limit, quote);
    if constexpr (High) {
        while (at != limit && static_cast<unsigned char>(*at) >= 0x80) {
            unsigned int const size = read_utf8(at, limit).size;
            if (size == 0) {
                break; // broken, or cut by the limit
            }
            at = find_special<High>(at + size, limit, quote);
        }
    }
    return at;
}

EToken Tokenizer::scan_string() {
    while (true) {
        char const * const end = m_options.validate_utf8 ? run_end<true>() : run_end<false>();
        if (end != m_cursor) {
            EToken const token = give(eToken_CharData, m_cursor, end);
            m_cursor = end;
            return token;
        }
        if (m_cursor == m_limit) {
            if (refill()) {
                continue;
            }
            return fail(m_cursor, "the end of the string");
        }
        if (*m_cursor == (m_mode == eMode_String ? '"' : '\'')) {
            m_mode = eMode_Between;
            EToken const token = give(eToken_StringEnd, m_cursor, m_cursor);
            ++m_cursor;
            return token;
        }
        if (*m_cursor == '\\') {
            return scan_escapes();
        }
        if (static_cast<unsigned char>(*m_cursor) < 0x20) {
            return fail(m_cursor, "an escape in place of a control character");
        }
        // A broken sequence, or one cut by the end of the buffer.
        require(4);
        if (read_utf8(m_cursor, m_limit).size == 0) {
            return fail(m_cursor, "a UTF-8 sequence");
        }
    }
}

/// Decodes escapes, and short runs between them, into one piece of text.
EToken Tokenizer::scan_escapes() {
    char * out = m_scratch;
    // Up to here there is room for one more character and one more run.
    char const * const last = m_scratch + sm_scratchSize - max_joined_run - 4;
    unsigned long long start = 0;
    while (out <= last && m_cursor != m_limit && *m_cursor == '\\') {
        // May move the text in the buffer: take no pointer into it before this call.
        require(longest_escape);
        Escape const escape = read_escape(m_cursor, m_limit, m_options.allow_single_quotes);
        if (escape.expected != nullptr) {
            if (out != m_scratch) {
                break; // first return the escapes before it
            }
            return fail(escape.end, escape.expected);
        }
        if (out == m_scratch) {
            start = offset(m_cursor);
        }
        out = write_utf8(out, static_cast<unsigned int>(escape.codePoint));
        m_cursor = escape.end;
        char const * const end = m_options.validate_utf8 ? run_end<true>() : run_end<false>();
        if (end - m_cursor <= max_joined_run) {
            out = std::copy(m_cursor, end, out);
            m_cursor = end;
        }
    }
    m_text = StringSlice(m_scratch, 0, static_cast<unsigned int>(out - m_scratch));
    m_decodedOffset = start;
    return eToken_CharData;
}

/// Scans the next piece of an unquoted name, or its end.
EToken Tokenizer::scan_name() {
    while (true) {
        char const * const limit = m_cursor + std::min(m_limit - m_cursor, max_run);
        char const * at = m_cursor;
        while (at != limit && is_byte(*at, eByte_NameStart | eByte_Digit)) {
            unsigned int const size = m_options.validate_utf8 ? read_utf8(at, limit).size : 1;
            if (size == 0) {
                break;
            }
            at += size;
        }
        if (at != m_cursor) {
            EToken const token = give(eToken_CharData, m_cursor, at);
            m_cursor = at;
            return token;
        }
        if (m_cursor == m_limit && refill()) {
            continue;
        }
        if (m_cursor == m_limit || is_token_end(*m_cursor)) {
            m_mode = eMode_Between;
            return give(eToken_IdentifierEnd, m_cursor, m_cursor);
        }
        if (!is_byte(*m_cursor, eByte_NameStart)) {
            return fail(m_cursor, "a name of letters, digits, '_' and '$'");
        }
        require(4);
        if (read_utf8(m_cursor, m_limit).size == 0) {
            return fail(m_cursor, "a UTF-8 sequence");
        }
    }
}

} // namespace vxjson
