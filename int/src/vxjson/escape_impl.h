#pragma once

// Included by the readers of JSON, here and in vxattribute; not for direct use.

#include "vxjson/export.h"

namespace vxjson::impl {

/// An escape in a text, decoded or broken.
struct Escape {
    char const * end; ///< of the escape, or the place of the fault
    int codePoint;
    char const * expected = nullptr; ///< what is missing at `end` of a broken escape
};

/// Reads the escape at `at`, a backslash. Surrogate pairs are joined; one half alone is a fault.
///
/// @param singleQuotes  Accepts \' too.
VXJSON_API Escape read_escape(char const * at, char const * limit, bool singleQuotes) noexcept;

} // namespace vxjson::impl
