// The grammar of documents. `m_current` is the value the reader is at: a container, the root, or a
// scalar whose text may be unread. take_token() applies each token to it. A token that was only
// looked at is pushed back with `m_tokenPushedBack`; there is never more than one.

#include "vxjson/reader_steps_internal.h"
#include "vxjson/reserved_words.h"

#include <new>

namespace vxjson {

using Value = Reader::Value;

namespace {

constexpr char const * in_next_value = "vxjson::Reader::next_value()";
constexpr char const * in_read_value = "vxjson::Reader::read_value()";

/// The type of container that a punctuator opens; eType_Root for other punctuators.
Value::EType container_type(char punctuator) noexcept {
    return punctuator == '{'   ? Value::eType_Object
           : punctuator == '[' ? Value::eType_Array
                               : Value::eType_Root;
}

/// The type of scalar that a token begins; eType_Root for other tokens.
Value::EType scalar_type(EToken token) noexcept {
    switch (token) {
    case eToken_StringBegin:
        return Value::eType_String;
    case eToken_True:
    case eToken_False:
        return Value::eType_Boolean;
    case eToken_Number:
        return Value::eType_Number;
    case eToken_Null:
        return Value::eType_Null;
    default:
        return Value::eType_Root;
    }
}

} // namespace

/// Moves from a number to the next one in the same array, which is the current token: the object
/// remains. False, with nothing changed, if something else is needed.
bool Reader::advance_to_number() {
    Value & value = *m_current;
    if (!m_tokenPushedBack || value.m_type != Value::eType_Number || m_known == nullptr ||
        value.m_parent->m_type != Value::eType_Array || !value.has_unique_ref()) {
        return false;
    }
    std::string_view const text = m_known->m_text.view();
    EToken const ahead = m_known->next_plain_after_value();
    if (ahead == eToken_Unknown) {
        return false;
    }
    m_token = ahead;
    value.m_state = Value::eState_Loaded;
    value.m_data.set(text, m_lends);
    return true;
}

/// Moves to the next value, or to the end.
void Reader::advance() {
    while (true) {
        EToken token = next_token();
        if (m_current->m_type >= Value::eType_Null) { // scalars have the highest types
            if (skip_text(token)) {
                continue;
            }
            leave_value(); // the token belongs to the enclosing container
        }
        Value * value = nullptr;
        switch (m_current->m_type) {
        case Value::eType_Root:
            if (m_options.allow_scalars && scalar_type(token) != Value::eType_Root) {
                take_root_scalar(token);
                return;
            }
            if (take_in_root(token)) {
                return;
            }
            continue;
        case Value::eType_Object:
            if (token != eToken_StringBegin && token != eToken_IdentifierBegin) {
                take_end_of_object(token);
                continue;
            }
            value = &read_name();
            token = next_token();
            break;
        default:
            if (token == eToken_Punctuator || token == eToken_DocumentEnd) {
                if (take_in_array(token)) {
                    return;
                }
                continue;
            }
            value = &new_value();
            value->m_name.clear();
            break;
        }
        read_value(*value, token);
        return;
    }
}

/// True when the token belongs to the unread text of the current scalar, which is dropped.
inline bool Reader::skip_text(EToken token) {
    if (token == eToken_CharData) {
        EToken const next = m_known != nullptr ? m_known->next_plain_after_run() : eToken_Unknown;
        if (next != eToken_Unknown) [[likely]] {
            m_token = next;
            m_tokenPushedBack = true;
        }
        return true;
    }
    if (token == eToken_StringEnd) {
        consume_comma();
        return true;
    }
    return false;
}

/// A document that is a scalar. No comma may follow it.
void Reader::take_root_scalar(EToken token) {
    Value & value = new_value();
    value.m_name.clear();
    value.begin(scalar_type(token));
    m_current = &value;
}

/// The top level: any number of objects and arrays. True when the reader is at one, or at the end.
bool Reader::take_in_root(EToken token) {
    switch (token) {
    case eToken_DocumentStart:
        return false;
    case eToken_DocumentEnd:
        drop_values();
        return true;
    case eToken_Punctuator:
        open_container();
        return true;
    default:
        fail_unexpected(VXCORE_LOCATION(in_next_value));
    }
}

/// The closing bracket of an object. The comma before it, as one before a name, was skipped after
/// the previous member.
inline void Reader::take_end_of_object(EToken token) {
    if (token == eToken_DocumentEnd) {
        fail("End of document reached without all objects properly closed", {},
             VXCORE_LOCATION(in_next_value));
    }
    if (token != eToken_Punctuator || punctuator() != '}') {
        fail_unexpected(VXCORE_LOCATION(in_next_value));
    }
    close_container();
}

/// A bracket in an array, or the end of the text. True when it opens a container.
inline bool Reader::take_in_array(EToken token) {
    if (token == eToken_DocumentEnd) {
        fail("End of document reached without all arrays properly closed", {},
             VXCORE_LOCATION(in_next_value));
    }
    if (punctuator() == ']') {
        close_container();
        return false;
    }
    open_container();
    return true;
}

/// Moves to the container that the current punctuator opens, at the top level or in an array.
/// Unlike in read_value(), no comma may follow its bracket.
void Reader::open_container() {
    Value::EType const type = container_type(punctuator());
    if (type == Value::eType_Root) {
        fail_unexpected(VXCORE_LOCATION(in_next_value));
    }
    Value & value = new_value();
    value.m_name.clear();
    value.begin(type);
    m_current = &value;
}

/// Moves to `value`, which `token` begins. Then reads one more token, or two if the first is a
/// comma. For a string or container this is already the first token inside it.
inline void Reader::read_value(Value & value, EToken token) {
    Value::EType const type =
        token == eToken_Punctuator ? container_type(punctuator()) : scalar_type(token);
    if (type == Value::eType_Root) {
        fail_unexpected(VXCORE_LOCATION(in_read_value));
    }
    value.begin(type);
    consume_comma();
    m_current = &value;
}

/// Reads a name, which has begun, and its colon. A plain name is not copied yet if the text is in
/// memory. Returns the object for the member.
inline Reader::Value & Reader::read_name() {
    std::string_view name;
    char const * const colon = m_known != nullptr ? m_known->find_plain_colon(name) : nullptr;
    if (colon == nullptr || name.size() > sm_maxStringSize || is_refused(name)) [[unlikely]] {
        return read_slow_name();
    }
    Value & value = new_value();
    value.m_name.set(name, m_lends);
    m_token = m_known->take_colon(colon);
    m_tokenPushedBack = m_token != eToken_Unknown;
    return value;
}

[[gnu::noinline]] Reader::Value & Reader::read_slow_name() {
    std::string name;
    read_char_data(name);
    if (is_refused(name)) {
        fail_name(std::move(name), VXCORE_LOCATION(in_read_value));
    }
    EToken const end = next_token();
    if (end != eToken_StringEnd && end != eToken_IdentifierEnd) {
        fail_unexpected(VXCORE_LOCATION(in_read_value));
    }
    if (next_token() != eToken_Punctuator || punctuator() != ':') {
        fail_unexpected(VXCORE_LOCATION(in_read_value));
    }
    Value & value = new_value();
    value.m_name.assign(name);
    return value;
}

/// True for a name that no member may have.
inline bool Reader::is_refused(std::string_view name) const noexcept {
    return name.empty() ? !m_options.allow_empty_names
                        : !m_options.allow_reserved_names && is_reserved_word(name);
}

/// Reads all text up to the next token of another kind. Text in one piece is copied once.
///
/// @param text  Has part of the text after a failure.
void Reader::read_char_data(std::string & text) {
    text.clear();
    while (next_token() == eToken_CharData) {
        std::string_view const piece = token_text();
        if (piece.size() > sm_maxStringSize - text.size()) {
            throw_string_size_error();
        }
        text.append(piece);
    }
    m_tokenPushedBack = true;
}

[[gnu::noinline]] void Reader::consume_slow_comma() {
    if (next_token() == eToken_Punctuator && punctuator() == ',' &&
        next_token() == eToken_Punctuator && container_type(punctuator()) == Value::eType_Root) {
        fail_unexpected(VXCORE_LOCATION("vxjson::Reader::consume_comma()"));
    }
    m_tokenPushedBack = true;
}

/// Returns to the enclosing container and skips the comma after the closing bracket. At the top
/// level no comma may follow.
void Reader::close_container() {
    leave_value();
    if (m_current->m_type != Value::eType_Root) {
        consume_comma();
    }
}

/// Any token that is not plain, and all tokens of other tokenizers.
[[gnu::noinline]] EToken Reader::scan_token() {
    try {
        m_token = m_known != nullptr ? m_known->next_slow() : m_tokenizer->next();
    } catch (...) {
        keep_tokenizer_error();
        throw;
    }
    if (m_token == eToken_Error) {
        keep_tokenizer_error();
        stop(m_error);
    }
    return m_token;
}

} // namespace vxjson
