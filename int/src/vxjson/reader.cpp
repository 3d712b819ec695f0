#include "vxjson/reader.h"

#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/number_text_internal.h"
#include "vxjson/position_message_internal.h"
#include "vxjson/reserved_words.h"
#include "vxjson/tokenizer.h"

#include <new>

namespace vxjson {

namespace {

constexpr char const * in_next_value = "vxjson::Reader::next_value()";
constexpr char const * in_next_child = "vxjson::Reader::next_child()";
constexpr char const * in_read_value = "vxjson::Reader::read_value()";

vxcore::ErrorParams one_param(char const * name, std::string value) {
    vxcore::ErrorParams params;
    params.insert_ref(vxcore::SourceString(name, true)) = std::move(value);
    return params;
}

constexpr char const * unexpected_token = "Unexpected tokenizer token: {@token}";

} // namespace

Reader::Reader(ITokenizer & tokenizer) : Reader(tokenizer, Options()) {}

Reader::Reader(ITokenizer & tokenizer, Options const & options)
    : m_tokenizer(&tokenizer), m_known(dynamic_cast<Tokenizer *>(&tokenizer)),
      m_current(new Value(*this, nullptr, Value::eType_Root, {})), m_options(options) {}

Reader::~Reader() = default;

Reader::ValuePtr Reader::next_value() {
    if (m_failed) {
        fail_after_error(error::vxjson_reader, VXCORE_LOCATION(in_next_value));
    }
    if (!m_current) {
        return nullptr;
    }
    if (m_currentPending) {
        m_currentPending = false;
        return m_current;
    }
    try {
        return advance();
    } catch (std::bad_alloc const &) {
        m_failed = true; // tokens are lost, so what follows would be misread
        throw;
    }
}

Reader::ValuePtr Reader::next_child(ValuePtr parent) {
    if (m_failed) {
        fail_after_error(error::vxjson_reader, VXCORE_LOCATION(in_next_child));
    }
    if (!parent) {
        fail("Parent parameter cannot be NULL", {}, VXCORE_LOCATION(in_next_child));
    }
    if (!m_current) {
        return nullptr;
    }
    if (m_currentPending && parent == m_current) {
        // The caller has got the pending value from current(). Delivered once more it would not be
        // a child of its own, and a loop over documents would never end.
        m_currentPending = false;
    }
    ValuePtr value = next_value();
    while (value && value->m_parent != parent) {
        if (parent->m_depth >= value->m_depth) {
            m_currentPending = true;
            return nullptr;
        }
        value = next_value();
    }
    return value;
}

bool Reader::next_number(ValuePtr const & array, double & number) {
    if (m_failed || m_currentPending || !m_current || !array ||
        array->m_type != Value::eType_Array) {
        return false;
    }
    bool const isBehindNumber =
        m_current->m_type == Value::eType_Number && m_current->m_parent == array;
    if (!isBehindNumber && m_current != array) {
        return false;
    }
    bool const isNumber = next_token() == eToken_Number;
    m_tokenPushedBack = true;
    if (!isNumber) {
        return false;
    }
    if (isBehindNumber) {
        leave_scalar();
    }
    vxcore::ErrorInfo::Ptr failure; // raised by the object that next_child() makes
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
    while (true) {
        EToken const token = next_token();
        if (m_current->m_type >= Value::eType_Null) { // a scalar, whose unread text is dropped
            if (token == eToken_CharData) {
                continue;
            }
            if (token == eToken_StringEnd) {
                consume_comma();
                continue;
            }
            leave_scalar(); // the token is for what encloses it
        }
        bool const isPunctuator = token == eToken_Punctuator;
        switch (m_current->m_type) {
        case Value::eType_Root:
            if (token == eToken_DocumentStart) {
                break;
            }
            if (token == eToken_DocumentEnd) {
                m_current.reset();
                return nullptr;
            }
            if (!isPunctuator) {
                fail_unexpected(VXCORE_LOCATION(in_next_value));
            }
            return open_container();
        case Value::eType_Object:
            if (token == eToken_StringBegin || token == eToken_IdentifierBegin) {
                std::string name = read_name();
                return deliver(read_value(std::move(name)));
            }
            if (token == eToken_DocumentEnd) {
                fail("End of document reached without all objects properly closed", {},
                     VXCORE_LOCATION(in_next_value));
            }
            if (!isPunctuator || punctuator() != '}') {
                fail_unexpected(VXCORE_LOCATION(in_next_value));
            }
            close_container();
            break;
        case Value::eType_Array:
            if (token == eToken_DocumentEnd) {
                fail("End of document reached without all arrays properly closed", {},
                     VXCORE_LOCATION(in_next_value));
            }
            if (!isPunctuator) {
                m_tokenPushedBack = true;
                return deliver(read_value({}));
            }
            if (punctuator() != ']') {
                return open_container();
            }
            close_container();
            break;
        default:
            break; // there are no others
        }
    }
}

inline Reader::ValuePtr Reader::deliver(ValuePtr value) noexcept {
    m_current = std::move(value);
    return m_current;
}

/// The container that the current punctuator opens, at the top level or in an array. No comma may
/// follow here, unlike behind the bracket of a container that read_value() makes.
Reader::ValuePtr Reader::open_container() {
    char const c = punctuator();
    if (c != '{' && c != '[') {
        fail_unexpected(VXCORE_LOCATION(in_next_value));
    }
    auto const type = c == '{' ? Value::eType_Object : Value::eType_Array;
    return deliver(Value::make(*this, type, {}));
}

Reader::ValuePtr Reader::read_value(std::string && name) {
    Value::EType type = Value::eType_Root;
    switch (next_token()) {
    case eToken_StringBegin:
        type = Value::eType_String;
        break;
    case eToken_True:
    case eToken_False:
        type = Value::eType_Boolean;
        break;
    case eToken_Number:
        type = Value::eType_Number;
        break;
    case eToken_Null:
        type = Value::eType_Null;
        break;
    case eToken_Punctuator: {
        char const c = punctuator();
        if (c == '{' || c == '[') {
            type = c == '{' ? Value::eType_Object : Value::eType_Array;
            break;
        }
        [[fallthrough]];
    }
    default:
        fail_unexpected(VXCORE_LOCATION(in_read_value));
    }
    ValuePtr value = Value::make(*this, type, std::move(name));
    value->read_token_value();
    consume_comma();
    return value;
}

/// A name up to its colon. Its begin token has been read.
std::string Reader::read_name() {
    std::string name = read_char_data();
    if (name.empty() || (!m_options.allow_reserved_names && is_reserved_word(name))) {
        fail("A JSON field '{@name}' has a name that is a reserved keyword. In order to use this "
             "name the reader option 'allow_reserved_names' has to be set.",
             one_param("name", std::move(name)), VXCORE_LOCATION(in_read_value));
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

/// All text up to the next token of another kind. A text of one run is copied once.
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

/// Takes the comma behind a value, if there is one, and looks at what follows it.
void Reader::consume_comma() {
    if (next_token() == eToken_Punctuator && punctuator() == ',' &&
        next_token() == eToken_Punctuator) {
        char const c = punctuator();
        if (c != '{' && c != '[') {
            fail_unexpected(VXCORE_LOCATION("vxjson::Reader::consume_comma()"));
        }
    }
    m_tokenPushedBack = true;
}

inline void Reader::step_up() noexcept {
    m_current = m_current->m_parent;
}

/// Steps up from a scalar. What nobody else can see any more becomes the next value, so that the
/// elements of a long array are one object after the other.
inline void Reader::leave_scalar() noexcept {
    ValuePtr scalar = std::move(m_current);
    m_current = scalar->m_parent;
    if (scalar->is_reusable()) {
        m_spare = std::move(scalar);
    }
}

void Reader::close_container() {
    step_up();
    if (m_current->m_type != Value::eType_Root) {
        consume_comma();
    }
}

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

/// The character of the current punctuator. An empty text raises std::out_of_range, which is no
/// failure of the reader.
inline char Reader::punctuator() {
    if (m_known != nullptr) {
        return m_known->m_text.data()[0];
    }
    StringSlice slice;
    return m_tokenizer->text(slice)[0];
}

/// Takes over why a scan failed. A tokenizer that cannot tell gets an error made for it: without
/// one the failure would look like the end of the document.
void Reader::keep_tokenizer_error() noexcept {
    m_failed = true;
    try {
        vxcore::ErrorInfo::Ptr info;
        m_tokenizer->error(info);
        if (!info) {
            SourcePosition position;
            m_tokenizer->position(position);
            info =
                impl::create_positioned(error::vxjson_reader_unexpected_token, unexpected_token,
                                        one_param("token", to_string(eToken_Error)),
                                        VXCORE_LOCATION("vxjson::Reader::next_token()"), position);
        }
        m_error = std::move(info);
    } catch (...) {
        // Out of memory; m_failed tells enough.
    }
}

/// The last step of every failure.
void Reader::stop(vxcore::ErrorInfo::Ptr info) {
    m_failed = true;
    m_current.reset();
    m_error = info;
    if (!info) {
        throw std::bad_alloc(); // what keep_tokenizer_error() met
    }
    vxcore::ErrorException::throw_error(std::move(info));
}

void Reader::fail(std::string_view message, vxcore::ErrorParams params,
                  vxcore::SourceLocation location, vxcore::ErrorInfo::Ptr nested) {
    fail(error::vxjson_reader, message, std::move(params), std::move(location), std::move(nested));
}

void Reader::fail(vxcore::ErrorCode const & code, std::string_view message,
                  vxcore::ErrorParams params, vxcore::SourceLocation location,
                  vxcore::ErrorInfo::Ptr nested) {
    m_failed = true;
    SourcePosition position;
    m_tokenizer->position(position);
    stop(impl::create_positioned(code, message, std::move(params), std::move(location), position,
                                 std::move(nested)));
}

void Reader::fail_after_error(vxcore::ErrorCode const & code, vxcore::SourceLocation location) {
    fail(code, "Value cannot be read after a parse error", {}, std::move(location));
}

void Reader::fail_unexpected(vxcore::SourceLocation location) {
    fail(error::vxjson_reader_unexpected_token, unexpected_token,
         one_param("token", to_string(m_token)), std::move(location));
}

void Reader::throw_string_size_error() {
    fail(error::vxjson_reader_unexpected_size,
         "Node value exceeds {@maxSize}bytes of character data",
         one_param("maxSize", vxcore::to_string(sm_maxStringSize)),
         VXCORE_LOCATION("vxjson::Reader::throw_string_size_error()"));
}

} // namespace vxjson
