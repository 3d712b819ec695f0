#pragma once

#include "vxattribute/json_text.h"

#include <cstddef>

/// JSON in source code as values and maps, for tests and defaults.
///
///     using namespace vxattribute::literals;
///     AttributeMap const server = R"({"host": "localhost", "ports": [80, 443]})"_vxmap;
///     AttributeValue const ports = "[80, 443]"_vxjson;
///
/// The text is read each time the literal is evaluated. json_marshaler.h says what becomes of it.
namespace vxattribute::literals {

/// @raises As `value_from_json`.
inline AttributeValue operator""_vxjson(char const * text, std::size_t size) {
    return value_from_json(std::string_view(text, size));
}

/// @raises As `map_from_json`.
inline AttributeMap operator""_vxmap(char const * text, std::size_t size) {
    return map_from_json(std::string_view(text, size));
}

} // namespace vxattribute::literals
