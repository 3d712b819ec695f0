#pragma once

#include "vxattribute/attribute_name_package_set.h"

namespace vxfuzz {

/// Returns the packages that the targets know and the seeds are written with. No fuzzer finds the
/// id of a package by chance.
inline std::vector<vxattribute::AttributeNamePackage::Ptr> const & known_packages() {
    using Composer = vxattribute::AttributeNamePackage::Composer;
    static std::vector<vxattribute::AttributeNamePackage::Ptr> const packages = {
        Composer("alpha").add("beta").compose(),
        Composer("one").add("two").add("three").add("").compose(),
    };
    return packages;
}

} // namespace vxfuzz
