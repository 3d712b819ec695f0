#pragma once

#include "vxattribute/attribute_name_package_set.h"

namespace vxfuzz {

/// The packages that the target of coded streams knows and that its seeds are written with. No
/// fuzzer comes upon the id of a package by chance.
inline std::vector<vxattribute::AttributeNamePackage::Ptr> const & known_packages() {
    using Composer = vxattribute::AttributeNamePackage::Composer;
    static std::vector<vxattribute::AttributeNamePackage::Ptr> const packages = {
        Composer("alpha").add("beta").compose(),
        Composer("one").add("two").add("three").add("").compose(),
    };
    return packages;
}

} // namespace vxfuzz
