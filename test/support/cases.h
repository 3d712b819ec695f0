#pragma once

#include <fstream>
#include <string>

/// Reads cases from the lines of a data file.
namespace vxtest {

/// Replaces each "%XX" by the byte with that hexadecimal number.
inline std::string decode(std::string text) {
    for (std::size_t at = 0; (at = text.find('%', at)) != text.npos; ++at) {
        text.replace(at, 3, 1, static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16)));
    }
    return text;
}

/// Calls `check(text, expected, options)` for each case of a file below test/. Returns the number
/// of cases.
///
/// A case is two lines. A line that starts with "=" holds the options of the cases after it. Empty
/// lines and lines that start with "# " are skipped.
template <typename Check>
int for_each_case(std::string const & name, Check check) {
    std::ifstream file(VX_SOURCE_DIR "/test/" + name);
    auto const next = [&file](std::string & line) {
        while (std::getline(file, line) && (line.empty() || line.starts_with("# "))) {
        }
        return file.good();
    };
    int count = 0;
    std::string options;
    for (std::string text, expected; next(text);) {
        if (text[0] == '=') {
            options = text;
        } else if (next(expected)) {
            check(text, expected, options);
            ++count;
        }
    }
    return count;
}

} // namespace vxtest
