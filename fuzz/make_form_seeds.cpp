#include "known_key.h"
#include "make_seeds.h"
#include "stream_checks.h"

#include "vxattribute/samples.h"
#include "vxserialize/limits.h"

namespace vxfuzz {

using namespace vxattribute;

namespace {

struct Seed {
    char const * name;
    std::string bytes;
};

std::string bytes_of(std::initializer_list<unsigned int> bytes) {
    std::string text;
    for (unsigned int const byte : bytes) {
        text += static_cast<char>(byte);
    }
    return text;
}

/// Returns an error chain that is one link longer than readers accept.
std::string too_long_error() {
    unsigned int const links = vxserialize::max_error_chain + 1;
    std::string bytes = bytes_of({0x8E, 0xF7, 0xED, links & 0xFF, links >> 8});
    for (unsigned int i = 0; i < links; ++i) {
        bytes += bytes_of({0x00, 0x00, 0xA0, 0x00, 0x00, 0x80});
    }
    return bytes + '\xF8';
}

/// Saves binary streams with one fault each. The name of a seed states its fault.
void save_binary() {
    Seed const seeds[] = {
        {"version", bytes_of({0xFF, 1, 0x4D})}, // no fault: the known version
        {"version_unknown", bytes_of({0xFF, 2, 0x4D})},
        {"type", bytes_of({0x85, 0x4D})},
        {"type_of_boolean", bytes_of({0x81, 0x4D})},
        {"type_of_integer", bytes_of({0x82, 0x00})},
        {"tag", bytes_of({0x9E})},
        {"tag_of_null", bytes_of({0x80})}, // no fault
        {"cut_in_size", bytes_of({0xDE, 0x01})},
        {"cut_in_string", bytes_of({0xDC, 0xFF, 'x'})},
        {"cut_in_uuid", bytes_of({0xF6, 1, 2})},
        {"count", bytes_of({0x83, 0xEF, 0xFF, 0xFF, 0xFF, 0xFF})},
        {"list_of_one", bytes_of({0x83, 0xA1, 1, 'x', 0x8C, 0xA1, 0xA0})}, // no fault
        {"error_without_link", bytes_of({0x8E, 0xF7, 0xA0, 0xF8})},
        {"error_null", bytes_of({0x8E, 0xF0})}, // no fault
        {"error_too_long", too_long_error()},
        {"record_too_long", bytes_of({0x8B, 0xF7, 0xF7, 1, 'x', 0xF8, 0xC0, 0x4D, 0xF8})},
        {"record_too_short", bytes_of({0x8B, 0xF7, 0xF7, 1, 'x', 0xF8, 0xF8})},
    };
    for (auto const & [name, bytes] : seeds) {
        save("binary_read", std::string("form_") + name, std::string("\x35") + values_only + bytes);
    }
}

void save_text() {
    Seed const seeds[] = {
        {"integer", "99999999999999999999"},
        {"unsigned", "99999999999u"},
        {"double", "4u 1e999"},
        {"string", "<a\n>"},
        {"escape", "<%4g>"},
        {"escape_cut", "<%4"},
        {"string_cut", "<abc"},
        {"absolute_time", "@1970-13-01T00:00:00Z"},
        {"relative_time", "P1X"},
        {"uuid", "{00112233}"},
        {"binary", "#00g"},
        {"binary_digit", "#0g"},
        {"binary_half", "#012 "},
        {"binary_long", "#" + std::string(600, 'a')}, // no fault
        {"count", "3u [99999999999: <a>]"},
        {"count_of_data", "3u [4000000000: <a>]"},
        {"list_too_short", "3u [3: <a>, <b>]"},
        {"list_too_long", "3u [1: <a>, <b>]"},
        {"list_without_comma", "3u [2: <a> <b>]"},
        {"list_without_element", "3u [2: <a>, ]"},
        {"list_cut", "3u [2: <a>"},
        {"list_of_one", // no fault
         "1u [true] 2u [2000] 3u [<a>] 4u [1.5] 5u [{00112233-4455-6677-8899-aabbccddeeff}] "
         "6u [<x>] 7u [@1970-01-01T00:00:00Z] 8u [PT1S] 9u [@1970-01-01T00:00:00Z] 10u [#00] "
         "11u [((<x>) #70)] 12u [[<a> 1]] 14u [null]"},
        {"record", "11u ((<x>) #70 5)"},
        {"record_cut", "11u ((<x>) #70"},
        {"error_without_link", "14u ([])"},
        {"error_null", "14u null"}, // no fault
        {"word", "tru"},
        {"tag", "99u 1"},
        {"null", "null 0u null"}, // no fault
    };
    for (auto const & [name, bytes] : seeds) {
        save("text_read", std::string("form_") + name, std::string("\x8F") + values_only + bytes);
    }
}

void save_coded() {
    std::string const alpha = "{938398af-baf5-af4f-824d-0dfe89bcccb9}";
    Seed const seeds[] = {
        {"text_good", "12u [[2: " + alpha + " 0u 2u 1u 5, 0u 6]] 12u [[1u 7]]"},
        {"index", "12u [[4u 1]]"},
        {"index_after", "12u [[2: " + alpha + " 0u 2u 1u 5, 9u 6]]"},
        {"reference", "12u [[" + alpha + " <x> 1]]"},
        {"reference_overlaps", "12u [[2: " + alpha + " 0u 2u 1u 5, " + alpha + " 1u 2u 1u 6]]"},
        {"reference_size", "12u [[" + alpha + " 0u 3u 1u 5]]"},
    };
    for (auto const & [name, bytes] : seeds) {
        save("coded_read", name, std::string("\x20\x01\x00\x00\x2C", 5) + bytes);
    }
    save("coded_read", "mappings",
         std::string("\x20\x01\x00\x00\x2D", 5) + "[" + alpha + " 0u 2u] 12u [[1u 7]]");
}

/// Returns the stream of a sealed value that has this cipher id and ciphertext.
std::string sealed(char const * cipher, std::string const & ciphertext) {
    return binary_of([&](vxserialize::Writer & writer) {
        writer.begin_record();
        writer << std::string("note") << std::string(cipher);
        SecuredValue::KeyId("category", vxcore::Uuid()).write(writer);
        writer.write_binary(ciphertext.data(), static_cast<unsigned int>(ciphertext.size()));
        writer.end_record();
    });
}

/// Saves values under the cipher NULL, which does not encrypt, ciphertexts that are too short for
/// EAX, and a few values that open.
void save_sealed() {
    std::string values, lists;
    for (vxtest::Sample const & sample : vxtest::samples()) {
        if (sample.value.type() != ValueTypeId::typeSecured) { // differ in each run
            (sample.value.size() > 1 ? lists : values) +=
                sealed("NULL", write_binary(sample.value));
        }
    }
    values += sealed("NULL", write_binary(AttributeValue()));
    save("sealed_open", "plain_values", "\x55" + values);
    save("sealed_open", "plain_lists", "\x55" + lists);
    save("sealed_open", "plain_keys",
         "\x55" + sealed("NULL", bytes_of({0xC1, 'k'})) + sealed("NULL", bytes_of({0x8A, 0xA0})) +
             sealed("NULL", bytes_of({0x8A, 0xA1, 0xC1, 'k'})) +
             sealed("NULL", bytes_of({0x8A, 0xC1, 'k'})) + sealed("NULL", bytes_of({0x9F, 0xC0})) +
             sealed("NULL", bytes_of({0xF7})) + sealed("NULL", ""));
    save("sealed_open", "short",
         "\x55" + sealed("EAX_AES128", std::string(31, 'x')) +
             sealed("EAX_AES128", std::string(32, 'x')) + sealed("EAX_AES256", "") +
             sealed("other", "x"));
    FixedRandom random;
    vxcrypto::Key const key = key_of_size(16);
    for (vxtest::Sample const & sample : vxtest::samples()) {
        if (sample.value.type() == ValueTypeId::typeBinary ||
            sample.value.type() == ValueTypeId::typeString) {
            save("sealed_open", sample.name,
                 "\x55" + binary_of([&](vxserialize::Writer & writer) {
                     SecuredValue(sample.value, "", {}, key, SecuredValue::default_cipher(), random)
                         .write(writer);
                 }));
        }
    }
}

void save_json() {
    Seed const seeds[] = {
        {"scalars", R"({"a":true,"b":null,"c":"x","d":1.5,"e":1,"f":"","g":["",""],"h":[""]})"},
        {"null_in_array", R"({"a":[null]})"},
        {"array_in_array", R"({"a":[[1]]})"},
        {"boolean_in_strings", R"({"a":["x",true]})"},
        {"object_and_number", R"({"a":[{},1]})"},
        {"serialized_number", R"({"vxserialize":1})"},
        {"serialized_bad", R"({"vxserialize":"3u <a"})"},
        {"object_open", R"({"a":1)"},
        {"array_open", R"([1,)"},
        {"object_closed_as_array", R"({"a":1])"},
        {"array_closed_as_object", R"([1})"},
        {"without_value", R"({"a":})"},
        {"without_name", R"({1:2})"},
        {"word", "x"},
        {"number", "[-]"},
        {"string_open", R"(["abc)"},
        {"empty", ""},
        {"scalar", "1"},
    };
    for (auto const & [name, bytes] : seeds) {
        save("json_value", std::string("form_") + name, std::string("\x02\x21", 2) + bytes);
        save("json_roads", std::string("form_") + name, std::string("\x02\x00", 2) + bytes);
        save("json_scan", std::string("form_") + name, std::string("\xF8\xC3", 2) + bytes);
    }
}

} // namespace

void save_forms() {
    save_binary();
    save_text();
    save_coded();
    save_sealed();
    save_json();
}

} // namespace vxfuzz
