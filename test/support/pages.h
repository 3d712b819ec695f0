#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

/// Converts bytes to and from hexadecimal digits and reads examples from the pages in docs/formats.
namespace vxtest {

/// Returns the bytes of hexadecimal digits. Other characters are skipped, and so is a comment, from
/// a semicolon to the end of the line.
inline std::string from_hex(std::string_view hex) {
    std::string bytes;
    std::string digits;
    bool comment = false;
    for (char const c : hex) {
        comment = c == ';' || (comment && c != '\n');
        if (!comment && std::isxdigit(static_cast<unsigned char>(c)) != 0) {
            digits += c;
        }
        if (digits.size() == 2) {
            bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
            digits.clear();
        }
    }
    return bytes;
}

inline std::string to_hex(std::string_view bytes) {
    std::string hex;
    for (char const c : bytes) {
        hex += "0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4];
        hex += "0123456789ABCDEF"[c & 15];
    }
    return hex;
}

/// Returns the block of a page in docs/formats that starts with ```<mark>.
inline std::string page_block(std::string const & page, std::string const & mark) {
    std::ifstream file(VX_SOURCE_DIR "/docs/formats/" + page);
    std::stringstream content;
    content << file.rdbuf();
    std::string const text = content.str();
    std::string const fence = "\n```" + mark + "\n";
    std::size_t const start = text.find(fence);
    EXPECT_NE(start, text.npos) << page;
    std::size_t const first = start + fence.size();
    return start == text.npos ? "" : text.substr(first, text.find("\n```", first) - first);
}

} // namespace vxtest
