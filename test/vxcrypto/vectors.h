#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/// Published results, kept as data in test/vectors/crypto.
namespace vxtest {

inline unsigned char * bytes(std::string & text) {
    return reinterpret_cast<unsigned char *>(text.data());
}

inline unsigned char const * bytes(std::string_view text) {
    return reinterpret_cast<unsigned char const *>(text.data());
}

inline unsigned int size_of(std::string_view text) {
    return static_cast<unsigned int>(text.size());
}

inline std::string from_hex(std::string const & hex) {
    std::string data;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        data += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return data;
}

inline std::string to_hex(std::string_view data) {
    std::string hex;
    for (char const c : data) {
        hex += "0123456789abcdef"[static_cast<unsigned char>(c) >> 4];
        hex += "0123456789abcdef"[c & 15];
    }
    return hex;
}

/// The fields of each line of a file, as bytes. "-" is an empty field, "#" starts a comment.
inline std::vector<std::vector<std::string>> read_vectors(char const * name, std::size_t fields) {
    std::ifstream file(VX_SOURCE_DIR "/test/vectors/crypto/" + std::string(name));
    std::vector<std::vector<std::string>> vectors;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        std::istringstream words(line);
        vectors.emplace_back();
        for (std::string word; words >> word;) {
            vectors.back().push_back(word == "-" ? "" : from_hex(word));
        }
        EXPECT_EQ(vectors.back().size(), fields) << line;
    }
    EXPECT_FALSE(vectors.empty()) << name;
    return vectors;
}

} // namespace vxtest
