// The rules under test: each short call writes what a writer writes, and reads that back; maps and
// values of one map are read as either; all else is refused clearly.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/samples.h"
#include "vxattribute/value_forms.h"
#include "vxcore/output_sink.h"
#include "vxserialize/error_codes.h"

namespace {

using namespace vxattribute;
using vxtest::expect_error;
namespace data = vxserialize::error;

AttributeMap const config = make_map({{"host", "x"}, {"port", 80}});

AttributeNamePackageSet::Ptr packages() {
    return AttributeNamePackageSet::create(
        AttributeNamePackage::create(std::vector<AttributeName>{"host", "port"}));
}

TEST(Bytes, AreThoseOfAWriterAndComeBack) {
    for (vxtest::Sample const & sample : vxtest::samples()) {
        std::string const bytes = to_bytes(sample.value), text = to_text_form(sample.value);
        EXPECT_EQ(bytes, vxtest::write_binary(sample.value)) << sample.name;
        EXPECT_EQ(vxtest::bytes_of(to_memory_list(sample.value)), bytes) << sample.name;
        EXPECT_EQ(text, vxtest::write_text(sample.value)) << sample.name;
        EXPECT_EQ(value_from_bytes(bytes), sample.value) << sample.name;
        EXPECT_EQ(value_from_text_form(text + " \n"), sample.value) << sample.name;
    }
    EXPECT_EQ(to_text_form(make_map({{"b", 1}, {"a", 2}}), {.indent = 1, .sorted_names = true}),
              "[2:\n <a> 2,\n <b> 1\n]");
}

TEST(Bytes, OfMapsAndOfValuesOfOneMapAreReadAsEither) {
    AttributeValue const value = config;
    for (auto const & coder : {AttributeNamePackageSet::Ptr(), packages()}) {
        for (std::string const & bytes : {to_bytes(config, coder), to_bytes(value, coder)}) {
            EXPECT_EQ(map_from_bytes(bytes, coder), config);
            EXPECT_EQ(value_from_bytes(bytes, coder), value);
            EXPECT_EQ(map_from_bytes(to_bytes(config), coder), config);
        }
        for (std::string const & text : {to_text_form(config, coder), to_text_form(value, coder)}) {
            EXPECT_EQ(map_from_text_form(text, coder), config);
            EXPECT_EQ(value_from_text_form(text, coder), value);
        }
    }
    expect_error([] { map_from_bytes(to_bytes("x")); }, error::vxattribute_value_type_mismatch,
                 "Expected one map and found a value of type 'String'");
    expect_error(
        [] {
            map_from_text_form(to_text_form(make_list<AttributeMap>({{}, {}})));
        },
        error::vxattribute_value_cardinality_expectSingle,
        "Expected one map and found a list of 2 maps");
}

TEST(Bytes, EndWithTheirValue) {
    expect_error([] { value_from_bytes(to_bytes(AttributeMap()) + "x"); }, data::vxserialize_data,
                 "Ill-formed serialized data at byte 1: data follows the last element");
    expect_error(
        [] {
            map_from_bytes(to_bytes(make_map({{"a", 1}})) + '\0');
        },
        data::vxserialize_data,
        "Ill-formed serialized data at byte 4: data follows the last element");
    expect_error([] { value_from_text_form("5\t 6"); }, data::vxserialize_data,
                 "Ill-formed serialized data at byte 3: data follows the last element");
}

TEST(Bytes, WithCodedNamesAskForThePackages) {
    char const * const hint = "The names are written as numbers of attribute name packages, and no "
                              "packages are given to read them with";
    AttributeMap const outer = make_map({{"inner", config}});
    auto const failure = expect_error([&] { map_from_bytes(to_bytes(outer, packages())); },
                                      data::vxserialize_data_type, hint);
    ASSERT_TRUE(failure && failure->nested());
    EXPECT_EQ(failure->nested()->text(), "Expected a string at byte 10 and found a UUID");
    expect_error([&] { value_from_text_form(to_text_form(outer, packages())); },
                 data::vxserialize_data_type, hint);
    expect_error(
        [] { value_from_text_form("3u [2: <a>, {00000000-0000-0000-0000-000000000000}]"); },
        data::vxserialize_data_type, "Expected a string at byte 12 and found a UUID");
    expect_error(
        [&] { map_from_bytes(to_bytes(config, packages()), AttributeNamePackageSet::create()); },
        error::vxattribute_name_decoder_packageRef_unknown,
        "Reference to unknown attribute name package.  PackageId: "
        "32d8cf0a-6e54-3341-97bc-23dc70f3774e");
}

TEST(Bytes, ReachASinkAllOrNotAtAll) {
    std::string bytes;
    bytes.reserve(5000);
    vxcore::StringSink sink(bytes);
    AttributeMap const map = make_map({{"text", std::string(1000, 'x')}});
    EXPECT_GT(vxtest::fail_each_allocation([&] { write_bytes(sink, map, packages()); },
                                           [&] { EXPECT_EQ(bytes, ""); }),
              3u);
    EXPECT_EQ(bytes, to_bytes(map));
}

} // namespace
