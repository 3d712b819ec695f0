/// Writes the seeds of all targets into a folder: make_seeds FOLDER. Run it when a target reads its
/// input in another way, and commit what it makes.

#include "known_key.h"
#include "known_packages.h"
#include "stream_checks.h"

#include "vxattribute/samples.h"
#include "vxserialize/memory_writer.h"

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

/// The last of the bytes in front is the mode; see coded_read.cpp.
void save_coded(std::string const & name, char mode, vxserialize::MemoryWriter & writer) {
    auto const list = writer.close_and_detach_memory_list();
    std::string bytes(list->size(), '\0');
    list->read_at(0, bytes.data(), list->size());
    save("coded_read", name, std::string("\x35\x01\x00\x00", 4) + mode + bytes);
}

void save_coded_streams() {
    auto const set = AttributeNamePackageSet::create(vxfuzz::known_packages()[0])
                         ->create_union(vxfuzz::known_packages()[1]);
    AttributeMap const inner = make_map({{"two", 2}, {"", true}, {"loose", "x"}});
    AttributeValue const value = make_list<AttributeMap>(
        {inner, make_map({{"alpha", inner}, {"three", 2.5}, {"beta", AttributeValue()}})});

    struct {
        char const * name;
        char mode;
    } const rows[] = {{"all_known", 0x1C}, {"one_known", 0x04}, {"strict", 0x18},
                      {"none", 0x00},      {"table", 0x1D},     {"table_unknown", 0x09}};

    for (auto const & [name, mode] : rows) {
        AttributeNameEncoder encoder(set);
        vxserialize::MemoryWriter writer;
        if ((mode & 3) == 1) {
            encoder.write_encoder_mappings(writer);
        }
        write_attribute_value(writer, encoder, value);
        write_attribute_value(writer, encoder, value);
        save_coded(name, mode, writer);
    }
    vxserialize::MemoryWriter packages, sets;
    packages << vxfuzz::known_packages()[0] << AttributeNamePackage::Ptr()
             << vxfuzz::known_packages()[1];
    save_coded("packages", 2, packages);
    sets << set << AttributeNamePackageSet::Ptr() << AttributeNamePackageSet::create();
    save_coded("sets", 3, sets);
    save("coded_read", "text",
         std::string("\x20\x01\x00\x00\x28", 5) +
             "12u [2: [{938398af-baf5-af4f-824d-0dfe89bcccb9} 0u 2u 1u 5, 0u 6], [1u 7]] "
             "12u [[{00000000-0000-0000-0000-000000000001} 9u 4294967286u 4294967294u 5]]");
}

/// Values and a key under each cipher, to be read in pieces of two sizes; see sealed_open.cpp.
void save_sealed() {
    vxfuzz::FixedRandom random;
    for (char const * id : {"EAX_AES128", "EAX_AES256", "NULL"}) {
        auto const cipher = SecuredValue::default_cipher_provider().find_cipher(id);
        vxcrypto::Key const key = vxfuzz::key_of_size(cipher->keysize());
        vxserialize::MemoryWriter writer;
        SecuredValue(make_map({{"a", make_list<long long>({1, 2})}}), "note", {"c", {}}, key,
                     *cipher, random)
            .write(writer);
        SecuredValue(vxfuzz::key_of_size(9), "", {}, key, *cipher, random).write(writer);
        auto const list = writer.close_and_detach_memory_list();
        std::string bytes(list->size(), '\0');
        list->read_at(0, bytes.data(), list->size());
        save("sealed_open", id, "\x55" + bytes);
    }
    save("sealed_open", "unchanged", std::string("\0\x05value\x04note", 12));
    save("sealed_open", "changed", std::string("\0\x05value\x04note\x14\x01\x02\x80", 16));
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
    save_coded_streams();
    save_sealed();
    save_decisions("round_trip", 12, 400);
    save_decisions("value_operations", 12, 1200);
    return 0;
}
