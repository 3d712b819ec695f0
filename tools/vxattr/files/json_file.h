#pragma once

#include "vxattr/files/input.h"
#include "vxattr/files/output.h"
#include "vxattribute/attribute_value.h"

#include <string>

namespace vxattr {

/// Reads the one value of a JSON document. Reports on standard error what is lost.
///
/// @raises Failure: `isStrict` is set and something would be lost.
vxattribute::AttributeValue read_json(Input & input, bool isStrict);

struct JsonLayout {
    unsigned int indent = 0; // blanks per level; 0: one line
    bool isSorted = false;   // names in the order of their bytes
    std::string wrap;        // see WriteOptions
};

/// Writes the value and a line feed.
void write_json(Output & output, vxattribute::AttributeValue const & value,
                JsonLayout const & layout);

} // namespace vxattr
