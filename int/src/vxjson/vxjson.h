#pragma once

/// Includes all public headers of vxjson.

#include "vxjson/document.h"
#include "vxjson/fwd.h"
#include "vxjson/itokenizer.h"
#include "vxjson/reader.h"
#include "vxjson/reserved_words.h"
#include "vxjson/source_position.h"
#include "vxjson/string_slice.h"
#include "vxjson/string_target.h"
#include "vxjson/text_writer.h"
#include "vxjson/token.h"
#include "vxjson/tokenizer.h"
#include "vxjson/writer.h"
