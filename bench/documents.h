#pragma once

#include "plain_map.h"

#include "vxattribute/attribute_name_package_set.h"

#include <string>
#include <vector>

namespace vxbench {

/// A map to measure with, and the same data in plain types.
struct Document {
    std::string name;
    vxattribute::AttributeMap map;
    PlainMap plain;
    vxattribute::AttributeNamePackageSet::Ptr packages; // the names that two programs may share
    unsigned int attributes;                            // in all its maps
};

/// Returns the settings of a server: texts and numbers in nested maps of about ten entries each.
vxattribute::AttributeMap settings_document();

/// Returns one list of 500 similar records.
vxattribute::AttributeMap record_document();

/// Returns 200 scalars of all types that have a plain counterpart.
vxattribute::AttributeMap mixed_document();

/// Returns the three documents above and the package database of this machine, if it has one
/// ("inventory"). Builds them once.
std::vector<Document> const & documents();

/// Returns `count` short names, which sort differently by text and by address.
std::vector<std::string> attribute_names(unsigned int count);

} // namespace vxbench
