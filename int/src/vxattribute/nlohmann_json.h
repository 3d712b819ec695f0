#pragma once

#include "vxattribute/json_text.h"

#include <concepts>
#include <string>

/// Values and maps to and from `nlohmann::json`, or another `nlohmann::basic_json`, in the ways of
/// that library.
///
///     #include "vxattribute/nlohmann_json.h"
///     #include <nlohmann/json.hpp>
///
///     nlohmann::json const j = config;                    // from an AttributeMap
///     auto const back = j.get<vxattribute::AttributeMap>();
///     auto const ports = j.at("ports").get<vxattribute::AttributeValue>();
///
/// This header includes nothing of nlohmann, so it works with any version and place of it; the
/// order of the two does not matter. vxattribute.h does not include it.
///
/// What becomes what is as for JSON text (docs/guide/json.md), since both directions go through it.
/// So a Double becomes the object {"vxserialize":"0.5"}, which other readers of the JSON do not
/// take for a number; all that is not plain JSON does likewise, and reads back as it was. A JSON
/// scalar becomes a scalar, unlike in `value_from_json`.
///
/// @cost   That of writing and reading the text.
/// @raises As `value_to_json` and `value_from_json`; nlohmann's exceptions for texts that are not
///         UTF-8.
namespace vxattribute {

namespace impl {

/// What the functions use of a `nlohmann::basic_json`. No other class of the library is one.
template <typename Json>
concept JsonTree = requires(Json const & tree, std::string const & text) {
    typename Json::object_t;
    typename Json::json_pointer;
    { Json::parse(text) } -> std::same_as<Json>;
    { tree.dump() } -> std::convertible_to<std::string>;
    { tree.is_structured() } -> std::same_as<bool>;
};

} // namespace impl

template <impl::JsonTree Json>
void to_json(Json & tree, AttributeValue const & value) {
    tree = Json::parse(value_to_json(value));
}

template <impl::JsonTree Json>
void to_json(Json & tree, AttributeMap const & map) {
    to_json(tree, AttributeValue(map));
}

template <impl::JsonTree Json>
void to_json(Json & tree, MutableAttributeMap const & map) {
    to_json(tree, AttributeValue(map));
}

/// The target is as it was when this raises. So are those below.
template <impl::JsonTree Json>
void from_json(Json const & tree, AttributeValue & value) {
    if (tree.is_null()) {
        value.set_null();
    } else if (tree.is_structured()) {
        value = value_from_json(tree.dump());
    } else {
        value = value_from_json('[' + tree.dump() + ']'); // reads as its one element
    }
}

template <impl::JsonTree Json>
void from_json(Json const & tree, AttributeMap & map) {
    map = map_from_json(tree.dump());
}

template <impl::JsonTree Json>
void from_json(Json const & tree, MutableAttributeMap & map) {
    map = map_from_json(tree.dump());
}

} // namespace vxattribute
