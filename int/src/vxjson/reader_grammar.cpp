// The grammar of documents. `m_current` is the value the reader is at: a container, the root, or a
// scalar whose text may be unread. take_token() applies each token to it. A token that was only
// looked at is pushed back with `m_tokenPushedBack`; there is never more than one.

#include "vxjson/number_text_internal.h"
#include "vxjson/reader.h"
#include "vxjson/reserved_words.h"
#include "vxjson/tokenizer.h"

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

bool Reader::next_number(ValuePtr const & array, double & number) {
    if (m_failed || m_currentPending || !m_current || !array ||
        array->m_type != Value::eType_Array) {
        return false;
    }
    bool const isAfterNumber =
        m_current->m_type == Value::eType_Number && m_current->m_parent == array;
    if (!isAfterNumber && m_current != array) {
        return false;
    }
    bool const isNumber = next_token() == eToken_Number;
    m_tokenPushedBack = true;
    if (!isNumber) {
        return false;
    }
    if (isAfterNumber) {
        leave_scalar();
    }
    vxcore::ErrorInfo::Ptr failure; // dropped: next_child() reports it through the value
    double const value = impl::read_number(token_text(), &failure);
    if (failure) {
        return false;
    }
    m_tokenPushedBack = false;
    try {
        consume_comma();
    } catch (std::bad_alloc const &) {
        m_failed = true; // a token is lost
        throw;
    }
    number = value;
    return true;
}

/// Moves to the next value, or to the end.
Reader::ValuePtr Reader::advance() {
    while (!take_token(next_token())) {
    }
    return m_current;
}

/// Applies one token to the current value. True when `m_current` is the next value, or null at the
/// end; false when another token is needed.
inline bool Reader::take_token(EToken token) {
    // Scalars have the highest types.
    if (m_current->m_type >= Value::eType_Null) {
        if (skip_text(token)) {
            return false;
        }
        leave_scalar(); // the token belongs to the enclosing container
    }
    switch (m_current->m_type) {
    case Value::eType_Root:
        return take_in_root(token);
    case Value::eType_Object:
        return take_in_object(token);
    default:
        return take_in_array(token);
    }
}

/// True when the token belongs to the unread text of the current scalar, which is dropped.
inline bool Reader::skip_text(EToken token) {
    if (token == eToken_StringEnd) {
        consume_comma();
        return true;
    }
    return token == eToken_CharData;
}

/// The top level: any number of objects and arrays.
inline bool Reader::take_in_root(EToken token) {
    switch (token) {
    case eToken_DocumentStart:
        return false;
    case eToken_DocumentEnd:
        m_current.reset();
        return true;
    case eToken_Punctuator:
        m_current = open_container();
        return true;
    default:
        fail_unexpected(VXCORE_LOCATION(in_next_value));
    }
}

/// An object: a name with its value, or the closing bracket. The comma before a name was skipped
/// after the previous member.
inline bool Reader::take_in_object(EToken token) {
    switch (token) {
    case eToken_StringBegin:
    case eToken_IdentifierBegin:
        m_current = read_value(read_name());
        return true;
    case eToken_DocumentEnd:
        fail("End of document reached without all objects properly closed", {},
             VXCORE_LOCATION(in_next_value));
    default:
        if (token != eToken_Punctuator || punctuator() != '}') {
            fail_unexpected(VXCORE_LOCATION(in_next_value));
        }
        close_container();
        return false;
    }
}

/// An array: an element, or the closing bracket. Commas were skipped as in an object.
inline bool Reader::take_in_array(EToken token) {
    switch (token) {
    case eToken_DocumentEnd:
        fail("End of document reached without all arrays properly closed", {},
             VXCORE_LOCATION(in_next_value));
    case eToken_Punctuator:
        if (punctuator() == ']') {
            close_container();
            return false;
        }
        m_current = open_container();
        return true;
    default:
        m_tokenPushedBack = true;
        m_current = read_value({});
        return true;
    }
}

/// The container that the current punctuator opens, at the top level or in an array. Unlike in
/// read_value(), no comma may follow its bracket.
Reader::ValuePtr Reader::open_container() {
    Value::EType const type = container_type(punctuator());
    if (type == Value::eType_Root) {
        fail_unexpected(VXCORE_LOCATION(in_next_value));
    }
    return Value::make(*this, type, {});
}

/// Creates the value that the next token begins. Then reads one more token, or two if the first is
/// a comma. For a string or container this is already the first token inside it.
Reader::ValuePtr Reader::read_value(std::string && name) {
    EToken const token = next_token();
    Value::EType const type =
        token == eToken_Punctuator ? container_type(punctuator()) : scalar_type(token);
    if (type == Value::eType_Root) {
        fail_unexpected(VXCORE_LOCATION(in_read_value));
    }
    ValuePtr value = Value::make(*this, type, std::move(name));
    value->read_token_value();
    consume_comma();
    return value;
}

/// Reads a name and its colon. The current token is the first of the name.
std::string Reader::read_name() {
    std::string name = read_char_data();
    if (name.empty() || (!m_options.allow_reserved_names && is_reserved_word(name))) {
        fail_name(std::move(name), VXCORE_LOCATION(in_read_value));
    }
    EToken const end = next_token();
    if (end != eToken_StringEnd && end != eToken_IdentifierEnd) {
        fail_unexpected(VXCORE_LOCATION(in_read_value));
    }
    if (next_token() != eToken_Punctuator || punctuator() != ':') {
        fail_unexpected(VXCORE_LOCATION(in_read_value));
    }
    return name;
}

/// All text up to the next token of another kind. Text in one piece is copied once.
std::string Reader::read_char_data() {
    std::string text;
    while (next_token() == eToken_CharData) {
        std::string_view const piece = token_text();
        if (piece.size() > sm_maxStringSize - text.size()) {
            throw_string_size_error();
        }
        text.append(piece);
    }
    m_tokenPushedBack = true;
    return text;
}

/// Skips the comma after a value, if there is one. The only punctuator that may follow the comma is
/// an opening bracket.
void Reader::consume_comma() {
    if (next_token() == eToken_Punctuator && punctuator() == ',' &&
        next_token() == eToken_Punctuator && container_type(punctuator()) == Value::eType_Root) {
        fail_unexpected(VXCORE_LOCATION("vxjson::Reader::consume_comma()"));
    }
    m_tokenPushedBack = true;
}

inline void Reader::step_up() noexcept {
    m_current = m_current->m_parent;
}

/// Steps up from a scalar. If no caller holds its object, the object is kept for the next value. So
/// the elements of a long array share one object.
inline void Reader::leave_scalar() noexcept {
    ValuePtr scalar = std::move(m_current);
    m_current = scalar->m_parent;
    if (scalar->is_reusable()) {
        m_spare = std::move(scalar);
    }
}

/// Returns to the enclosing container and skips the comma after the closing bracket. At the top
/// level no comma may follow.
void Reader::close_container() {
    step_up();
    if (m_current->m_type != Value::eType_Root) {
        consume_comma();
    }
}

/// The next token. A failed scan ends the reader and is raised.
EToken Reader::next_token() {
    if (m_tokenPushedBack) {
        m_tokenPushedBack = false;
        return m_token;
    }
    try {
        m_token = m_known != nullptr ? m_known->next() : m_tokenizer->next();
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

/// The text of the current token.
std::string_view Reader::token_text() {
    if (m_known != nullptr) {
        return m_known->m_text.view();
    }
    StringSlice slice;
    return m_tokenizer->text(slice).view();
}

/// The character of the current punctuator. If the tokenizer of a caller returns empty text, this
/// raises std::out_of_range, which does not end the reader.
inline char Reader::punctuator() {
    if (m_known != nullptr) {
        return m_known->m_text.data()[0];
    }
    StringSlice slice;
    return m_tokenizer->text(slice)[0];
}

} // namespace vxjson
