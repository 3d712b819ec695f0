#pragma once

#include "vxattribute/attribute_map.h"

#include <string>

namespace vxattribute {

/// What `write_trace` writes with `defaultTraceFormatter` at level 0, as a string, for messages and
/// tests. Do not parse it. Maps are in map order, which differs from process to process: for sorted
/// names, call `write_trace` with a formatter that has `sorted_names`.
///
///     to_text(AttributeValue(8080)) // [Integer: {8080}]
///
/// Long strings, lists and dumps are cut at the limits of the formatter. Of Serialized and Secured
/// values no payload is shown, but all other values are: see redaction.h for secrets.
///
/// @raises std::bad_alloc: no memory for the text. So does the form for packages.
VXATTRIBUTE_API std::string to_text(AttributeValue const & value);
VXATTRIBUTE_API std::string to_text(AttributeMapBase const & map);
VXATTRIBUTE_API std::string to_text(Attribute const & attribute);

/// The id and the size of a package, then each name on a line after its position. Names are not
/// escaped, whatever bytes they contain.
VXATTRIBUTE_API std::string to_text(AttributeNamePackage const & package);

} // namespace vxattribute
