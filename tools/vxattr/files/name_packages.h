#pragma once

#include "vxattribute/attribute_name_package_set.h"

#include <string>
#include <vector>

namespace vxattr {

/// Reads a package from a file: a list of names, one on each line, or the stream of a package.
vxattribute::AttributeNamePackage::Ptr read_package(std::string const & path);

/// The packages that the command line names. Each file is read once, however often the set is used:
/// a pipe delivers its bytes only once.
class NamePackages {
  public:
    std::vector<std::string> files; ///< set before the first call of set()

    /// The set of the packages; null when there are no files.
    vxattribute::AttributeNamePackageSet::Ptr const & set() const;

  private:
    mutable vxattribute::AttributeNamePackageSet::Ptr m_set; // null: not read yet, or no files
};

} // namespace vxattr
