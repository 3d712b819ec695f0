// The rule under test: a value becomes the expected sequence of operations, every sequence becomes
// a value again, and a stream that fails changes nothing. values.txt lists the operations of each
// type; trace_test.cpp checks them.

#include "support/cases.h"
#include "support/expect_error.h"
#include "support/threads.h"

#include "vxattribute/samples.h"
#include "vxattribute/stream/scripted_reader.h"
#include "vxattribute/value_forms.h"

namespace {

using namespace vxattribute;
using vxtest::expect_error;
using vxtest::ScriptedReader;

TEST(Marshaler, WorkedExample) {
    AttributeMap const map = make_map({{"y", make_list<std::string>({"s", "t"})},
                                       {"\xc3\xa4", make_map({{"w", true}})},
                                       {"x", 5},
                                       {"", 4},
                                       {"Y", {}}});
    std::string const expected =
        "[5: <> 4, <Y> null, <x> 5, <y> 3u [2: <s>, <t>], <%c3%a4> 12u [[<w> true]]]";
    StreamOptions const sorted{.sorted_names = true};
    EXPECT_EQ(vxtest::write_text_form([&](auto & w) { write_attribute_value(w, map, sorted); }),
              "12u [" + expected + "]");
    EXPECT_EQ(vxtest::write_text_form([&](auto & w) { write_attribute_map(w, map, sorted); }),
              expected);
    EXPECT_EQ(vxtest::write_text_form([](auto & w) { make_map({{"n", 1}}).write(w); }), "[<n> 1]");
}

TEST(Marshaler, AListThatShrankIsOneElement) {
    AttributeValue shrunk = make_list<double>({1, 2});
    shrunk.set(1.0);
    EXPECT_EQ(vxtest::write_text(shrunk), "1.0");
}

TEST(Marshaler, ReadsWhatOtherWritersMaySend) {
    auto const check = [](std::string const & script, std::string const & text, auto const &) {
        ScriptedReader reader(script);
        AttributeValue value;
        read_attribute_value(reader, value);
        EXPECT_EQ(vxtest::write_text(value) + " " + std::to_string(reader.rest()), text) << script;
    };
    EXPECT_EQ(vxtest::for_each_case("vxattribute/stream/scripts.txt", check), 13);
}

TEST(Marshaler, FailuresLeaveTheTargetUnchanged) {
    AttributeValue value("kept");
    for (char const * text : {"uint 2; string s", "uint 2; list 2; int 1; next; string s; end",
                              "uint 12; list 2; list 1; key a; uint 99; end; end"}) {
        ScriptedReader reader(text);
        EXPECT_ANY_THROW(read_attribute_value(reader, value)) << text;
        EXPECT_EQ(value, "kept");
    }
    for (std::string const tag : {"15", "4294967295"}) {
        ScriptedReader reader("uint " + tag + "; list 0; end");
        expect_error([&] { read_attribute_value(reader, value); },
                     error::vxattribute_value_type_unknown,
                     "Unknown marshaled attribute type id.  Value=" + tag,
                     "vxattribute::read_attribute_value_aux()");
    }
    ScriptedReader reader("key new; uint 99");
    Attribute attribute("old", 1);
    EXPECT_ANY_THROW(attribute.read(reader));
    EXPECT_EQ(attribute, Attribute("new", 1)) << "the name is read first and stays";
}

AttributeValue through_binary(AttributeValue const & value) {
    AttributeValue result;
    vxtest::read_binary(vxtest::write_binary(value), result);
    return result;
}

AttributeValue through_text(AttributeValue const & value) {
    AttributeValue result;
    vxtest::read_text(vxtest::write_text(value), result);
    return result;
}

TEST(Marshaler, EveryTypeSurvivesBothForms) {
    MutableAttributeMap all;
    for (vxtest::Sample const & sample : vxtest::samples()) {
        all.add(sample.name + std::to_string(all.size()), sample.value);
        EXPECT_EQ(through_binary(all), AttributeValue(all)) << sample.name;
        EXPECT_EQ(through_text(sample.value), sample.value) << sample.name;
    }
}

/// Map in map as deep as streams allow: each level opens two lists.
AttributeValue nested(int levels) {
    AttributeValue value(1);
    for (int i = 0; i < levels; ++i) {
        value = make_map({{"nested", value}});
    }
    return value;
}

TEST(MarshalerDepth, DeepestNestingWorksOnASmallStack) {
    AttributeValue const deepest = nested(256), same = nested(256);
    vxtest::on_small_stack([&] {
        AttributeValue const binary = through_binary(deepest);
        EXPECT_EQ(binary, deepest);
        EXPECT_EQ(through_text(deepest), same);
        EXPECT_EQ(to_text(binary), to_text(deepest));
    });
    EXPECT_THROW(through_binary(nested(257)), vxcore::ErrorException);
    EXPECT_THROW(through_text(nested(257)), vxcore::ErrorException);
}

} // namespace
