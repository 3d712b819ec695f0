#pragma once

#include "vxattribute/attribute_name_package_set.h"

#include <string>
#include <vector>

namespace vxattr {

/// The package in a file: a list of names, one on a line, or the stream of a package.
vxattribute::AttributeNamePackage::Ptr read_package(std::string const & path);

/// The set of the packages in those files; null when there are none.
vxattribute::AttributeNamePackageSet::Ptr read_packages(std::vector<std::string> const & paths);

} // namespace vxattr
