#pragma once

#include "vxuri/uri_reference.h"

namespace vxjson {

/// A place in the text that a tokenizer reads: see `ITokenizer::position`. The default is the start
/// of a text of unknown origin.
///
/// A number that needs more than 32 bits is stored as the largest 32-bit number. A copy costs one
/// atomic count, for the origin.
struct SourcePosition {
    vxuri::UriReference uri;    ///< the origin of the text; may be empty
    unsigned int line = 1;      ///< from 1; lines end with a line feed
    unsigned int linePos = 1;   ///< from 1, in bytes
    unsigned int sourcePos = 0; ///< from 0, in bytes
};

} // namespace vxjson
