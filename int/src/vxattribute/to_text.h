#pragma once

#include "vxattribute/attribute_map.h"

#include <string>

namespace vxattribute {

/// What `write_trace` writes with `defaultTraceFormatter` at level 0, as a string: for messages and
/// tests. Nobody should parse it.
VXATTRIBUTE_API std::string to_text(AttributeValue const & value);
VXATTRIBUTE_API std::string to_text(AttributeMapBase const & map);
VXATTRIBUTE_API std::string to_text(Attribute const & attribute);

/// The id and the size of a package, then each name on a line behind its position. Names are shown
/// as they are, whatever bytes they hold.
VXATTRIBUTE_API std::string to_text(AttributeNamePackage const & package);

} // namespace vxattribute
