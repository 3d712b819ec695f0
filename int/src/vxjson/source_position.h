#pragma once

#include "vxuri/uri_reference.h"

namespace vxjson {

/// A place in the text that a tokenizer reads. All three numbers count bytes as far as they count
/// anything in a line; a number beyond 32 bits is given as the largest of them.
struct SourcePosition {
    vxuri::UriReference uri;    ///< where the text comes from; may be empty
    unsigned int line = 1;      ///< from 1; only a line feed ends a line
    unsigned int linePos = 1;   ///< from 1, in bytes
    unsigned int sourcePos = 0; ///< from 0, in bytes
};

} // namespace vxjson
