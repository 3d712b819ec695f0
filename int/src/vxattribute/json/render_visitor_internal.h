#pragma once

#include "vxattribute/map/elements_cursor_internal.h"
#include "vxjson/writer.h"

#include <vector>

namespace vxattribute::impl {

/// Writes one value to JSON. Open maps are in a list and not on the stack, so only the writer
/// limits the depth.
class JsonRenderVisitor {
  public:
    class TextWriterTarget;

    /// @param sorted  Sorts the elements of each map by the bytes of their names.
    JsonRenderVisitor(vxjson::Writer & writer, bool sorted);

    void write(AttributeValue const & value);

  private:
    /// A value of maps that is being written: the open object, and the maps after it.
    struct OpenMaps {
        ElementsCursor elements;
        AttributeMap const * next;
        AttributeMap const * end;
        bool isArray;
    };

    void begin(AttributeValue const & value);
    void begin_maps(AttributeValue const & value);
    void next_element();

    template <typename T, typename Write>
    void write_elements(AttributeValue const & value, Write write);

    void write_string(std::string const & text);
    void write_serialized(AttributeValue const & value);
    bool is_plain(AttributeMap const & map) const noexcept;

    vxjson::Writer & m_writer;
    bool const m_sorted;
    AttributeName const m_serializedName;
    AttributeName const m_emptyName;
    std::vector<OpenMaps> m_open;
};

} // namespace vxattribute::impl
