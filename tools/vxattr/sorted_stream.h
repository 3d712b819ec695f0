#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_coder.h"

namespace vxattr {

/// As `vxattribute::write_attribute_value`, with the names of every map in the order of their
/// bytes: maps themselves are ordered by address, so that their streams differ from run to run.
void write_sorted(vxserialize::Writer & writer, vxattribute::IAttributeNameEncoder & encoder,
                  vxattribute::AttributeValue const & value);

} // namespace vxattr
