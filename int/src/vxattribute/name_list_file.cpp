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

constexpr char const * inRead = "vxattribute::read_name_list_file()";
constexpr char const * inWrite = "vxattribute::write_name_list_file()";

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
            fail(badList, path, "the file ends in the middle of this line", VXCORE_LOCATION(inRead),
                 number);
        }
        if (number == 1 && line.starts_with("\xEF\xBB\xBF")) {
            fail(badList, path, "a byte order mark, which would be part of the name",
                 VXCORE_LOCATION(inRead), number);
        }
        if (char const * const fault = fault_of(line)) {
            fail(badList, path, fault, VXCORE_LOCATION(inRead), number);
        }
        if (!names.insert(line).second) {
            fail(duplicateName, path, "this name stands in the list already",
                 VXCORE_LOCATION(inRead), number);
        }
    }
    if (!file.is_open() || file.bad()) {
        fail(badList, path, "the file cannot be read", VXCORE_LOCATION(inRead));
    }
    return AttributeNamePackage::create(names);
}

void write_name_list_file(std::string const & path, AttributeNamePackage const & package) {
    std::string text;
    for (AttributeName const & name : package) {
        if (fault_of(name.value()) != nullptr || name.value().find('\n') != std::string::npos) {
            fail(badList, path, "a name of the package cannot stand on a line",
                 VXCORE_LOCATION(inWrite));
        }
        text.append(name.value()).push_back('\n');
    }
    std::string const newPath = path + ".new";
    bool const isNew = write_new_file(newPath, text);
    if (!isNew || std::rename(newPath.c_str(), path.c_str()) != 0) {
        if (isNew) {
            std::remove(newPath.c_str());
        }
        fail(badList, path, "the file cannot be written", VXCORE_LOCATION(inWrite));
    }
}

} // namespace vxattribute
