#include "vxjson/tokenizer_plain_internal.h"

#include <algorithm>
#include <cstring>

namespace vxjson {

using namespace impl;

namespace {

constexpr char const * value_or_punctuator = "a value or a punctuator";
constexpr char const * token_end = "white space, a punctuator or the end";

struct Literal {
    EToken token;
    std::string_view text;
};

/// The literal that starts with `c`; its text is empty if there is none.
Literal literal_of(char c) noexcept {
    switch (c) {
    case 't':
        return {eToken_True, "true"};
    case 'f':
        return {eToken_False, "false"};
    case 'n':
        return {eToken_Null, "null"};
    default:
        return {eToken_Unknown, ""};
    }
}

} // namespace

// Not by way of each other: a copy of the options costs atomic counts, which a small document
// shows.
Tokenizer::Tokenizer(char const * data, std::size_t size) : m_options() {
    set_memory(data, size);
}

Tokenizer::Tokenizer(char const * data, std::size_t size, Options const & options)
    : m_options(options) {
    set_memory(data, size);
}

Tokenizer::Tokenizer(vxcore::IReadStream & stream) : Tokenizer(stream, Options()) {}

Tokenizer::Tokenizer(vxcore::IReadStream & stream, Options const & options)
    : m_options(options), m_stream(&stream), m_buffer(new char[std::max(options.buffer_size, 1u)]),
      m_capacity(std::max(options.buffer_size, 1u)) {
    set_memory(m_buffer.get(), 0);
    m_ended = false;
}

inline void Tokenizer::set_memory(char const * data, std::size_t size) noexcept {
    m_begin = m_cursor = m_counted = data;
    m_limit = data + size;
    m_text = StringSlice(data, 0, 0);
}

Tokenizer::~Tokenizer() = default;

/// Replaces the token by eToken_Error if the scan has failed. To a scan, a failed stream looks like
/// the end of the text, so the result of the scan does not show that failure.
inline EToken Tokenizer::checked(EToken token) noexcept {
    if (m_mode == eMode_Failed) {
        m_text = StringSlice();
        return eToken_Error;
    }
    return token;
}

EToken Tokenizer::next() {
    EToken const token = next_plain();
    return token != eToken_Unknown ? token : next_slow();
}

EToken Tokenizer::next_slow() {
    EToken token = eToken_Unknown;
    switch (m_mode) {
    case eMode_Start:
        token = scan_start();
        break;
    case eMode_Between:
        token = scan_token();
        break;
    case eMode_String:
    case eMode_Quoted:
        token = scan_string();
        break;
    case eMode_Name:
        token = scan_name();
        break;
    case eMode_End:
        token = give(eToken_DocumentEnd, m_limit, m_limit);
        break;
    case eMode_Failed:
        break;
    }
    return checked(token);
}

/// The start of the text, with its byte order mark if it has one.
EToken Tokenizer::scan_start() {
    m_mode = eMode_Between;
    require(3);
    EToken const token = give(eToken_DocumentStart, m_cursor, m_cursor);
    if (m_limit - m_cursor >= 3 && std::memcmp(m_cursor, "\xEF\xBB\xBF", 3) == 0) {
        m_cursor += 3;
    }
    return token;
}

/// Skips white space and begins the next token.
EToken Tokenizer::scan_token() {
    if (!skip_space()) {
        m_mode = m_mode == eMode_Failed ? eMode_Failed : eMode_End;
        return give(eToken_DocumentEnd, m_limit, m_limit);
    }
    if (EToken const token = take_plain(m_cursor); token != eToken_Unknown) {
        return token;
    }
    char const c = *m_cursor;
    if (c == '\'' && m_options.allow_single_quotes) {
        return take_quote(m_cursor);
    }
    if (c == '{' || c == '[') {
        return fail_limit(m_cursor, "More than {@limit} objects and arrays are open", m_depth);
    }
    if (c == '-' || is_byte(c, eByte_Digit)) {
        return scan_number();
    }
    if (is_byte(c, eByte_NameStart)) {
        return scan_word();
    }
    return fail(m_cursor, value_or_punctuator);
}

/// A number must be contiguous, so the scan starts again whenever the buffer has been refilled. The
/// buffer doubles if it is full, which keeps the cost linear.
EToken Tokenizer::scan_number() {
    std::size_t const most = m_options.max_number_size;
    while (true) {
        std::size_t const size = std::min(static_cast<std::size_t>(m_limit - m_cursor), most + 1);
        char const * const limit = m_cursor + size;
        NumberScan const scan = impl::scan_number(m_cursor, limit);
        if (scan.end == limit && size > most) {
            return fail_limit(m_cursor + most, "A number is longer than {@limit} bytes",
                              m_options.max_number_size);
        }
        if (scan.end == limit && !m_ended) {
            refill(); // moves the scanned bytes, even at the end of the text
            continue;
        }
        if (scan.expected != nullptr) {
            return fail(scan.end, scan.expected);
        }
        if (scan.end != m_limit && !is_token_end(*scan.end)) {
            return fail(scan.end, token_end);
        }
        EToken const token = give(eToken_Number, m_cursor, scan.end);
        m_cursor = scan.end;
        return token;
    }
}

/// A literal, or the start of an unquoted name. A failure is reported at the first byte that
/// differs from the literal.
EToken Tokenizer::scan_word() {
    require(6); // the longest literal and the byte after it
    Literal const literal = literal_of(*m_cursor);
    std::string_view const rest(m_cursor, static_cast<std::size_t>(m_limit - m_cursor));
    std::size_t const size = literal.text.size();
    if (size != 0 && rest.starts_with(literal.text) &&
        (rest.size() == size || is_token_end(rest[size]))) {
        EToken const token = give(literal.token, m_cursor, m_cursor + size);
        m_cursor += size;
        return token;
    }
    if (m_options.allow_unquoted_names) {
        m_mode = eMode_Name;
        return give(eToken_IdentifierBegin, m_cursor, m_cursor);
    }
    if (size == 0) {
        return fail(m_cursor, value_or_punctuator);
    }
    auto const [at, same] =
        std::mismatch(rest.begin(), rest.end(), literal.text.begin(), literal.text.end());
    return fail(m_cursor + (at - rest.begin()),
                same == literal.text.end() ? token_end : literal.text.data());
}

/// Skips white space and comments. False at the end of the text and after a failure.
bool Tokenizer::skip_space() {
    while (m_cursor != m_limit || refill()) {
        char const c = *m_cursor;
        if (static_cast<unsigned char>(c) > ' ' && c != '/') {
            return true; // nearly always
        }
        if (c == '\n') {
            m_cursor = skip_blanks(m_cursor + 1, m_limit); // indentation
        } else if (is_byte(c, eByte_Blank)) {
            ++m_cursor;
        } else if (c != '/' || !m_options.allow_comments) {
            return true;
        } else if (!skip_comment()) {
            return false;
        }
    }
    return false;
}

bool Tokenizer::skip_comment() {
    require(2);
    char const * const second = m_cursor + 1;
    if (second != m_limit && *second == '*') {
        m_cursor += 2;
        return skip_block_comment();
    }
    if (second == m_limit || *second != '/') {
        fail(second, "'/' or '*'");
        return false;
    }
    do {
        m_cursor = std::find(m_cursor, m_limit, '\n');
    } while (m_cursor == m_limit && refill());
    return true; // skip_space() handles the line feed or the end
}

bool Tokenizer::skip_block_comment() {
    bool star = false;
    while (m_cursor != m_limit || refill()) {
        char const c = *m_cursor++;
        if (star && c == '/') {
            return true;
        }
        star = c == '*';
    }
    fail(m_cursor, "the end of the comment");
    return false;
}

} // namespace vxjson
