/// Writes the seeds of all targets into a folder: make_seeds FOLDER. Run it when a target reads its
/// input in another way, and commit what it makes.

#include "stream_checks.h"

#include "vxattribute/samples.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

using namespace vxattribute;

namespace {

/// Behind the byte for the pieces: no repetition, and everything read as values; see ReaderInput.
char const valuesOnly[] = "\x01\xAA\xAA\xAA";

std::filesystem::path folder;

void save(char const * target, std::string const & name, std::string const & bytes) {
    std::filesystem::create_directories(folder / target);
    std::ofstream file(folder / target / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void save_stream(std::string const & name, std::vector<AttributeValue> const & values) {
    std::string binary = std::string("\x35") + valuesOnly;
    std::string text = std::string("\x20") + valuesOnly;
    for (AttributeValue const & value : values) {
        binary += vxfuzz::write_binary(value);
        text += vxfuzz::write_text(value) + " ";
    }
    save("binary_read", name, binary);
    save("text_read", name, text);
}

/// A stream that is read over and over.
void save_dense(std::string const & name, std::string const & bytes) {
    save("binary_read", name, std::string("\x00\xFF\xAA\xAA\xAA", 5) + bytes);
}

/// Scalar, list and empty value of each type in one stream.
void save_samples() {
    std::map<std::string, std::vector<AttributeValue>> streams;
    for (vxtest::Sample const & sample : vxtest::samples()) {
        streams[sample.value.type().name()].push_back(sample.value);
    }
    for (auto const & [name, values] : streams) {
        save_stream(name, values);
    }
    AttributeValue nested;
    for (int i = 0; i < 255; ++i) {
        nested = make_map({{"n", nested}});
    }
    save_stream("nested", {AttributeValue(), nested});
    // What takes the most memory for its size.
    save_dense("empty_maps", std::string("\x8C\xEC\xFF") + std::string(255, '\xA0'));
    std::string maps = "\x8C\xEC\xFF";
    for (int i = 0; i < 255; ++i) {
        maps += std::string("\xA1\x00\x7F", 3);
    }
    save_dense("small_maps", maps);
}

/// Inputs that are decisions rather than data: bytes from a generator, lower ones more often.
void save_decisions(char const * target, unsigned int count, unsigned int size) {
    std::mt19937 random(1);
    for (unsigned int i = 0; i < count; ++i) {
        std::string bytes;
        for (unsigned int left = size; left != 0; --left) {
            unsigned int const limit = random() % 2 == 0 ? 16 : 256;
            bytes += static_cast<char>(random() % limit);
        }
        save(target, "random_" + std::to_string(i), bytes);
    }
}

} // namespace

int main(int argc, char ** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_seeds FOLDER\n");
        return 2;
    }
    folder = argv[1];
    save_samples();
    save_decisions("round_trip", 12, 400);
    save_decisions("value_operations", 12, 1200);
    return 0;
}
