#pragma once

#include "vxattribute/attribute_name.h"
#include "vxattribute/attribute_name_decoder.h"
#include "vxserialize/memory_reader.h"

#include <vector>

namespace vxattr {

/// One element of a binary stream.
struct StreamElement {
    static constexpr unsigned int unknown = 0xFFFFFFFF;

    unsigned int offset = 0;         // bytes
    unsigned int length = unknown;   // bytes, including all nested elements
    unsigned short depth = 0;        // open lists and records
    unsigned char kind = 0;          // vxserialize::EElementKind
    short tag = -1;                  // the type number, if the element is one
    vxattribute::AttributeName name; // of the attribute that the element belongs to
};

/// Walks through a binary stream of values as their reader does, and records every element.
///
/// Cost. 24 bytes for each element of the stream.
class StreamWalk {
  public:
    StreamWalk(vxserialize::MemoryReader reader,
               vxattribute::AttributeNamePackageSet::Ptr packages);

    /// Walks through all values up to the end of the stream. A value may be a map without its type
    /// number. After a failure, elements() returns the elements before it.
    void walk();

    std::vector<StreamElement> const & elements() const noexcept { return m_elements; }

  private:
    using AttributeName = vxattribute::AttributeName;

    unsigned int offset() const noexcept { return m_size - m_reader.bytes_left(); }

    template <typename Read>
    void note(AttributeName const & name, Read && read);
    template <typename Content>
    void walk_list(AttributeName const & name, Content && content);
    template <typename Content>
    void walk_record(AttributeName const & name, Content && content);
    void walk_value(AttributeName const & name);
    void walk_tagged(AttributeName const & name);
    void walk_element(unsigned int tag, AttributeName const & name);
    void walk_scalar(int kind, AttributeName const & name);

    void walk_string() { walk_scalar(vxserialize::eElement_String, {}); }

    void walk_map(AttributeName const & name);
    AttributeName walk_name();
    void walk_serialized(AttributeName const & name);
    void walk_secured(AttributeName const & name);
    void walk_error(AttributeName const & name);

    vxserialize::MemoryReader m_reader;
    vxattribute::AttributeNameDecoder m_decoder;
    unsigned int const m_size;
    unsigned short m_depth = 0;
    std::vector<StreamElement> m_elements;
};

} // namespace vxattr
