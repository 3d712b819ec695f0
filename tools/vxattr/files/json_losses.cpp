#include "vxattr/files/json_losses.h"

#include "vxattr/visible_text.h"
#include "vxcore/text_conversion.h"

#include <algorithm>
#include <charconv>

namespace vxattr {

using namespace vxjson;

namespace {

constexpr std::string_view serializedName = "vxserialize";

/// The exact digits of the double that an integer becomes.
std::string as_double(std::string_view digits) {
    double number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    char text[400];
    auto const end =
        std::to_chars(std::begin(text), std::end(text), number, std::chars_format::fixed, 0).ptr;
    return {std::begin(text), end};
}

std::string_view shortened(std::string_view text) noexcept {
    return text.substr(0, 80);
}

} // namespace

EToken JsonLosses::next() {
    EToken const token = m_tokens.next();
    switch (token) {
    case eToken_Punctuator:
        take_punctuator();
        break;
    case eToken_StringBegin:
    case eToken_IdentifierBegin:
        begin_string();
        break;
    case eToken_CharData:
        take_characters();
        break;
    case eToken_StringEnd:
    case eToken_IdentifierEnd:
        end_string();
        break;
    case eToken_Number:
        take_number();
        end_value();
        break;
    case eToken_True:
    case eToken_False:
    case eToken_Null:
        end_value();
        break;
    default:
        break;
    }
    return token;
}

void JsonLosses::take_punctuator() {
    StringSlice slice;
    char const c = m_tokens.text(slice)[0];
    if (c == '{' || c == '[') {
        open(c == '{');
    } else if (c == '}' || c == ']') {
        close();
    }
}

void JsonLosses::begin_string() {
    m_isName = !m_open.empty() && m_open.back().isObject && m_open.back().isNameDue;
    m_name.clear();
    m_tokens.position(m_position);
}

void JsonLosses::take_characters() {
    if (m_isName) {
        StringSlice slice;
        m_name += m_tokens.text(slice).view();
    }
}

void JsonLosses::end_string() {
    if (m_isName) {
        take_name();
    } else {
        end_value();
    }
}

void JsonLosses::open(bool isObject) {
    bool const isElement = !m_open.empty() && !m_open.back().isObject;
    bool const isDropped = !m_open.empty() && m_open.back().isDropped;
    m_open.push_back({isObject, isElement});
    m_open.back().isDropped = isDropped;
}

void JsonLosses::close() {
    if (!m_open.empty()) {
        m_open.pop_back();
        end_value();
    }
}

void JsonLosses::end_value() noexcept {
    if (!m_open.empty()) {
        m_open.back().isNameDue = true;
    }
}

void JsonLosses::take_name() {
    m_isName = false;
    Container & object = m_open.back();
    object.isNameDue = false;
    if (object.isDropped) {
        return;
    }
    if (object.isSerialized) {
        object.isDropped = true;
        note(quoted_name(m_name) +
             " and all after it are dropped: they come after \"vxserialize\"");
        return;
    }
    object.isSerialized = object.names.empty() && !object.isElement && m_name == serializedName;
    if (!object.names.insert(m_name).second) {
        note("the name " + quoted_name(m_name) +
             " comes again: only the last of its values is kept");
    }
}

void JsonLosses::take_number() {
    StringSlice slice;
    std::string_view const text = m_tokens.text(slice).view();
    bool const isInteger = text.find_first_of(".eE") == std::string_view::npos;
    bool const isDropped = !m_open.empty() && m_open.back().isDropped;
    // A double holds every integer of up to 15 digits. None has more than 309 digits.
    if (!isInteger || isDropped || text.size() <= 15 || text.size() > 310) {
        return;
    }
    if (std::string const kept = as_double(text); kept != text) {
        m_tokens.position(m_position);
        note("the integer " + std::string(shortened(text)) + " is read as " +
             std::string(shortened(kept)));
    }
}

void JsonLosses::note(std::string const & text) {
    if (++m_count <= sm_maxTexts) {
        m_texts.push_back("[line " + vxcore::to_string(m_position.line) + ", pos " +
                          vxcore::to_string(m_position.linePos) + "]: " + text);
    }
}

} // namespace vxattr
