#include "vxattribute/name_list_file.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

#include <cstdio>
#include <fstream>

namespace vxattribute {

namespace {

vxcore::ErrorCode const & badList = error::vxattribute_name_package_serialization;
vxcore::ErrorCode const & duplicateName = error::vxattribute_name_package_duplicateName;

[[noreturn]] void fail(vxcore::ErrorCode const & code, std::string const & path, char const * what,
                       unsigned int line = 0) {
    vxcore::ErrorComposer composer(line == 0 ? "{@file}: {@what}" : "{@file}:{@line}: {@what}");
    if (line != 0) {
        composer.param("line", vxcore::to_string(line));
    }
    composer.param("file", path)
        .param("what", what)
        .throw_error(code, VXCORE_LOCATION("vxattribute::name_list_file"));
}

/// What keeps a text from being a line; null when nothing does.
char const * fault_of(std::string const & name) noexcept {
    if (name.empty()) {
        return "an empty line is no name";
    }
    return name.back() == '\r' ? "a carriage return at the end of the line" : nullptr;
}

} // namespace

AttributeNamePackage::Ptr read_name_list_file(std::string const & path) {
    std::ifstream file(path, std::ios::binary);
    std::set<AttributeName> names;
    std::string line;
    for (unsigned int number = 1; std::getline(file, line); ++number) {
        if (file.eof()) {
            fail(badList, path, "the file ends in the middle of this line", number);
        }
        if (char const * const fault = fault_of(line)) {
            fail(badList, path, fault, number);
        }
        if (!names.insert(line).second) {
            fail(duplicateName, path, "this name stands in the list already", number);
        }
    }
    if (!file.is_open() || file.bad()) {
        fail(badList, path, "the file cannot be read");
    }
    return AttributeNamePackage::create(names);
}

void write_name_list_file(std::string const & path, AttributeNamePackage const & package) {
    std::string text;
    for (AttributeName const & name : package) {
        if (fault_of(name.value()) != nullptr || name.value().find('\n') != std::string::npos) {
            fail(badList, path, "a name of the package cannot stand on a line");
        }
        text.append(name.value()).push_back('\n');
    }
    std::string const newPath = path + ".new";
    std::ofstream file(newPath, std::ios::binary);
    file << text;
    file.close();
    if (!file || std::rename(newPath.c_str(), path.c_str()) != 0) {
        std::remove(newPath.c_str());
        fail(badList, path, "the file cannot be written");
    }
}

} // namespace vxattribute
