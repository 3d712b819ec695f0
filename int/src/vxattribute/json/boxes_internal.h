#pragma once

#include "vxattribute/attribute_map.h"
#include "vxjson/reader.h"

/// Arrays that no value can hold are read as maps that each have one reserved name, the boxes:
///
/// | JSON | value |
/// | --- | --- |
/// | an array of one element x | one map: "[]" to x |
/// | an array of arrays, nulls or different types | a map for each element: "[]" to an array, "="
/// to anything else | | an object that looks like a box | one map: "=" to the object |
namespace vxattribute::impl {

/// The names of boxes, as texts.
inline constexpr char const * boxedArrayName = "[]";
inline constexpr char const * boxedElementName = "=";

/// The names of boxes. Made for each document.
struct BoxNames {
    AttributeName const array{boxedArrayName};
    AttributeName const element{boxedElementName};

    /// True when the map has one element, with one of the two names.
    bool is_box(AttributeMap const & map) const noexcept {
        return map.size() == 1 && (map.begin()->first == array || map.begin()->first == element);
    }

    /// True when the map is the box of an array of one element, outside a list.
    bool is_boxed_array(AttributeMap const & map) const noexcept {
        return map.size() == 1 && map.begin()->first == array;
    }

    /// The object in a box of an object, or a null pointer.
    AttributeMap const * boxed_object(AttributeMap const & map) const noexcept;
};

/// Reads the next document of the reader, any JSON.
///
/// @cost   Each element of an array is collected as a value before the array's form is known.
/// @raises What the reader raises.
AttributeValue read_boxed(vxjson::Reader & reader);

} // namespace vxattribute::impl
