#pragma once

#include "vxattribute/attribute_name_package_set.h"

#include <string>
#include <vector>

namespace vxattr {

/// The package in a file: a list of names, one on a line, or the stream of a package.
vxattribute::AttributeNamePackage::Ptr read_package(std::string const & path);

/// The packages that the command line names. Each file is read once, whatever asks for them: a pipe
/// gives its bytes only once.
class NamePackages {
  public:
    std::vector<std::string> files; ///< set before the first question

    /// The set of the packages; null when there are no files.
    vxattribute::AttributeNamePackageSet::Ptr const & set() const;

  private:
    mutable vxattribute::AttributeNamePackageSet::Ptr m_set; // null: not read yet, or no files
};

} // namespace vxattr
