#pragma once

#include "vxattribute/attribute_value.h"
#include "vxserialize/fwd.h"

namespace vxattribute {

/// Writes a value so that the reader can tell its type.
///
/// One boolean, integer, string, double, UUID, time or blob goes as it is; everything else has its
/// type number in front, and no or several elements go as a list. A value of several elements that
/// has one left is written as a scalar.
///
/// With an encoder, the names in maps go through it at every depth. Nothing in the stream says
/// whether that was so: who reads must know.
VXATTRIBUTE_API void write_attribute_value(vxserialize::Writer & writer,
                                           AttributeValue const & value);
VXATTRIBUTE_API void write_attribute_value(vxserialize::Writer & writer,
                                           IAttributeNameEncoder & encoder,
                                           AttributeValue const & value);

/// Reads what `write_attribute_value` wrote; when anything raises, `value` is as it was.
///
/// Counts in the stream are hints: memory grows with the data.
///
/// @raises error.vxattribute.value.type.unknown: a type number above 14, or one of a type whose
///         elements this library does not have. Failures of reader and decoder pass through.
VXATTRIBUTE_API void read_attribute_value(vxserialize::Reader & reader, AttributeValue & value);
VXATTRIBUTE_API void read_attribute_value(vxserialize::Reader & reader,
                                          IAttributeNameDecoder & decoder, AttributeValue & value);

} // namespace vxattribute
