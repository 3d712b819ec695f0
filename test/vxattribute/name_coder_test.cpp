// The rule under test: a name becomes the told operations, both sides count tokens alike in mixed
// streams of any depth, and what no encoder writes is refused.

#include "support/expect_error.h"
#include "support/pages.h"

#include "vxattribute/recording_writer.h"
#include "vxattribute/scripted_reader.h"
#include "vxattribute/value_forms.h"

namespace {

using namespace vxattribute;
using Package = AttributeNamePackage;
using PackageSet = AttributeNamePackageSet;
using Names = std::vector<AttributeName>;
using Operations = std::vector<std::string>;

// Computed from the names by another program.
std::string const pUuid = "uuid 938398afbaf5af4f824d0dfe89bcccb9"; // alpha, beta
std::string const qUuid = "uuid ea15b5cfdfec0640b2f4ccc5dc2b5860"; // one, three, two
std::string const pDigits = pUuid.substr(5);

Package::Ptr p() {
    return Package::create(Names{"alpha", "beta"});
}

PackageSet::Ptr both() {
    return PackageSet::create(p())->create_union(Package::create(Names{"one", "two", "three"}));
}

Operations write_names(AttributeNameEncoder & encoder, Names const & names) {
    vxtest::RecordingWriter writer;
    for (AttributeName const & name : names) {
        name.write(writer, encoder);
    }
    return writer.script;
}

Operations table_of(AttributeNameEncoder & encoder) {
    vxtest::RecordingWriter writer;
    encoder.write_encoder_mappings(writer);
    return writer.script;
}

/// The names of a stream; with a table when it starts with one.
Names read_names(AttributeNameDecoder & decoder, Operations const & script) {
    vxtest::ScriptedReader reader(script);
    if (script[0] == "record") {
        decoder.read_decoder_mappings(reader);
    }
    Names names;
    while (!reader.rest().empty()) {
        names.emplace_back().read(reader, decoder);
    }
    return names;
}

TEST(NameCoder, WorkedExample) {
    Names const names = {"beta", "alpha", "gamma"};
    Operations const inlined = {pUuid, "uint 0", "uint 2", "uint 1", "uint 0", "key gamma"};
    Operations const table = {"record", "list 1", pUuid, "uint 0", "uint 2", "end", "close"};
    AttributeNameEncoder encoder(PackageSet::create(p()));
    EXPECT_EQ(write_names(encoder, names), inlined);

    AttributeNameEncoder withTable(PackageSet::create(p()));
    EXPECT_EQ(table_of(withTable), table);
    EXPECT_EQ(write_names(withTable, names), (Operations{"uint 1", "uint 0", "key gamma"}));

    Operations tabled = table;
    tabled.insert(tabled.end(), {"uint 1", "uint 0", "key gamma"});
    Names const strange = {pDigits + ":1", pDigits + ":0", "gamma"};
    for (Operations const & script : {inlined, tabled}) {
        AttributeNameDecoder decoder(both(), true), lacking(PackageSet::create(), false),
            setless(nullptr, true), failing(PackageSet::create(), true);
        EXPECT_EQ(read_names(decoder, script), names);
        EXPECT_EQ(read_names(lacking, script), strange);
        EXPECT_EQ(read_names(setless, script), strange) << "nothing is missed without a set";
        auto const info =
            vxtest::expect_error([&] { read_names(failing, script); },
                                 error::vxattribute_name_decoder_packageRef_unknown,
                                 "Reference to unknown attribute name package.  PackageId: "
                                 "938398af-baf5-af4f-824d-0dfe89bcccb9");
        EXPECT_EQ(*info->params().find_value("packageId"), "938398af-baf5-af4f-824d-0dfe89bcccb9");
    }
}

TEST(NameCoder, ExampleOfThePage) {
    using vxtest::to_hex;
    auto const set = PackageSet::create(Package::create(Names{"port", "host"}));
    std::string const setBytes = vxtest::from_hex(vxtest::page_block("names.md", "hex-set"));
    EXPECT_EQ(to_hex(vxtest::write_binary_form([&](auto & writer) { writer << set; })),
              to_hex(setBytes));
    vxserialize::MemoryReader setReader(vxtest::list_of(setBytes));
    auto const setRead = PackageSet::create(setReader);

    AttributeValue const value = make_list<AttributeMap>(
        {make_map({{"port", 8080}}), make_map({{"host", make_map({{"port", 22}})}}),
         make_map({{"note", "x"}})});
    std::string const bytes = vxtest::from_hex(vxtest::page_block("names.md", "hex"));
    AttributeNameEncoder encoder(set);
    EXPECT_EQ(to_hex(vxtest::write_binary_form(
                  [&](auto & writer) { write_attribute_value(writer, encoder, value); })),
              to_hex(bytes));
    vxserialize::MemoryReader reader(vxtest::list_of(bytes));
    AttributeNameDecoder decoder(setRead, true);
    AttributeValue copy;
    read_attribute_value(reader, decoder, copy);
    EXPECT_EQ(copy, value);
}

TEST(NameCoder, BasesGoByFirstUseAndStay) {
    AttributeNameEncoder encoder(both());
    // Set order is P, Q; Q is used first here.
    Operations const first = write_names(encoder, {"three", "loose", "beta", "one", "alpha"});
    EXPECT_EQ(first, (Operations{qUuid, "uint 0", "uint 3", "uint 1", "key loose", pUuid, "uint 3",
                                 "uint 2", "uint 4", "uint 0", "uint 3"}));
    Operations const table = {"record", "list 2", qUuid,    "uint 0", "uint 3", "next",
                              pUuid,    "uint 3", "uint 2", "end",    "close"};
    EXPECT_EQ(table_of(encoder), table);
    EXPECT_EQ(table_of(encoder), table) << "twice is the same";

    AttributeNameEncoder late(both());
    EXPECT_EQ(write_names(late, {"two", "one"}),
              (Operations{qUuid, "uint 0", "uint 3", "uint 2", "uint 0"}));
    EXPECT_EQ(table_of(late), table) << "keeps the base that is given";
    EXPECT_EQ(write_names(late, {"beta", "two"}), (Operations{"uint 4", "uint 2"}));

    AttributeNameDecoder decoder(both(), true);
    EXPECT_EQ(read_names(decoder, first), (Names{"three", "loose", "beta", "one", "alpha"}));
    vxtest::ScriptedReader again(table);
    decoder.read_decoder_mappings(again);
    EXPECT_EQ(read_names(decoder, {"uint 4", "uint 0", "uint 3"}), (Names{"beta", "one", "alpha"}));
}

TEST(NameCoder, SharedNamesGoToPackagesInUse) {
    auto const overlap = Package::create(Names{"beta", "delta"}); // its id is the lowest
    AttributeNameEncoder encoder(PackageSet::create(p())->create_union(overlap));
    EXPECT_EQ(write_names(encoder, {"alpha", "beta", "delta"}),
              (Operations{pUuid, "uint 0", "uint 2", "uint 0", "uint 1",
                          "uuid 0096e8fe3a8c354aae5e6843dd9b94fa", "uint 2", "uint 2", "uint 3"}));
}

TEST(NameCoder, WithoutPackagesEveryNameIsAString) {
    for (auto const & set : {PackageSet::Ptr(), PackageSet::create()}) {
        AttributeNameEncoder encoder(set);
        EXPECT_EQ(encoder.package_set(), set);
        EXPECT_EQ(table_of(encoder), (Operations{"record", "list 0", "end", "close"}));
        EXPECT_EQ(write_names(encoder, {"alpha", ""}), (Operations{"key alpha", "key "}));
    }
}

TEST(NameCoder, FailedWritesLeaveNoMapping) {
    for (std::size_t n = 1; n <= 4; ++n) {
        AttributeNameEncoder encoder(PackageSet::create(p()));
        vxtest::RecordingWriter failing(n), good;
        EXPECT_THROW(encoder.write_attribute_name(failing, "beta"), std::runtime_error);
        EXPECT_THROW(encoder.write_encoder_mappings(failing), std::runtime_error);
        encoder.write_attribute_name(good, "beta");
        EXPECT_EQ(good.script, (Operations{pUuid, "uint 0", "uint 2", "uint 1"}));
    }
}

TEST(NameCoder, TokensNeedAReferenceThatCoversThem) {
    // Size 0 covers nothing; references may leave gaps; 4294967295 is the last token there is.
    Operations const refs = {"record",
                             "list 0",
                             "uuid 00000000000000000000000000000001",
                             "uint 2",
                             "uint 0",
                             "next",
                             "uuid 00000000000000000000000000000002",
                             "uint 2",
                             "uint 3",
                             "next",
                             "uuid 00000000000000000000000000000003",
                             "uint 5",
                             "uint 0",
                             "next",
                             "uuid 00000000000000000000000000000004",
                             "uint 4294967290",
                             "uint 4294967295",
                             "end",
                             "close"};
    std::string const zeros(31, '0');

    struct {
        unsigned int token;
        std::string name; // "" for none
    } const rows[] = {{2, zeros + "2:0"},
                      {4, zeros + "2:2"},
                      {4294967290, zeros + "4:0"},
                      {4294967295, zeros + "4:5"},
                      {3, zeros + "2:1"},
                      {0, ""},
                      {1, ""},
                      {5, ""},
                      {4294967289, ""}};

    AttributeNameDecoder decoder(nullptr, false);
    vxtest::ScriptedReader table(refs);
    decoder.read_decoder_mappings(table);
    for (auto const & [token, name] : rows) {
        Operations const script = {"uint " + std::to_string(token)};
        if (!name.empty()) {
            EXPECT_EQ(read_names(decoder, script), Names{name});
            continue;
        }
        std::string const text =
            "No attribute name package reference for attribute name token " + std::to_string(token);
        auto const info =
            vxtest::expect_error([&] { read_names(decoder, script); },
                                 error::vxattribute_name_decoder_unknownIndex, text.c_str());
        EXPECT_EQ(*info->params().find_value("index"), std::to_string(token));
    }
    AttributeNameDecoder fresh(both(), true);
    EXPECT_THROW(read_names(fresh, {"uint 0"}), vxcore::ErrorException);
    Operations behindAll = {"uuid 00000000000000000000000000000005", "uint 4294967295", "uint 1",
                            "uint 0"};
    vxtest::expect_error([&] { read_names(decoder, behindAll); },
                         error::vxattribute_name_decoder_packageRef_invalid,
                         "Invalid index range in package reference.  PackageId: "
                         "00000000-0000-0000-0000-000000000005");
}

TEST(NameCoder, BadReferencesAreRefusedAndTheTableKept) {
    auto const & invalid = error::vxattribute_name_decoder_packageRef_invalid;
    std::string const id = "938398af-baf5-af4f-824d-0dfe89bcccb9";

    struct {
        Operations refs;
        vxcore::ErrorCode const & code;
        std::string text;
    } const rows[] = {
        {{pUuid, "uint 0", "int 2"}, invalid, "Error reading package reference"},
        {{"key alpha"}, invalid, "Error reading package reference"},
        {{pUuid, "uint 0", "uint 3"},
         invalid,
         "Package size mismatch in package reference.  PackageId: " + id},
        {{qUuid, "uint 7", "uint 3", "next", pUuid, "uint 9", "uint 3"},
         invalid,
         "Invalid index range in package reference.  PackageId: " + id}, // told before the size
        {{qUuid, "uint 7", "uint 3", "next", "uuid " + std::string(32, 'f'), "uint 10", "uint 3"},
         error::vxattribute_name_decoder_packageRef_unknown,
         "Reference to unknown attribute name package.  PackageId: "
         "ffffffff-ffff-ffff-ffff-ffffffffffff"},
    };

    AttributeNameDecoder decoder(both(), true);
    EXPECT_EQ(read_names(decoder, {qUuid, "uint 0", "uint 3", "uint 2"}), Names{"two"});
    for (auto const & row : rows) {
        Operations script = {"record", "list 1"};
        script.insert(script.end(), row.refs.begin(), row.refs.end());
        script.insert(script.end(), {"end", "close"});
        auto const info =
            vxtest::expect_error([&] { read_names(decoder, script); }, row.code, row.text.c_str());
        bool const isRead = row.text == "Error reading package reference";
        EXPECT_EQ(info->nested() != nullptr, isRead);
        EXPECT_EQ(info->params().find_value("packageId") == nullptr, isRead);
        EXPECT_EQ(read_names(decoder, {"uint 1"}), Names{"three"}) << row.text;
    }
    EXPECT_THROW(
        read_names(decoder, {"record", "list 0", pUuid, "uint 0", "uint 2", "end", "int 1"}),
        std::runtime_error);
    EXPECT_EQ(read_names(decoder, {"uint 1"}), Names{"three"}) << "the record has to end";
}

/// Three levels of maps over both packages and names of neither.
AttributeMap mixed() {
    AttributeMap const inner = make_map({{"alpha", 1}, {"two", "x"}, {"loose", true}});
    AttributeMap const middle =
        make_map({{"beta", make_list<AttributeMap>({inner, make_map({{"three", inner}})})},
                  {"one", 2.5},
                  {"free", AttributeValue()}});
    return make_map({{"one", middle}, {"alpha", "y"}, {"outer", middle}, {"", 7}});
}

/// What a decoder makes of it that knows P but not Q.
AttributeMap mixed_without_q() {
    std::string const q = qUuid.substr(5);
    AttributeMap const inner = make_map({{"alpha", 1}, {q + ":2", "x"}, {"loose", true}});
    AttributeMap const middle =
        make_map({{"beta", make_list<AttributeMap>({inner, make_map({{q + ":1", inner}})})},
                  {q + ":0", 2.5},
                  {"free", AttributeValue()}});
    return make_map({{q + ":0", middle}, {"alpha", "y"}, {"outer", middle}, {"", 7}});
}

TEST(NameCoder, MixedStreamsReadBackEqual) {
    AttributeMap const map = mixed();
    auto const onlyP = PackageSet::create(p());
    for (bool const withTable : {false, true}) {
        auto const write = [&](vxserialize::Writer & writer) {
            AttributeNameEncoder encoder(both());
            if (withTable) {
                encoder.write_encoder_mappings(writer);
            }
            map.write(writer, encoder);
        };
        auto const read = [&](vxserialize::Reader & reader, MutableAttributeMap & target,
                              PackageSet::Ptr const & set, bool strict) {
            AttributeNameDecoder decoder(set, strict);
            if (withTable) {
                decoder.read_decoder_mappings(reader);
            }
            target.read(reader, decoder);
        };
        std::string const text = vxtest::write_text_form(write);
        EXPECT_EQ(text.find("{938398af"), text.rfind("{938398af")) << "one reference is enough";
        auto const list = vxtest::list_of(vxtest::write_binary_form(write), 3);
        for (bool const lacksQ : {false, true}) {
            auto const set = lacksQ ? onlyP : both();
            MutableAttributeMap fromBinary, fromText;
            vxserialize::MemoryReader binary(list);
            read(binary, fromBinary, set, false);
            vxtest::read_text_form(text,
                                   [&](auto & reader) { read(reader, fromText, set, false); });
            EXPECT_EQ(fromBinary, lacksQ ? mixed_without_q() : map);
            EXPECT_EQ(fromText, fromBinary);
        }
        MutableAttributeMap target = make_map({{"kept", 1}});
        vxserialize::MemoryReader binary(list);
        vxtest::expect_error([&] { read(binary, target, onlyP, true); },
                             error::vxattribute_name_decoder_packageRef_unknown,
                             "Reference to unknown attribute name package.  PackageId: "
                             "ea15b5cf-dfec-0640-b2f4-ccc5dc2b5860");
        EXPECT_EQ(target, make_map({{"kept", 1}}));
    }
}

TEST(NameCoder, AttributesAndFunctorsCodeTheNamesThatTheyAreTold) {
    Attribute const attribute("beta", make_map({{"alpha", 1}}));
    AttributeNameEncoder encoder(both());
    vxtest::RecordingWriter writer;
    AttributeNameEncoderFunctor const write(encoder);
    write(writer, attribute);
    write(writer, make_map({{"beta", 2}}));
    EXPECT_EQ(writer.script,
              (Operations{pUuid, "uint 0", "uint 2", "uint 1", "uint 12", "list 1", "list 1",
                          "key alpha", "int 1", "end", "end", "list 1", "uint 1", "int 2", "end"}));
    vxtest::ScriptedReader reader(writer.script);
    AttributeNameDecoder decoder(both(), true);
    AttributeNameDecoderFunctor const read(decoder);
    Attribute copy;
    MutableAttributeMap map;
    read(reader, copy);
    read(reader, map);
    EXPECT_EQ(copy, attribute);
    EXPECT_EQ(map, make_map({{"beta", 2}}));
}

} // namespace
