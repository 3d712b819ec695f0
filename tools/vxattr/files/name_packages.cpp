#include "vxattr/files/name_packages.h"

#include "vxattr/files/input.h"
#include "vxfile/name_list_file.h"

namespace vxattr {

using namespace vxattribute;

namespace {

constexpr unsigned long long maxPackageSize = 1 << 28; // bytes

} // namespace

AttributeNamePackage::Ptr read_package(std::string const & path) {
    Input input(path, maxPackageSize);
    return vxfile::read_name_list(input);
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
