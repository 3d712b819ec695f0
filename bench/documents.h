#pragma once

#include "plain_map.h"

#include "vxattribute/attribute_name_package_set.h"

#include <string>
#include <vector>

namespace vxbench {

/// A map to measure with, in both forms.
struct Document {
    std::string name;
    vxattribute::AttributeMap map;
    PlainMap plain;
    vxattribute::AttributeNamePackageSet::Ptr packages; // of the names that two programs may share
    unsigned int attributes;                            // of all maps in it
};

/// Settings of a server: maps in maps, about ten entries each, texts and numbers.
vxattribute::AttributeMap settings_document();

/// One list of 500 like records.
vxattribute::AttributeMap record_document();

/// 200 scalars of all types that have a plain counterpart.
vxattribute::AttributeMap mixed_document();

/// The three above, and the package database of this machine where there is one ("inventory"). Made
/// once.
std::vector<Document> const & documents();

/// `count` short names without a common sort order of text and address.
std::vector<std::string> attribute_names(unsigned int count);

} // namespace vxbench
