#include "vxattribute/name_list.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

namespace vxattribute {

namespace {

vxcore::ErrorCode const & badList = error::vxattribute_name_package_serialization;
vxcore::ErrorCode const & duplicateName = error::vxattribute_name_package_duplicateName;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

[[noreturn]] void fail(vxcore::ErrorCode const & code, std::string const & path, char const * what,
                       vxcore::SourceLocation location, unsigned int line = 0) {
    vxcore::ErrorComposer composer(line == 0 ? "{@file}: {@what}" : "{@file}:{@line}: {@what}");
    if (line != 0) {
        composer.param("line", vxcore::to_string(line));
    }
    composer.param("file", path).param("what", what).throw_error(code, std::move(location));
}

/// Why a text cannot be a line of the list; null when it can.
char const * fault_of(std::string_view name) noexcept {
    if (name.empty()) {
        return "an empty line is no name";
    }
    return name.back() == '\r' ? "a carriage return at the end of the line" : nullptr;
}

} // namespace

AttributeNamePackage::Ptr name_list_from_text(std::string_view text, std::string const & file) {
    constexpr char const * function = "vxattribute::name_list_from_text()";
    std::set<AttributeName> names;
    unsigned int number = 1;
    for (; !text.empty(); ++number) {
        std::size_t const end = text.find('\n');
        std::string_view const line = text.substr(0, end);
        if (end == text.npos) {
            fail(badList, file, "the file ends in the middle of this line",
                 VXCORE_LOCATION(function), number);
        }
        if (number == 1 && line.starts_with(byteOrderMark)) {
            fail(badList, file, "a byte order mark, which would be part of the name",
                 VXCORE_LOCATION(function), number);
        }
        if (char const * const fault = fault_of(line)) {
            fail(badList, file, fault, VXCORE_LOCATION(function), number);
        }
        if (!names.insert(line).second) {
            fail(duplicateName, file, "this name is in the list already", VXCORE_LOCATION(function),
                 number);
        }
        text.remove_prefix(end + 1);
    }
    return AttributeNamePackage::create(names);
}

std::string name_list_to_text(AttributeNamePackage const & package, std::string const & file) {
    std::string text;
    for (AttributeName const & name : package) {
        // Every name must read back as the same name: check what `name_list_from_text` refuses.
        bool const isMarked = text.empty() && name.value().starts_with(byteOrderMark);
        if (isMarked || fault_of(name.value()) != nullptr ||
            name.value().find('\n') != std::string::npos) {
            fail(badList, file, "a name of the package cannot be written on one line",
                 VXCORE_LOCATION("vxattribute::name_list_to_text()"));
        }
        text.append(name.value()).push_back('\n');
    }
    return text;
}

} // namespace vxattribute
