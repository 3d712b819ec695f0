#pragma once

// The steps of the reader that every value needs, in line.

#include "vxjson/reader.h"
#include "vxjson/tokenizer_plain_internal.h"

namespace vxjson {

/// The next token. A failed scan ends the reader and is raised.
inline EToken Reader::next_token() {
    if (m_tokenPushedBack) [[likely]] {
        m_tokenPushedBack = false;
        return m_token;
    }
    EToken const token = m_known != nullptr ? m_known->next_plain() : eToken_Unknown;
    if (token != eToken_Unknown) [[likely]] {
        return m_token = token;
    }
    return scan_token();
}

/// Skips the comma after a value, if there is one. The only punctuator that may follow the comma is
/// an opening bracket.
inline void Reader::consume_comma() {
    if (m_known != nullptr) [[likely]] {
        EToken const token = m_known->next_plain_after_value();
        if (token != eToken_Unknown) [[likely]] {
            m_token = token;
            m_tokenPushedBack = true;
            return;
        }
    }
    consume_slow_comma();
}

/// The text of the current token.
inline std::string_view Reader::token_text() {
    if (m_known != nullptr) [[likely]] {
        return m_known->m_text.view();
    }
    StringSlice slice;
    return m_tokenizer->text(slice).view();
}

/// The character of the current punctuator. If the tokenizer of a caller returns empty text, this
/// raises std::out_of_range, which does not end the reader.
inline char Reader::punctuator() {
    if (m_known != nullptr) [[likely]] {
        return m_known->m_text.data()[0];
    }
    StringSlice slice;
    return m_tokenizer->text(slice)[0];
}

/// The object for a value inside the current one, whose name is to be set and then `begin()` to be
/// called. That of its predecessor is used again, unless somebody else holds it: all elements of a
/// long array share one object.
inline Reader::Value & Reader::new_value() {
    ValuePtr & place = m_current->m_inner;
    if (place && place->has_unique_ref()) [[likely]] {
        return *place;
    }
    return make_value(place);
}

/// The last step of construction: takes the text of a literal or number from the tokenizer.
inline void Reader::Value::begin(EType type) {
    m_type = type;
    if (type == eType_Null || type == eType_Boolean || type == eType_Number) {
        m_state = eState_Loaded;
        m_data.set(m_reader->token_text(), m_reader->m_lends);
    } else {
        m_state = eState_Unread;
        m_data.clear();
    }
}

/// Steps up from a value.
inline void Reader::leave_value() noexcept {
    Value & left = *m_current;
    m_current = left.m_parent;
    if (!left.has_unique_ref()) [[unlikely]] {
        left.m_name.keep(); // the holder can still ask for them
        left.m_data.keep();
    }
    if (left.m_stream) [[unlikely]] {
        m_current->m_inner.reset(); // the stream reports that its value is gone
    }
}

} // namespace vxjson
