#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/trace_formatter.h"

#include <ostream>
#include <string>

namespace vxattr {

/// As `AttributeValue::write_trace`, with the names of every map in the order of their bytes.
void write_sorted_trace(std::ostream & stream, vxattribute::AttributeValue const & value,
                        vxattribute::TraceFormatter const & formatter, unsigned int level);

/// The value on one line.
///
/// @param isWhole  Long lists, texts and binary values are shown to their end.
std::string one_line_trace(vxattribute::AttributeValue const & value, bool isWhole);

} // namespace vxattr
