#pragma once

#include <string>
#include <vector>

namespace vxbench {

/// A JSON text to measure with.
struct JsonDocument {
    std::string name;
    std::string text;
    bool plain; // ours writes it as it came: there are no doubles in it
};

/// "configuration", 20 KB of indented settings; "records", 2 MB of like objects; "strings", 1 MB of
/// long texts; "integers" and "doubles", arrays of numbers; "iso_codes", names of languages from
/// Debian's package of that name, where it is installed. Made once.
std::vector<JsonDocument> const & json_documents();

} // namespace vxbench
