#pragma once

#include "vxattribute/json_text.h"
#include "vxattribute/map/elements_cursor_internal.h"
#include "vxjson/text_output_impl.h"

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
    /// Of the options, only those count that are not of the layout: `sorted_names` and `doubles`.
    JsonRenderVisitor(Writer writer, JsonTextOptions const & options);

    void write(AttributeValue const & value);

  private:
    /// A value of maps that is being written: the open object, and the maps after it.
    struct OpenMaps {
        ElementsCursor elements;
        std::span<AttributeMap const> others;
        bool isArray;
    };

    void begin(AttributeValue const & value);
    void begin_maps(std::span<AttributeMap const> maps);
    void next_element();

    template <typename T, typename Write>
    void write_elements(std::span<T const> elements, Write write);

    bool write_numbers(std::span<double const> elements);
    void write_string(std::string const & text);
    void write_serialized(AttributeValue const & value);
    bool is_plain(AttributeMap const & map) const noexcept;

    Writer m_writer;
    bool const m_sorted;
    bool const m_plainDoubles;
    AttributeName const m_serializedName;
    std::vector<OpenMaps> m_open;
};

/// Writes a value to a TextWriter, or to any other writer more slowly.
void write_json_value(vxjson::Writer & writer, AttributeValue const & value,
                      JsonTextOptions const & options);

} // namespace vxattribute::impl
