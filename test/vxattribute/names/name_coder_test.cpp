// The rule under test: a name becomes the documented operations, encoder and decoder count tokens
// alike in mixed streams of any depth, and what no encoder writes is refused.

#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/pages.h"

#include "vxattribute/stream/recording_writer.h"
#include "vxattribute/stream/scripted_reader.h"
#include "vxattribute/value_forms.h"

namespace {

using namespace vxattribute;
using namespace vxtest;
namespace error = vxattribute::error; // not that of the streams
using Package = AttributeNamePackage;
using PackageSet = AttributeNamePackageSet;
using Names = std::vector<AttributeName>;

// Computed from the names by another program.
std::string const pDigits = "938398afbaf5af4f824d0dfe89bcccb9"; // alpha, beta
std::string const qDigits = "ea15b5cfdfec0640b2f4ccc5dc2b5860"; // one, three, two
std::string const pUuid = "uuid " + pDigits;
std::string const qUuid = "uuid " + qDigits;

Package::Ptr p() {
    return Package::create(Names{"alpha", "beta"});
}

PackageSet::Ptr both() {
    return PackageSet::create(p())->create_union(Package::create(Names{"one", "two", "three"}));
}

std::string write_names(AttributeNameEncoder & encoder, Names const & names) {
    RecordingWriter writer;
    for (AttributeName const & name : names) {
        name.write(writer, encoder);
    }
    return writer.script;
}

std::string table_of(AttributeNameEncoder & encoder) {
    RecordingWriter writer;
    encoder.write_encoder_mappings(writer);
    return writer.script;
}

/// Returns the names of a stream. Reads a table first when the stream starts with one.
Names read_names(AttributeNameDecoder & decoder, std::string const & script) {
    ScriptedReader reader(script);
    if (script.starts_with("record")) {
        decoder.read_decoder_mappings(reader);
    }
    Names names;
    while (reader.rest() != 0) {
        names.emplace_back().read(reader, decoder);
    }
    return names;
}

TEST(NameCoder, WorkedExample) {
    Names const names = {"beta", "alpha", "gamma"};
    std::string const inlined = pUuid + "; uint 0; uint 2; uint 1; uint 0; key gamma";
    std::string const table = "record; list 1; " + pUuid + "; uint 0; uint 2; end; close";
    AttributeNameEncoder encoder(PackageSet::create(p())), withTable(PackageSet::create(p()));
    EXPECT_EQ(write_names(encoder, names), inlined);
    EXPECT_EQ(table_of(withTable), table);
    EXPECT_EQ(write_names(withTable, names), "uint 1; uint 0; key gamma");

    Names const strange = {pDigits + ":1", pDigits + ":0", "gamma"};
    for (std::string const & script : {inlined, table + "; uint 1; uint 0; key gamma"}) {
        AttributeNameDecoder decoder(both(), true), lacking(PackageSet::create(), false),
            setless(nullptr, true), failing(PackageSet::create(), true);
        EXPECT_EQ(read_names(decoder, script), names);
        EXPECT_EQ(read_names(lacking, script), strange);
        EXPECT_EQ(read_names(setless, script), strange) << "nothing is missed without a set";
        expect_error([&] { read_names(failing, script); },
                     error::vxattribute_name_decoder_packageRef_unknown,
                     "Reference to unknown attribute name package.  PackageId: "
                     "938398af-baf5-af4f-824d-0dfe89bcccb9",
                     "vxattribute::AttributeNameDecoder::read_package_ref()");
    }
}

TEST(NameCoder, ExampleOfThePage) {
    auto const set = PackageSet::create(Package::create(Names{"port", "host"}));
    std::string const setBytes = from_hex(page_block("names.md", "hex-set"));
    EXPECT_EQ(to_hex(write_binary_form([&](auto & writer) { writer << set; })), to_hex(setBytes));
    MemoryReader setReader(list_of(setBytes));
    auto const setRead = PackageSet::create(setReader);

    AttributeValue const value = make_list<AttributeMap>(
        {make_map({{"port", 8080}}), make_map({{"host", make_map({{"port", 22}})}}),
         make_map({{"note", "x"}})});
    std::string const bytes = from_hex(page_block("names.md", "hex"));
    AttributeNameEncoder encoder(set);
    EXPECT_EQ(to_hex(write_binary_form(
                  [&](auto & writer) { write_attribute_value(writer, encoder, value); })),
              to_hex(bytes));
    MemoryReader reader(list_of(bytes));
    AttributeNameDecoder decoder(setRead, true);
    AttributeValue copy;
    read_attribute_value(reader, decoder, copy);
    EXPECT_EQ(copy, value);
}

TEST(NameCoder, BasesGoByFirstUseAndStay) {
    AttributeNameEncoder encoder(both());
    // Set order is P, Q; Q is used first here.
    EXPECT_EQ(write_names(encoder, {"three", "loose", "beta", "one", "alpha"}),
              qUuid + "; uint 0; uint 3; uint 1; key loose; " + pUuid +
                  "; uint 3; uint 2; uint 4; uint 0; uint 3");
    std::string const table = "record; list 2; " + qUuid + "; uint 0; uint 3; next; " + pUuid +
                              "; uint 3; uint 2; end; close";
    EXPECT_EQ(table_of(encoder), table);
    EXPECT_EQ(table_of(encoder), table) << "twice is the same";

    AttributeNameEncoder late(both());
    EXPECT_EQ(write_names(late, {"two", "one"}), qUuid + "; uint 0; uint 3; uint 2; uint 0");
    EXPECT_EQ(table_of(late), table) << "keeps the base that is given";
    EXPECT_EQ(write_names(late, {"beta", "two"}), "uint 4; uint 2");
}

TEST(NameCoder, SharedNamesGoToPackagesInUse) {
    auto const overlap = Package::create(Names{"beta", "delta"}); // its id is the lowest
    AttributeNameEncoder encoder(PackageSet::create(p())->create_union(overlap));
    EXPECT_EQ(write_names(encoder, {"alpha", "beta", "delta"}),
              pUuid + "; uint 0; uint 2; uint 0; uint 1; uuid 0096e8fe3a8c354aae5e6843dd9b94fa; "
                      "uint 2; uint 2; uint 3");
}

TEST(NameCoder, WithoutPackagesEveryNameIsAString) {
    for (auto const & set : {PackageSet::Ptr(), PackageSet::create()}) {
        AttributeNameEncoder encoder(set);
        EXPECT_EQ(encoder.package_set(), set);
        EXPECT_EQ(table_of(encoder), "record; list 0; end; close");
        EXPECT_EQ(write_names(encoder, {"alpha", ""}), "key alpha; key ");
    }
}

TEST(NameCoder, FailedWritesLeaveNoMapping) {
    for (std::size_t n = 1; n <= 4; ++n) {
        AttributeNameEncoder encoder(PackageSet::create(p()));
        RecordingWriter failing(n), failingTable(n);
        EXPECT_THROW(encoder.write_attribute_name(failing, "beta"), std::runtime_error);
        EXPECT_THROW(encoder.write_encoder_mappings(failingTable), std::runtime_error);
        EXPECT_EQ(write_names(encoder, {"beta"}), pUuid + "; uint 0; uint 2; uint 1");
    }
}

TEST(NameCoder, AssignmentsAreWholeOrNotMade) {
    AttributeNameEncoder encoder(PackageSet::create(p())), otherEncoder(both());
    AttributeNameDecoder decoder(PackageSet::create(p()), true), otherDecoder(both(), false);
    write_names(encoder, {"beta"});
    write_names(otherEncoder, {"two", "beta"});
    read_names(decoder, pUuid + "; uint 0; uint 2; uint 1");
    read_names(otherDecoder, qUuid + "; uint 0; uint 3; uint 1");
    unsigned long failures =
        vxtest::fail_each_allocation([&] { encoder = otherEncoder; },
                                     [&] { EXPECT_EQ(write_names(encoder, {"beta"}), "uint 1"); });
    failures += vxtest::fail_each_allocation(
        [&] { decoder = otherDecoder; },
        [&] { EXPECT_EQ(read_names(decoder, "uint 1"), Names{"beta"}); });
    EXPECT_EQ(failures, 2u);
    EXPECT_EQ(write_names(encoder, {"two"}), "uint 2");
    EXPECT_EQ(read_names(decoder, "uint 2"), Names{"two"});
}

TEST(NameCoder, TokensNeedAReferenceThatCoversThem) {
    // Size 0 covers nothing. References may leave gaps. 4294967295 is the last token. The count of
    // a list is not trusted.
    std::string const unknown = "uuid " + std::string(31, '0'), name = unknown.substr(5);
    AttributeNameDecoder decoder(nullptr, false);
    read_names(decoder, "record; list 4000000000; " + unknown + "1; uint 2; uint 0; next; " +
                            unknown + "2; uint 2; uint 3; next; " + unknown +
                            "3; uint 5; uint 0; next; " + unknown +
                            "4; uint 4294967290; uint 4294967295; end; close");
    EXPECT_EQ(read_names(decoder, "uint 2; uint 4; uint 4294967290; uint 4294967295; uint 3"),
              (Names{name + "2:0", name + "2:2", name + "4:0", name + "4:5", name + "2:1"}));
    for (std::string const token : {"0", "1", "5", "4294967289"}) {
        expect_error([&] { read_names(decoder, "uint " + token); },
                     error::vxattribute_name_decoder_unknownIndex,
                     "No attribute name package reference for attribute name token " + token,
                     "vxattribute::AttributeNameDecoder::read_attribute_name()");
    }
    expect_error([&] { read_names(decoder, unknown + "5; uint 4294967295; uint 1; uint 0"); },
                 error::vxattribute_name_decoder_packageRef_invalid,
                 "Invalid index range in package reference.  PackageId: "
                 "00000000-0000-0000-0000-000000000005",
                 "vxattribute::AttributeNameDecoder::read_package_ref()");
}

TEST(NameCoder, BadReferencesAreRefusedAndTheTableKept) {
    auto const & invalid = error::vxattribute_name_decoder_packageRef_invalid;
    std::string const unread = "Error reading package reference";
    std::string const qRef = qUuid + "; uint 7; uint 3; next; ";

    struct {
        std::string refs;
        vxcore::ErrorCode const & code;
        std::string text;
    } const rows[] = {
        {pUuid + "; uint 0; int 2", invalid, unread},
        {"key alpha", invalid, unread},
        {pUuid + "; uint 0; uint 3", invalid,
         "Package size mismatch in package reference.  PackageId: "
         "938398af-baf5-af4f-824d-0dfe89bcccb9"},
        {qRef + pUuid + "; uint 9; uint 3", invalid, // the range is reported before the size
         "Invalid index range in package reference.  PackageId: "
         "938398af-baf5-af4f-824d-0dfe89bcccb9"},
        {qRef + "uuid " + std::string(32, 'f') + "; uint 10; uint 3",
         error::vxattribute_name_decoder_packageRef_unknown,
         "Reference to unknown attribute name package.  PackageId: "
         "ffffffff-ffff-ffff-ffff-ffffffffffff"},
    };

    AttributeNameDecoder decoder(both(), true);
    EXPECT_EQ(read_names(decoder, qUuid + "; uint 0; uint 3; uint 2"), Names{"two"});
    for (auto const & row : rows) {
        auto const info = expect_error(
            [&] { read_names(decoder, "record; list 1; " + row.refs + "; end; close"); }, row.code,
            row.text);
        EXPECT_EQ(info->nested() != nullptr, row.text == unread);
        EXPECT_EQ(read_names(decoder, "uint 1"), Names{"three"}) << row.text;
    }
    std::string const unclosed = "record; list 0; " + pUuid + "; uint 0; uint 2; end; int 1";
    EXPECT_THROW(read_names(decoder, unclosed), std::runtime_error);
    EXPECT_EQ(read_names(decoder, "uint 1"), Names{"three"}) << "the record has to end";
}

/// Returns three levels of maps with names of both packages and of neither. The arguments are the
/// names of Q.
AttributeMap mixed(std::string const & one, std::string const & two, std::string const & three) {
    AttributeMap const inner = make_map({{"alpha", 1}, {two, "x"}, {"loose", true}});
    AttributeMap const middle =
        make_map({{"beta", make_list<AttributeMap>({inner, make_map({{three, inner}})})},
                  {one, 2.5},
                  {"free", AttributeValue()}});
    return make_map({{one, middle}, {"alpha", "y"}, {"outer", middle}, {"", 7}});
}

TEST(NameCoder, MixedStreamsReadBackEqual) {
    AttributeMap const map = mixed("one", "two", "three");
    AttributeMap const withoutQ = mixed(qDigits + ":0", qDigits + ":2", qDigits + ":1");
    auto const onlyP = PackageSet::create(p());
    for (bool const withTable : {false, true}) {
        auto const write = [&](Writer & writer) {
            AttributeNameEncoder encoder(both());
            if (withTable) {
                encoder.write_encoder_mappings(writer);
            }
            map.write(writer, encoder);
        };
        std::string const text = write_text_form(write);
        EXPECT_EQ(text.find("{938398af"), text.rfind("{938398af")) << "one reference is enough";
        MutableAttributeMap target = make_map({{"kept", 1}});
        auto const read = [&](PackageSet::Ptr const & set, bool strict) {
            auto const read_from = [&](Reader & reader) {
                AttributeNameDecoder decoder(set, strict);
                if (withTable) {
                    decoder.read_decoder_mappings(reader);
                }
                target.read(reader, decoder);
            };
            MemoryReader binary(list_of(write_binary_form(write), 3));
            read_from(binary);
            AttributeMap const fromBinary = target;
            read_text_form(text, read_from);
            EXPECT_EQ(fromBinary, target);
        };
        expect_error([&] { read(onlyP, true); }, error::vxattribute_name_decoder_packageRef_unknown,
                     "Reference to unknown attribute name package.  PackageId: "
                     "ea15b5cf-dfec-0640-b2f4-ccc5dc2b5860");
        EXPECT_EQ(target, make_map({{"kept", 1}}));
        read(both(), true);
        EXPECT_EQ(target, map);
        read(onlyP, false);
        EXPECT_EQ(target, withoutQ);
    }
}

TEST(NameCoder, AMapHandsTheCoderDownAndAnAttributeDoesNot) {
    Attribute const attribute("beta", make_map({{"alpha", 1}}));
    AttributeNameEncoder encoder(both());
    RecordingWriter writer;
    AttributeNameEncoderFunctor const write(encoder);
    write(writer, attribute);
    write(writer, make_map({{"beta", 2}}));
    EXPECT_EQ(writer.script, pUuid +
                                 "; uint 0; uint 2; uint 1; uint 12; list 1; list 1; key alpha; "
                                 "int 1; end; end; list 1; uint 1; int 2; end");
    ScriptedReader reader(writer.script +
                          "; uint 1; uint 12; list 1; list 1; uint 0; int 1; end; end");
    AttributeNameDecoder decoder(both(), true);
    AttributeNameDecoderFunctor const read(decoder);
    Attribute copy;
    MutableAttributeMap map;
    read(reader, copy);
    read(reader, map);
    EXPECT_EQ(copy, attribute);
    EXPECT_EQ(map, make_map({{"beta", 2}}));
    EXPECT_THROW(read(reader, copy), std::runtime_error) << "a token inside";
}

} // namespace
