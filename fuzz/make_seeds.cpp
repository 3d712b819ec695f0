/// Writes the seeds of all targets into a folder: make_seeds FOLDER. Run it after a change to how a
/// target reads its input, and commit the result.

#include "make_seeds.h"

#include "known_key.h"
#include "known_packages.h"
#include "stream_checks.h"

#include "vxattribute/samples.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>

using namespace vxattribute;
using vxfuzz::save;

namespace {

std::filesystem::path folder;

void save_stream(std::string const & name, std::vector<AttributeValue> const & values) {
    std::string binary = std::string("\x35") + vxfuzz::values_only;
    std::string text = std::string("\x20") + vxfuzz::values_only;
    for (AttributeValue const & value : values) {
        binary += vxfuzz::write_binary(value);
        text += vxfuzz::write_text(value) + " ";
    }
    save("binary_read", name, binary);
    save("text_read", name, text);
}

/// Saves a stream that the target repeats up to 16 KiB; see ReaderInput.
void save_dense(std::string const & name, std::string const & bytes) {
    save("binary_read", name, std::string("\x00\xFF\xAA\xAA\xAA", 5) + bytes);
}

/// Saves one stream for each type, with its scalar, list and empty value.
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
    // Maps that take the most memory for their size in the stream.
    save_dense("empty_maps", std::string("\x8C\xEC\xFF") + std::string(255, '\xA0'));
    std::string maps = "\x8C\xEC\xFF";
    for (int i = 0; i < 255; ++i) {
        maps += std::string("\xA1\x00\x7F", 3);
    }
    save_dense("small_maps", maps);
}

/// Saves an input of the target coded_read: a head of five bytes, then `bytes`. The fifth byte is
/// the mode; Mode in coded_read.cpp lists its bits.
void save_coded(std::string const & name, char mode, std::string const & bytes) {
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
        auto const write = [&, hasTable = (mode & 3) == 1](vxserialize::Writer & writer) {
            if (hasTable) {
                encoder.write_encoder_mappings(writer);
            }
            write_attribute_value(writer, encoder, value);
            write_attribute_value(writer, encoder, value);
        };
        save_coded(name, mode, vxfuzz::binary_of(write));
    }
    save("coded_read", "text",
         std::string("\x20\x01\x00\x00\x28", 5) +
             "12u [2: [{938398af-baf5-af4f-824d-0dfe89bcccb9} 0u 2u 1u 5, 0u 6], [1u 7]] "
             "12u [[{00000000-0000-0000-0000-000000000001} 9u 4294967286u 4294967294u 5]]");
}

/// Saves an input of the target names_read: a head of five bytes, then `bytes`. The fifth byte is
/// the mode; names_read.cpp lists the modes.
void save_names(std::string const & name, char mode, std::string const & bytes) {
    save("names_read", name, std::string("\x35\x01\x00\x00", 4) + mode + bytes);
}

void save_name_packages() {
    auto const & packages = vxfuzz::known_packages();
    auto const write_packages = [&packages](vxserialize::Writer & writer) {
        writer << packages[0] << AttributeNamePackage::Ptr() << packages[1];
    };
    auto const write_sets = [&packages](vxserialize::Writer & writer) {
        using Composer = AttributeNamePackageSet::Composer;
        auto const overlap = AttributeNamePackage::create(std::vector<AttributeName>{"two", "x"});
        writer << Composer(packages[0]).add(packages[1]).add(overlap).compose()
               << AttributeNamePackageSet::Ptr() << AttributeNamePackageSet::create();
    };
    save_names("packages", 0, vxfuzz::binary_of(write_packages));
    save_names("sets", 1, vxfuzz::binary_of(write_sets));
    save_names("packages_text", 2, vxfuzz::text_of(write_packages));
    save_names("sets_text", 3, vxfuzz::text_of(write_sets));
    save_names("bad_id", 2, "({00000000-0000-4000-8000-000000000000} [2: <a>, <b>])");
    save_names("list", 4, "port\nhost\n name with blanks \nport number\n");
    save_names("list_empty", 4, "");
    save_names("list_empty_line", 4, "host\n\nport\n");
    save_names("list_return", 4, "host\r\nport\r\n");
    save_names("list_mark", 4, "\xEF\xBB\xBFhost\nport\n");
    save_names("list_twice", 4, "host\nport\nhost\n");
    save_names("list_cut", 4, "host\nport");
    save_names("list_high", 4, "\xEF\xBB\nname\x80\n");
    save_names("own_id", 5, "host\nname\nport");
    save_names("own_id_twice", 5, "host\nport\nport");
    save_names("own_id_unsorted", 5, "port\nhost");
}

/// Saves inputs of the target text_values: a byte that selects the check, then the text. The end of
/// text_values.cpp lists the checks.
void save_texts() {
    struct {
        char kind;
        std::vector<std::string> texts;
    } const rows[] = {
        {0,
         {"2026-11-24T14:46:20.5Z", "+12026-01-31T00:00:00.1234567-23:59",
          "-0001-02-28T23:59:59+00:00"}},
        {1, {"P1DT2H3M4.5S", "-PT1.5S", "P2W", "PT0S", "P10675199DT2H48M5.4775807S"}},
        {2, {"2026-11-24T14:46:20.5", "2024-02-29", "-29227-04-19T21:11:54.5224192"}},
        {3, {"938398af-baf5-af4f-824d-0dfe89bcccb9", "938398AFBAF5AF4F824D0DFE89BCCCB9"}},
        {4, {"true", "No", "ON", "0", "of"}},
        {5, {"-12.5e3", "+.5", "1e-400", "1e400", "-infinity", "NaN", "0.00000000000000000001e19"}},
        {6,
         {"-128", "+255", "18446744073709551615", "-9223372036854775809", "+-1",
          "0000000000000000000001"}},
        {7,
         {"\x24http://u@[::1]:80/a%2Fb?c=d#e%2f./..",
          "\x05"
          "a:b@c\x05"
          "a:b%c",
          "\x0E//h.example:8/\x01%"}},
        {8, {"verbose", "-1", "101", "NEVER", "128"}},
        {9,
         {"\x04"
          "b//d\x05"
          "c/1/a\x03"
          "a/b\x06~01~1/\x05"
          "c/2/a"}},
    };

    for (auto const & [kind, texts] : rows) {
        for (std::size_t i = 0; i < texts.size(); ++i) {
            save("text_values", std::to_string(kind) + "_" + std::to_string(i), kind + texts[i]);
        }
    }
    save("text_values", "ticks",
         std::string("\x0B\x08\x80\0\0\0\0\0\0\0\x04\x7F\xFF\xFF\xFF\x05\xFF\0\0\0\0", 21));
    save("text_values", "fields",
         "\x0C\x02\x07\xEA\x01\x0B\x01\x18\x01\x0E\x01\x2E\x01\x14\x03\x4C\x4B\x40");
}

/// Saves streams of messages; messages.cpp says what the first two bytes are.
void save_messages() {
    auto const packages = AttributeNamePackageSet::create(vxfuzz::known_packages()[0]);
    std::string coded, plain, bad;
    vxcore::StringSink codedSink(coded), plainSink(plain), badSink(bad);
    write_message(codedSink, make_map({{"alpha", 1}, {"beta", make_map({{"alpha", "x"}})}}),
                  packages, {.sorted_names = true});
    write_message(plainSink, make_map({{"name", "value"}}));
    vxserialize::write_frame(badSink, std::string("no map"));
    save("messages", "coded", "\x35\x01" + coded + plain + coded);
    save("messages", "refused", "\xFF\x02" + coded + bad + plain + plain.substr(0, 9));
    save("messages", "above_limit", "\x12\x05" + coded + plain + std::string(3, '\0'));
}

/// Saves a map and a key sealed under each cipher, to be read in pieces of two sizes, and inputs
/// that seal a text and change bytes of it; see sealed_open.cpp.
void save_sealed() {
    vxfuzz::FixedRandom random;
    for (char const * id : {"EAX_AES128", "EAX_AES256", "NULL"}) {
        auto const cipher = SecuredValue::default_cipher_provider().find_cipher(id);
        vxcrypto::Key const key = vxfuzz::key_of_size(cipher->keysize());
        auto const bytes = vxfuzz::binary_of([&](vxserialize::Writer & writer) {
            SecuredValue(make_map({{"a", make_list<long long>({1, 2})}}), "note", {"c", {}}, key,
                         *cipher, random)
                .write(writer);
            SecuredValue(vxfuzz::key_of_size(9), "", {}, key, *cipher, random).write(writer);
        });
        save("sealed_open", id, "\x55" + bytes);
    }
    save("sealed_open", "unchanged", std::string("\0\x05value\x04note", 12));
    save("sealed_open", "changed", std::string("\0\x05value\x04note\x14\x01\x02\x80", 16));
}

/// Saves inputs that are decisions rather than data: random bytes, half of them from 0 to 15.
void save_decisions(char const * target, unsigned int count, unsigned int size,
                    std::string const & start = "") {
    std::mt19937 random(1);
    for (unsigned int i = 0; i < count; ++i) {
        std::string bytes = start;
        for (unsigned int left = size; left != 0; --left) {
            unsigned int const limit = random() % 2 == 0 ? 16 : 256;
            bytes += static_cast<char>(random() % limit);
        }
        save(target, "random_" + std::to_string(i), bytes);
    }
}

} // namespace

namespace vxfuzz {

void save(char const * target, std::string const & name, std::string const & bytes) {
    std::filesystem::create_directories(folder / target);
    std::ofstream file(folder / target / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace vxfuzz

int main(int argc, char ** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_seeds FOLDER\n");
        return 2;
    }
    folder = argv[1];
    save_samples();
    save_coded_streams();
    save_name_packages();
    save_texts();
    save_messages();
    save_sealed();
    vxfuzz::save_forms();
    vxfuzz::save_program_files();
    save_decisions("round_trip", 12, 400);
    save_decisions("text_values", 8, 100, "\x0A");
    save_decisions("value_operations", 12, 1200);
    return 0;
}
