#include "vxattr/commands/stream_walk.h"

#include "vxattribute/attribute_value_type.h"
#include "vxcore/text_conversion.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>

namespace vxattr {

using namespace vxattribute;
using namespace vxserialize;

namespace {

/// By type number: the kind of an element that is written without the number. eElement_None for
/// types that always have the number.
constexpr int bareKinds[] = {
    eElement_Null,
#define VX_ELEMENT_TYPE(number, Id, name, Type, storage, relocation, wire, ...) eElement_##wire,
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
};

} // namespace

StreamWalk::StreamWalk(MemoryReader reader, AttributeNamePackageSet::Ptr packages)
    : m_reader(reader), m_decoder(std::move(packages), false), m_size(reader.bytes_left()) {}

void StreamWalk::walk() {
    do {
        if (m_reader.next_type() == eElement_List) {
            walk_map({});
        } else {
            walk_value({});
        }
    } while (m_reader.bytes_left() != 0);
}

/// Records one element, and its length after it was read.
template <typename Read>
void StreamWalk::note(AttributeName const & name, Read && read) {
    std::size_t const index = m_elements.size();
    unsigned int const start = offset(); // first: next_type() may consume a mark
    auto const kind = static_cast<unsigned char>(m_reader.next_type());
    m_elements.push_back({start, StreamElement::unknown, m_depth, kind, -1, name});
    read();
    m_elements[index].length = offset() - start;
}

template <typename Content>
void StreamWalk::walk_list(AttributeName const & name, Content && content) {
    note(name, [&] {
        m_reader.begin_list();
        ++m_depth;
        while (m_reader.has_next()) {
            content();
        }
        --m_depth;
    });
}

template <typename Content>
void StreamWalk::walk_record(AttributeName const & name, Content && content) {
    note(name, [&] {
        m_reader.begin_record();
        ++m_depth;
        content();
        --m_depth;
        m_reader.end_record();
    });
}

void StreamWalk::walk_value(AttributeName const & name) {
    int const kind = m_reader.next_type();
    bool const isBare =
        kind != eElement_None &&
        std::find(std::begin(bareKinds), std::end(bareKinds), kind) != std::end(bareKinds);
    if (isBare) {
        walk_scalar(kind, name);
    } else {
        walk_tagged(name);
    }
}

void StreamWalk::walk_tagged(AttributeName const & name) {
    unsigned int tag = 0;
    note(name, [&] {
        tag = m_reader.read_uint();
        if (tag >= static_cast<unsigned int>(ValueTypeId::count)) {
            throw std::runtime_error("no type has the number " + vxcore::to_string(tag));
        }
        m_elements.back().tag = static_cast<short>(tag);
    });
    if (tag == ValueTypeId::eId_Null) {
        return;
    }
    if (tag != ValueTypeId::eId_AttributeMap && m_reader.next_type() != eElement_List) {
        walk_element(tag, name);
    } else {
        walk_list(name, [&] { walk_element(tag, name); });
    }
}

void StreamWalk::walk_element(unsigned int tag, AttributeName const & name) {
    switch (tag) {
    case ValueTypeId::eId_AttributeMap:
        walk_map(name);
        break;
    case ValueTypeId::eId_Serialized:
        walk_serialized(name);
        break;
    case ValueTypeId::eId_Secured:
        walk_secured(name);
        break;
    case ValueTypeId::eId_ErrorInfo:
        walk_error(name);
        break;
    case ValueTypeId::eId_Uri: // an undefined reference is null, or a record with its text
        if (m_reader.next_type() == eElement_Record) {
            walk_record(name, [this] { walk_string(); });
        } else {
            walk_scalar(m_reader.next_type() == eElement_Null ? eElement_Null : eElement_String,
                        name);
        }
        break;
    case ValueTypeId::eId_SimpleDateTime:
        walk_scalar(eElement_AbsoluteTime, name);
        break;
    default:
        walk_scalar(bareKinds[tag], name);
        break;
    }
}

void StreamWalk::walk_scalar(int kind, AttributeName const & name) {
    note(name, [&] {
        switch (kind) {
        case eElement_Null:
            m_reader.read_null();
            break;
        case eElement_Boolean:
            m_reader.read_bool();
            break;
        case eElement_Integer:
            m_reader.read_integer();
            break;
        case eElement_Unsigned:
            m_reader.read_uint();
            break;
        case eElement_Double:
            m_reader.read_double();
            break;
        case eElement_AbsoluteTime:
            m_reader.read_absolute_time();
            break;
        case eElement_RelativeTime:
            m_reader.read_relative_time();
            break;
        case eElement_Uuid:
            m_reader.read_uuid();
            break;
        case eElement_Binary:
            m_reader.read_binary();
            break;
        default: {
            std::string text;
            m_reader.read_string(text);
            break;
        }
        }
    });
}

void StreamWalk::walk_map(AttributeName const & name) {
    walk_list(name, [this] { walk_value(walk_name()); });
}

/// A coded name is several elements. They are read twice: one by one to record them, then by the
/// decoder.
AttributeName StreamWalk::walk_name() {
    std::size_t const index = m_elements.size();
    AttributeName name;
    if (m_reader.next_type() != eElement_Unsigned && m_reader.next_type() != eElement_Uuid) {
        note({}, [&] { name.read(m_reader); });
    } else {
        MemoryReader const start = m_reader;
        if (m_reader.next_type() == eElement_Uuid) {
            walk_scalar(eElement_Uuid, {});
            walk_scalar(eElement_Unsigned, {}); // base
            walk_scalar(eElement_Unsigned, {}); // size
        }
        walk_scalar(eElement_Unsigned, {}); // token
        m_reader = start;
        name.read(m_reader, m_decoder);
    }
    for (std::size_t i = index; i != m_elements.size(); ++i) {
        m_elements[i].name = name;
    }
    return name;
}

void StreamWalk::walk_serialized(AttributeName const & name) {
    walk_record(name, [this] {
        walk_record({}, [this] { walk_string(); });
        walk_scalar(eElement_Binary, {});
    });
}

void StreamWalk::walk_secured(AttributeName const & name) {
    walk_record(name, [this] {
        walk_string(); // annotation
        walk_string(); // cipher
        walk_record({}, [this] {
            walk_string();
            walk_scalar(eElement_Uuid, {});
        });
        walk_scalar(eElement_Binary, {});
    });
}

void StreamWalk::walk_error(AttributeName const & name) {
    if (m_reader.next_type() == eElement_Null) {
        walk_scalar(eElement_Null, name);
        return;
    }
    auto const walkParam = [this] {
        walk_string();
        walk_string();
    };
    auto const walkLink = [&] {
        walk_string(); // code
        walk_string(); // message
        walk_list({}, walkParam);
        walk_string(); // function
        walk_string(); // file
        walk_scalar(eElement_Unsigned, {});
    };
    walk_record(name, [&] { walk_list({}, walkLink); });
}

} // namespace vxattr
