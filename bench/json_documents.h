#pragma once

#include <string>
#include <vector>

namespace vxbench {

/// A JSON text to measure with.
struct JsonDocument {
    std::string name;
    std::string text;
    bool plain; // without doubles, so that our writer reproduces it
};

/// Returns "configuration", 20 KB of indented settings; "records", 2 MB of similar objects;
/// "strings", 1 MB of long texts; "integers" and "doubles", arrays of numbers; and "iso_codes",
/// names of languages from the Debian package iso-codes, if it is installed. Builds them once.
std::vector<JsonDocument> const & json_documents();

} // namespace vxbench
