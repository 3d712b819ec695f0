#include "vxattr/files/name_packages.h"

#include "vxattr/failure.h"
#include "vxattr/files/input.h"
#include "vxattribute/name_list.h"
#include "vxserialize/memory_reader.h"

namespace vxattr {

using namespace vxattribute;

namespace {

constexpr unsigned long long maxPackageSize = 1 << 28;

/// A record. The stream of a package starts with it; a list of names hardly ever does.
constexpr char recordByte = '\xF7';

} // namespace

AttributeNamePackage::Ptr read_package(std::string const & path) {
    Input input(path, maxPackageSize);
    if (!input.head().starts_with(recordByte)) {
        auto const list = input.read_all();
        std::string text(list->size(), '\0');
        list->read_at(0, text.data(), list->size());
        return name_list_from_text(text, input.place());
    }
    return with_place(input.place(), [&input] {
        vxserialize::MemoryReader reader(input.read_all());
        AttributeNamePackage::Ptr package = AttributeNamePackage::create(reader);
        if (reader.bytes_left() != 0) {
            throw std::runtime_error("more bytes follow the package");
        }
        return package;
    });
}

AttributeNamePackageSet::Ptr const & NamePackages::set() const {
    if (!m_set && !files.empty()) {
        AttributeNamePackageSet::Composer packages;
        for (std::string const & file : files) {
            packages.add(read_package(file));
        }
        m_set = packages.compose();
    }
    return m_set;
}

} // namespace vxattr
