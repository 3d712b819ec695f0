#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/trace_formatter.h"

#include <ostream>

namespace vxattr {

/// As `AttributeValue::write_trace`, with the names of every map in the order of their bytes.
void write_sorted_trace(std::ostream & stream, vxattribute::AttributeValue const & value,
                        vxattribute::TraceFormatter const & formatter, unsigned int level);

/// The value on one line.
void write_short_trace(std::ostream & stream, vxattribute::AttributeValue const & value);

} // namespace vxattr
