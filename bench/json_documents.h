#pragma once

#include <string>
#include <vector>

namespace vxbench {

/// A JSON text to measure with.
struct JsonDocument {
    std::string name;
    std::string text;

    /// Another tree with the same names is kept while this one is read, as in a program that has
    /// its names ready. Otherwise names that occur in no other document are new at each reading.
    bool names_are_known = false;
};

/// Returns the documents, which are built or read once. Made here are
///
/// - "configuration", 20 KB of indented settings with repeated names;
/// - "preferences", 300 settings with a name of their own each;
/// - "records", 2 MB of similar objects;
/// - "strings", 1 MB of long texts;
/// - "integers" and "doubles", arrays of numbers;
/// - "bytes_7", "bytes_55" and "bytes_500", which are that small.
///
/// "iso_codes", names of languages, comes from the Debian package of that name. The others come
/// from the folder that the environment variable VX_BENCH_DOCUMENTS names; scripts/bench fills it.
/// A file that is missing is left out. "preferences" and "mime_db" are there a second time with
/// known names, as "<name>_known".
std::vector<JsonDocument> const & json_documents();

/// Returns an array of `count` objects. Each has 11 attributes, two of them in a nested object.
std::string json_records(unsigned int count);

} // namespace vxbench
