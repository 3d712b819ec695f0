#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/to_text.h"

#include <string_view>
#include <version>

#if defined(__cpp_lib_format)
#include <format>
#endif
#if __has_include(<fmt/format.h>)
#include <fmt/format.h>
#endif

/// Values, maps, attributes and names as arguments of formatting: of std::format where the standard
/// library has it, and of fmt where <fmt/format.h> can be included.
///
///     fmt::print("listening with {}\n", config);
///     std::format("{:>20}", config["port"]);
///
/// A name is its characters, and everything else what `to_text` returns; the width, fill and
/// precision of texts apply to it. No other header of the library includes this one.
///
/// @raises As `to_text`, and as formatting does.
namespace vxattribute::impl {

inline std::string_view text_for_format(AttributeName const & name) {
    return name.value();
}

template <typename T>
std::string text_for_format(T const & content) {
    return to_text(content);
}

/// Formats as `Base` formats a std::string_view.
template <typename Base>
struct TextFormatter : Base {
    template <typename T, typename Context>
    auto format(T const & content, Context & context) const {
        return Base::format(text_for_format(content), context);
    }
};

} // namespace vxattribute::impl

// Each class by itself: a template for all could clash with that for ranges, which maps are too.

#if defined(__cpp_lib_format)

template <>
struct std::formatter<vxattribute::AttributeValue>
    : vxattribute::impl::TextFormatter<std::formatter<std::string_view>> {};

template <>
struct std::formatter<vxattribute::AttributeMap>
    : vxattribute::impl::TextFormatter<std::formatter<std::string_view>> {};

template <>
struct std::formatter<vxattribute::MutableAttributeMap>
    : vxattribute::impl::TextFormatter<std::formatter<std::string_view>> {};

template <>
struct std::formatter<vxattribute::Attribute>
    : vxattribute::impl::TextFormatter<std::formatter<std::string_view>> {};

template <>
struct std::formatter<vxattribute::AttributeName>
    : vxattribute::impl::TextFormatter<std::formatter<std::string_view>> {};

#endif
#if __has_include(<fmt/format.h>)

template <>
struct fmt::formatter<vxattribute::AttributeValue>
    : vxattribute::impl::TextFormatter<fmt::formatter<std::string_view>> {};

template <>
struct fmt::formatter<vxattribute::AttributeMap>
    : vxattribute::impl::TextFormatter<fmt::formatter<std::string_view>> {};

template <>
struct fmt::formatter<vxattribute::MutableAttributeMap>
    : vxattribute::impl::TextFormatter<fmt::formatter<std::string_view>> {};

template <>
struct fmt::formatter<vxattribute::Attribute>
    : vxattribute::impl::TextFormatter<fmt::formatter<std::string_view>> {};

template <>
struct fmt::formatter<vxattribute::AttributeName>
    : vxattribute::impl::TextFormatter<fmt::formatter<std::string_view>> {};

#endif
