#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_package_set.h"

#include <string>
#include <string_view>

/// Values and maps to and from the text form, in one call each. The text is printable ASCII that
/// keeps every value to the last bit; docs/formats/text.md and docs/formats/values.md specify it.
///
///     std::string const text = to_text_form(map);
///     AttributeMap const copy = map_from_text_form(text);
///
/// For text that other programs read, see json_text.h; for messages, to_text.h. Packages of names
/// are as in bytes.h.
namespace vxattribute {

/// How the text is laid out.
struct TextFormOptions {
    /// If not 0, each element of a list or map is on a line of its own, indented by so many blanks
    /// per level.
    unsigned int indent = 0;

    /// Sorts names by their bytes, so that the same value gives the same text in every process.
    /// Otherwise they are in map order, which differs. Costs a sort of each map.
    bool sorted_names = false;
};

/// Writes a value or map and returns the text.
///
///     to_text_form(map, {.indent = 4, .sorted_names = true})
///
/// @raises error.vxserialize.depth: maps and lists nest deeper than
///         `vxserialize::max_open_containers`. std::bad_alloc: no memory.
VXATTRIBUTE_API std::string to_text_form(AttributeValue const & value,
                                         AttributeNamePackageSet::Ptr const & packages,
                                         TextFormOptions const & options = {});
VXATTRIBUTE_API std::string to_text_form(AttributeMapBase const & map,
                                         AttributeNamePackageSet::Ptr const & packages,
                                         TextFormOptions const & options = {});

inline std::string to_text_form(AttributeValue const & value,
                                TextFormOptions const & options = {}) {
    return to_text_form(value, nullptr, options);
}

inline std::string to_text_form(AttributeMapBase const & map,
                                TextFormOptions const & options = {}) {
    return to_text_form(map, nullptr, options);
}

/// Read all the text as one value or one map. Blanks and line ends may follow it. The rules and the
/// errors are those of `value_from_bytes` and `map_from_bytes` in bytes.h.
VXATTRIBUTE_API AttributeValue value_from_text_form(
    std::string_view text, AttributeNamePackageSet::Ptr const & packages = nullptr);
VXATTRIBUTE_API AttributeMap
map_from_text_form(std::string_view text, AttributeNamePackageSet::Ptr const & packages = nullptr);

} // namespace vxattribute
