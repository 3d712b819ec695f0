#include "vxattribute/name_list_file.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

#include <cstdio>
#include <fstream>
#include <memory>

namespace vxattribute {

namespace {

vxcore::ErrorCode const & badList = error::vxattribute_name_package_serialization;
vxcore::ErrorCode const & duplicateName = error::vxattribute_name_package_duplicateName;

[[noreturn]] void fail(vxcore::ErrorCode const & code, std::string const & path, char const * what,
                       vxcore::SourceLocation location, unsigned int line = 0) {
    vxcore::ErrorComposer composer(line == 0 ? "{@file}: {@what}" : "{@file}:{@line}: {@what}");
    if (line != 0) {
        composer.param("line", vxcore::to_string(line));
    }
    composer.param("file", path).param("what", what).throw_error(code, std::move(location));
}

/// Writes a file that must not be there yet.
bool write_new_file(std::string const & path, std::string const & text) {
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path.c_str(), "wbx"),
                                                          std::fclose);
    if (!file) {
        return false;
    }
    bool const isWritten = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    if (std::fclose(file.release()) != 0 || !isWritten) {
        std::remove(path.c_str());
        return false;
    }
    return true;
}

/// What keeps a text from being a line; null when nothing does.
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
        if (number == 1 && line.starts_with("\xEF\xBB\xBF")) {
            fail(badList, file, "a byte order mark, which would be part of the name",
                 VXCORE_LOCATION(function), number);
        }
        if (char const * const fault = fault_of(line)) {
            fail(badList, file, fault, VXCORE_LOCATION(function), number);
        }
        if (!names.insert(line).second) {
            fail(duplicateName, file, "this name stands in the list already",
                 VXCORE_LOCATION(function), number);
        }
        text.remove_prefix(end + 1);
    }
    return AttributeNamePackage::create(names);
}

std::string name_list_to_text(AttributeNamePackage const & package, std::string const & file) {
    std::string text;
    for (AttributeName const & name : package) {
        if (fault_of(name.value()) != nullptr || name.value().find('\n') != std::string::npos) {
            fail(badList, file, "a name of the package cannot stand on a line",
                 VXCORE_LOCATION("vxattribute::name_list_to_text()"));
        }
        text.append(name.value()).push_back('\n');
    }
    return text;
}

AttributeNamePackage::Ptr read_name_list_file(std::string const & path) {
    std::ifstream file(path, std::ios::binary);
    std::string text;
    char buffer[4096];
    while (file.read(buffer, sizeof(buffer)), file.gcount() > 0) {
        text.append(buffer, static_cast<std::size_t>(file.gcount()));
    }
    if (!file.is_open() || file.bad()) {
        fail(badList, path, "the file cannot be read",
             VXCORE_LOCATION("vxattribute::read_name_list_file()"));
    }
    return name_list_from_text(text, path);
}

void write_name_list_file(std::string const & path, AttributeNamePackage const & package) {
    std::string const text = name_list_to_text(package, path);
    std::string const newPath = path + ".new";
    bool const isNew = write_new_file(newPath, text);
    if (!isNew || std::rename(newPath.c_str(), path.c_str()) != 0) {
        if (isNew) {
            std::remove(newPath.c_str());
        }
        fail(badList, path, "the file cannot be written",
             VXCORE_LOCATION("vxattribute::write_name_list_file()"));
    }
}

} // namespace vxattribute
