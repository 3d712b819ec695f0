#pragma once

#include "vxattribute/json/boxes_internal.h"
#include "vxattribute/json_text.h"
#include "vxattribute/map/elements_cursor_internal.h"
#include "vxjson/text_output_impl.h"

#include <optional>
#include <span>
#include <vector>

namespace vxattribute::impl {

/// Writes one value to JSON. Open maps are in a list and not on the stack, so only the writer
/// limits the depth.
///
/// @tparam Writer  `vxjson::Writer &`, or `vxjson::impl::TextOutput` for a TextWriter: the same
///                 calls, which are then inline.
template <typename Writer>
class JsonRenderVisitor {
  public:
    /// Of the options, those of the layout do not count here.
    JsonRenderVisitor(Writer writer, JsonTextOptions const & options);

    void write(AttributeValue const & value);

  private:
    enum EOpen {
        eOpen_Object,  // one object
        eOpen_Objects, // an array of objects, of which one is open
        eOpen_Maps,    // an array of maps that may be boxes
        eOpen_Boxes    // an array of what is in boxes
    };

    /// A value of maps that is being written: the open object, and the maps after it.
    struct OpenMaps {
        EOpen kind;
        ElementsCursor elements;
        std::span<AttributeMap const> others;
    };

    void begin(AttributeValue const & value);
    void begin_maps(std::span<AttributeMap const> maps);
    void begin_boxed_maps(std::span<AttributeMap const> maps);
    void begin_next_map();
    void next_element();

    template <typename T, typename Write>
    void write_elements(std::span<T const> elements, Write write);

    bool write_numbers(std::span<double const> elements);
    void write_string(std::string const & text);
    void write_serialized(AttributeValue const & value);
    bool is_plain_integer(long long number) const noexcept;
    bool is_plain(AttributeMap const & map) const noexcept;

    Writer m_writer;
    bool const m_sorted;
    bool const m_plainDoubles;
    std::optional<BoxNames> const m_boxes; // if boxes are taken off
    AttributeName const m_serializedName;
    std::vector<OpenMaps> m_open;
};

/// Writes a value to a TextWriter, or to any other writer more slowly.
void write_json_value(vxjson::Writer & writer, AttributeValue const & value,
                      JsonTextOptions const & options);

} // namespace vxattribute::impl
