#include "known_key.h"
#include "known_packages.h"
#include "make_seeds.h"
#include "stream_checks.h"

namespace vxfuzz {

using namespace vxattribute;

namespace {

// The numbers of the commands and the bits of the flags are those of vxattr_files.cpp.
enum ECommand {
    eToBinary,
    eToText,
    eToJson,
    eToTrace,
    eShow,
    eStat,
    eInspect,
    eInspectCoded,
    eGet,
    eDiff,
    eDiffSame,
    eCheck,
    eOpen,
    eVerify,
    ePackage,
    eSeal
};

enum EFlags {
    eFromJson = 1,
    eFromBinary = 2,
    eFromText = 3,
    eCoded = 4,
    eStrict = 8,
    eSorted = 16,
    eIndented = 32,
    eWrapped = 64,
    eLongKey = 128
};

struct Seed {
    char const * name;
    unsigned int command;
    unsigned int flags;
    std::string first;
    std::string second = "";
};

SecuredValue sealed(unsigned int keySize) {
    FixedRandom random;
    return SecuredValue(make_list<std::string>({"secret", ""}), "note", {"category", {}},
                        key_of_size(keySize),
                        *SecuredValue::default_cipher_provider().find_cipher(
                            keySize == 16 ? "EAX_AES128" : "EAX_AES256"),
                        random);
}

AttributeMap settings() {
    return make_map(
        {{"a", make_list<AttributeMap>({make_map({{"a", 1}}), AttributeMap()})},
         {"port", make_list<long long>({80, -1})},
         {"host", "h\n\x1B[1m"},
         {"ratio", 0.5},
         {"id", vxcore::Uuid()},
         {"at", vxcore::AbsoluteTime(15)},
         {"for", vxcore::RelativeTime(15)},
         {"on", vxcore::SimpleDateTime(15)},
         {"page", vxuri::UriReference::parse("http://h/%2f")},
         {"bytes", BinaryValue(reinterpret_cast<unsigned char const *>("\x00\x80z"), 3)},
         {"empty", AttributeValue(ValueTypeId::typeBoolean)},
         {"nothing", AttributeValue()}});
}

std::string coded(AttributeMap const & map) {
    return binary_of([&map](vxserialize::Writer & writer) {
        AttributeNameEncoder encoder(AttributeNamePackageSet::create(known_packages()[0]));
        write_attribute_value(writer, encoder, map);
    });
}

} // namespace

void save_program_files() {
    AttributeMap const map = settings();
    AttributeMap const secrets = make_map({{"key", sealed(16)}, {"long", sealed(32)}});
    AttributeMap const names = make_map({{"alpha", 1}, {"other", make_map({{"beta", 2}})}});
    std::string const binary = write_binary(map);
    std::string const text = write_text(map);
    std::string const json = value_to_json(map);
    std::string const list = "alpha\nbeta\n";
    std::string const package =
        binary_of([](vxserialize::Writer & writer) { writer << known_packages()[0]; });
    std::string const bareMap =
        binary_of([&map](vxserialize::Writer & writer) { map.write(writer); });

    Seed const seeds[] = {
        {"to_binary_json", eToBinary, eSorted, json},
        {"to_binary_coded", eToBinary, eSorted | eCoded, write_binary(names), list},
        {"to_text_binary", eToText, eSorted | eIndented, binary},
        {"to_text_map", eToText, eFromBinary, bareMap},
        {"to_json_text", eToJson, eSorted | eWrapped, text},
        {"to_json_list", eToJson, eWrapped, write_binary(make_list<double>({0.5, 1e300}))},
        {"to_json_coded", eToJson, eCoded, coded(names), package},
        {"to_json_uncoded", eToJson, eSorted, coded(names)},
        {"to_json_sealed", eToJson, 0, write_binary(secrets)},
        {"to_trace", eToTrace, 0, binary},
        {"strict", eToText, eStrict, "{\"a\":12345678901234567890,\"a\":2}"},
        {"lossy", eToText, eFromJson, "[{\"a\":1,\"a\":2},{\"vxserialize\":\"1u true\",\"x\":1}]"},
        {"bad_json", eToText, 0, "{\"a\":\n[1,}"},
        {"bad_text", eToJson, eFromText, "12u [[2: <a> 5"},
        {"bad_binary", eShow, eFromBinary, binary.substr(0, 30)},
        {"bad_version", eToJson, eFromBinary, "\xFF\x02\x4D"},
        {"show", eShow, 0, binary},
        {"show_short", eShow, eSorted | eIndented, text},
        {"stat", eStat, 0, json},
        {"inspect", eInspect, 0, binary},
        {"inspect_map", eInspect, 0, bareMap},
        {"inspect_sealed", eInspect, 0, write_binary(secrets)},
        {"inspect_coded", eInspectCoded, 0, coded(names), list},
        {"get", eGet, 0, binary, "a"},
        {"get_json", eGet, eSorted, json, "host"},
        {"get_page", eGet, 0, binary, "page"},
        {"get_trace", eGet, eIndented, text, "port"},
        {"diff", eDiff, 0, json, "{\"port\":[80,1],\"x\":{\"y\":2}}"},
        {"diff_same", eDiffSame, 0, binary},
        {"check", eCheck, eFromJson, "{\"alpha\":1,\"b\":{\"c\":2}}", list},
        {"check_optional", eCheck, eWrapped, write_binary(names), package},
        {"open", eOpen, 0, write_binary(secrets), "key"},
        {"open_shown", eOpen, eWrapped | eLongKey, value_to_json(secrets), "long"},
        {"open_wrong", eOpen, eLongKey, write_binary(secrets), "key"},
        {"verify", eVerify, 0, write_text(secrets)},
        {"verify_one", eVerify, eLongKey, write_binary(secrets), "long"},
        {"package_make", ePackage, 0, json, write_binary(names)},
        {"package_stream", ePackage, eIndented, json, "[1]"},
        {"package_show", ePackage, eWrapped, package, list},
        {"seal", eSeal, 0, binary},
        {"seal_long", eSeal, eLongKey, json},
    };
    for (Seed const & seed : seeds) {
        std::string const second = seed.second.substr(0, 255);
        save("vxattr_files", seed.name,
             std::string{static_cast<char>(seed.command), static_cast<char>(seed.flags),
                         static_cast<char>(second.size())} +
                 second + seed.first);
    }
}

} // namespace vxfuzz
