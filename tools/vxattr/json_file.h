#pragma once

#include "input.h"
#include "output.h"

#include "vxattribute/attribute_value.h"

#include <string>

namespace vxattr {

/// The one value of a JSON document.
///
/// What reading it loses is told on standard error.
///
/// @raises Failure: `isStrict` is set and something would be lost.
vxattribute::AttributeValue read_json(Input & input, bool isStrict);

struct JsonLayout {
    unsigned int indent = 0;
    bool isSorted = false;
    std::string wrap; // name for a scalar; empty: scalars are written bare
};

/// Writes the value and a line feed.
void write_json(Output & output, vxattribute::AttributeValue const & value,
                JsonLayout const & layout);

} // namespace vxattr
