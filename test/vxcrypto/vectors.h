#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/// Published results from test/vectors/crypto, and ways to cut a message.
namespace vxtest {

inline unsigned char const * bytes(std::string_view text) {
    return reinterpret_cast<unsigned char const *>(text.data());
}

inline unsigned char * mutable_bytes(std::string & text) {
    return reinterpret_cast<unsigned char *>(text.data());
}

inline unsigned int size_of(std::string_view text) {
    return static_cast<unsigned int>(text.size());
}

/// Returns the fields of each line of a file, as bytes. "-" is an empty field; "#" starts a
/// comment.
inline std::vector<std::vector<std::string>> read_vectors(char const * name) {
    std::ifstream file(VX_SOURCE_DIR "/test/vectors/crypto/" + std::string(name));
    std::vector<std::vector<std::string>> vectors;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::vector<std::string> fields;
        for (std::string word; words >> word && word != "#";) {
            fields.emplace_back();
            for (std::size_t i = 0; i + 1 < word.size(); i += 2) {
                fields.back() += static_cast<char>(std::stoi(word.substr(i, 2), nullptr, 16));
            }
        }
        if (!fields.empty()) {
            vectors.push_back(fields);
        }
    }
    EXPECT_FALSE(vectors.empty()) << name;
    return vectors;
}

using Pieces = std::vector<unsigned int>;

/// Returns all ways to cut `size` bytes in two, and the cut into single bytes.
inline std::vector<Pieces> cuts_of(std::size_t size) {
    std::vector<Pieces> cuts = {Pieces(size, 1)};
    for (unsigned int first = 0; first <= size; ++first) {
        cuts.push_back({first, static_cast<unsigned int>(size) - first});
    }
    return cuts;
}

/// Calls `step` for each piece of the text.
template <typename Step>
void in_pieces(std::string & text, Pieces const & pieces, Step step) {
    unsigned char * data = mutable_bytes(text);
    for (unsigned int const piece : pieces) {
        step(data, piece);
        data += piece;
    }
}

} // namespace vxtest
