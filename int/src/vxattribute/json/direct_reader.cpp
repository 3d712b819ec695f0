#include "vxattribute/json/direct_reader_internal.h"
#include "vxattribute/json/keys_internal.h"
#include "vxattribute/make_value.h"
#include "vxcore/default_floating_point.h"
#include "vxjson/reserved_words.h"

namespace vxattribute::impl {

bool DirectReader::read(AttributeValue & value) {
    char const bracket = m_cursor.peek();
    if (bracket != '{' && bracket != '[') {
        return false;
    }
    m_cursor.skip(1);
    return read_rest(bracket, value);
}

bool DirectReader::read_rest(char bracket, AttributeValue & value) {
    vxcore::impl::DefaultFloatingPoint const environment; // for all numbers
    EStep step = open_container(bracket);
    while (step < EStep::eDone) {
        // Only a closing bracket can be the last byte, so a test here is enough.
        step = m_cursor.is_past_end() ? EStep::eRefused : take(step);
    }
    if (step == EStep::eDone) {
        value.swap(m_value);
    }
    return step == EStep::eDone;
}

inline DirectReader::EStep DirectReader::take(EStep step) {
    switch (step) {
    case EStep::eObject:
        return open_object();
    case EStep::eArray:
        return open_array();
    case EStep::eMembers:
        return read_members();
    case EStep::eAfterMember:
        return after_member();
    case EStep::eAfterMap:
        return after_map();
    default:
        return step;
    }
}

/// The step after an opening bracket, which the cursor has passed.
inline DirectReader::EStep DirectReader::open_container(char bracket) {
    if (m_open.size() == m_maxDepth) {
        return EStep::eRefused;
    }
    m_cursor.skip_space();
    return bracket == '{' ? EStep::eObject : EStep::eArray;
}

inline DirectReader::EStep DirectReader::open_object() {
    m_open.push_back({false, m_elements.size()});
    return m_cursor.peek() == '}' ? close_object() : EStep::eMembers;
}

/// Opens an array of maps. Reads any other array to its end.
DirectReader::EStep DirectReader::open_array() {
    if (m_cursor.take('{')) {
        m_open.push_back({true, m_maps.size()});
        return open_container('{');
    }
    return take_scalars() ? after_container() : EStep::eRefused;
}

DirectReader::EStep DirectReader::after_member() {
    m_elements.last_value().swap(m_value);
    return m_cursor.take_comma() ? EStep::eMembers : close_object();
}

DirectReader::EStep DirectReader::after_map() {
    if (m_cursor.take_comma()) {
        return m_cursor.take('{') ? open_container('{') : EStep::eRefused;
    }
    if (!m_cursor.take(']')) {
        return EStep::eRefused;
    }
    auto const first = m_maps.begin() + static_cast<std::ptrdiff_t>(m_open.back().start);
    m_value = make_list<AttributeMap>(std::span<AttributeMap const>(first, m_maps.end()));
    m_maps.erase(first, m_maps.end());
    m_open.pop_back();
    return after_container();
}

/// Makes the map of the innermost object, at its closing bracket.
DirectReader::EStep DirectReader::close_object() {
    if (!m_cursor.take('}')) {
        return EStep::eRefused;
    }
    std::size_t const start = m_open.back().start;
    AttributeMap map = m_elements.size() == start ? AttributeMap() : m_elements.take(start);
    m_open.pop_back();
    if (!m_open.empty() && m_open.back().isArray) {
        m_maps.push_back(std::move(map));
        return EStep::eAfterMap;
    }
    m_value = AttributeValue(map);
    return after_container();
}

/// Reads members up to the end of the object, or up to a value that is a container.
DirectReader::EStep DirectReader::read_members() {
    do {
        if (!take_name()) {
            return EStep::eRefused;
        }
        if (is_serialized()) {
            return take_serialized();
        }
        m_elements.add(m_names.take_current());
        char const c = m_cursor.peek();
        if (c == '{' || c == '[') {
            m_cursor.skip(1);
            return open_container(c);
        }
        if (!take_scalar(m_elements.last_value())) {
            return EStep::eRefused;
        }
    } while (m_cursor.take_comma());
    return close_object();
}

/// True if the current name marks the innermost object as a serialized value: it is the first one,
/// and the object is not in an array.
inline bool DirectReader::is_serialized() const {
    std::size_t const depth = m_open.size();
    return m_elements.size() == m_open.back().start &&
           m_names.current() == jsonSerializedKey.get() &&
           (depth == 1 || !m_open[depth - 2].isArray);
}

/// Takes a name with its colon, up to its value.
inline bool DirectReader::take_name() {
    if (!m_cursor.take('"')) {
        return false;
    }
    if (std::size_t const size = m_names.match_next(m_cursor.at(), m_cursor.last())) {
        m_cursor.skip(size + 1);
    } else {
        std::string_view text;
        if (!m_cursor.take_string(text) || text.empty()) {
            return false;
        }
        bool const isPlain = m_cursor.is_in_text(text);
        if (!m_names.find(text, isPlain)) {
            if (!m_allowsReservedNames && vxjson::is_reserved_word(text)) {
                return false;
            }
            m_names.add(text, isPlain);
        }
    }
    m_cursor.skip_space();
    if (!m_cursor.take(':')) {
        return false;
    }
    m_cursor.skip_space();
    return true;
}

} // namespace vxattribute::impl
