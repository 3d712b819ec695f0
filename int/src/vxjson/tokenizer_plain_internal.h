#pragma once

// The tokens of plain JSON that lie whole in the buffer: almost all tokens of almost all documents.
// They are in line, for Tokenizer::next() and for the Reader.
//
// A function that meets anything else returns eToken_Unknown, or null or false, and has changed
// nothing. Tokenizer::next_slow() then reads the same token from its start. It knows the options,
// refills the buffer and creates the errors.

#include "vxjson/find_special_impl.h"
#include "vxjson/lexis_impl.h"
#include "vxjson/number_scan_impl.h"
#include "vxjson/tokenizer.h"

#include <cstring>

namespace vxjson {

/// True for a byte that may directly follow a number or word.
inline bool Tokenizer::is_token_end(char c) const noexcept {
    using namespace impl;
    return is_byte(c, eByte_Blank | eByte_Punctuator) || (c == '/' && m_options.allow_comments);
}

/// The first byte from `at` on that is not white space, or the end of the buffer.
inline char const * Tokenizer::skip_plain_space(char const * at) const noexcept {
    while (at != m_limit && static_cast<unsigned char>(*at) <= ' ')
        [[unlikely]] {
            if (*at == '\n') {
                at = impl::skip_blanks(at + 1, m_limit); // indentation
            } else if (impl::is_byte(*at, impl::eByte_Blank)) {
                ++at;
            } else {
                break;
            }
        }
    return at;
}

/// As next().
inline EToken Tokenizer::next_plain() noexcept {
    if (m_mode != eMode_Between) [[unlikely]] {
        return take_plain_run();
    }
    return take_plain_at(skip_plain_space(m_cursor));
}

/// As take_plain(), with the most frequent token in line.
inline EToken Tokenizer::take_plain_at(char const * at) noexcept {
    if (at == m_limit) [[unlikely]] {
        return eToken_Unknown;
    }
    return *at == '"' ? take_quote(at) : take_plain(at);
}

/// The token after a value, for Reader::consume_comma(): the first one inside a string, otherwise
/// that after an optional comma.
inline EToken Tokenizer::next_plain_after_value() noexcept {
    return m_mode == eMode_Between ? take_plain_after_value(m_cursor) : take_plain_run();
}

/// The same after a string whose run was the last token.
inline EToken Tokenizer::next_plain_after_run() noexcept {
    if (m_mode != eMode_String || m_cursor == m_limit || *m_cursor != '"') [[unlikely]] {
        return eToken_Unknown;
    }
    m_mode = eMode_Between;
    EToken const token = take_plain_after_value(m_cursor + 1);
    m_mode = token == eToken_Unknown ? eMode_String : m_mode;
    return token;
}

/// Takes the token after an optional comma. Leaves alone what must not follow a comma.
inline EToken Tokenizer::take_plain_after_value(char const * at) noexcept {
    at = skip_plain_space(at);
    if (at != m_limit && *at == ',') [[likely]] {
        at = skip_plain_space(at + 1);
        if (at != m_limit && *at != '"' && (*at == '}' || *at == ']' || *at == ',' || *at == ':')) {
            return eToken_Unknown;
        }
    }
    return take_plain_at(at);
}

/// Takes the token at `at`, which is outside strings and is not white space.
inline EToken Tokenizer::take_plain(char const * at) noexcept {
    switch (*at) {
    case '"':
        return take_quote(at);
    case '{':
    case '[':
        if (m_depth == m_options.max_depth) [[unlikely]] {
            return eToken_Unknown;
        }
        ++m_depth;
        break;
    case '}':
    case ']':
        // Brackets are matched by the reader: a surplus one must not wrap the depth.
        m_depth -= m_depth == 0 ? 0 : 1;
        break;
    case ',':
    case ':':
        break;
    case 't':
        return take_plain_word(at, eToken_True, "true");
    case 'f':
        return take_plain_word(at, eToken_False, "false");
    case 'n':
        return take_plain_word(at, eToken_Null, "null");
    default:
        return take_plain_number(at);
    }
    m_cursor = at + 1;
    return give(eToken_Punctuator, at, at + 1);
}

inline EToken Tokenizer::take_plain_word(char const * at, EToken token,
                                         std::string_view word) noexcept {
    if (static_cast<std::size_t>(m_limit - at) <= word.size() ||
        std::memcmp(at, word.data(), word.size()) != 0 || !is_token_end(at[word.size()])) {
        return eToken_Unknown;
    }
    m_cursor = at + word.size();
    return give(token, at, m_cursor);
}

inline EToken Tokenizer::take_plain_number(char const * at) noexcept {
    impl::NumberScan const scan = impl::scan_number(at, m_limit);
    if (scan.expected != nullptr || scan.end == m_limit || !is_token_end(*scan.end) ||
        static_cast<std::size_t>(scan.end - at) > m_options.max_number_size) [[unlikely]] {
        return eToken_Unknown;
    }
    m_cursor = scan.end;
    return give(eToken_Number, at, scan.end);
}

/// The start of the string whose quote is at `at`.
inline EToken Tokenizer::take_quote(char const * at) noexcept {
    m_mode = *at == '"' ? eMode_String : eMode_Quoted;
    m_cursor = at + 1;
    return give(eToken_StringBegin, at, at);
}

/// The run at the cursor up to a special byte, or the end of the string.
inline EToken Tokenizer::take_plain_run() noexcept {
    if (m_mode != eMode_String || m_options.validate_utf8) [[unlikely]] {
        return eToken_Unknown;
    }
    char const * const start = m_cursor;
    char const * const end = impl::find_special<false>(start, m_limit, '"');
    if (end == m_limit || end - start > impl::max_run) [[unlikely]] {
        return eToken_Unknown;
    }
    if (end != start) [[likely]] {
        m_cursor = end;
        return give(eToken_CharData, start, end);
    }
    if (*end != '"') {
        return eToken_Unknown;
    }
    m_mode = eMode_Between;
    m_cursor = end + 1;
    return give(eToken_StringEnd, end, end);
}

/// The colon after the name whose start was the last token, and the name; null if the name is not
/// one run.
inline char const * Tokenizer::find_plain_colon(std::string_view & name) const noexcept {
    if (m_mode != eMode_String || m_options.validate_utf8) [[unlikely]] {
        return nullptr;
    }
    char const * const end = impl::find_special<false>(m_cursor, m_limit, '"');
    if (end == m_limit || *end != '"') [[unlikely]] {
        return nullptr;
    }
    name = std::string_view(m_cursor, static_cast<std::size_t>(end - m_cursor));
    char const * const colon = skip_plain_space(end + 1);
    return colon != m_limit && *colon == ':' ? colon : nullptr;
}

/// Takes a name, the colon after it, and the token after that.
inline EToken Tokenizer::take_colon(char const * at) noexcept {
    m_mode = eMode_Between;
    m_cursor = at + 1;
    give(eToken_Punctuator, at, at + 1);
    return take_plain_at(skip_plain_space(at + 1));
}

} // namespace vxjson
