#include "support/allocation.h"
#include "support/cases.h"
#include "support/expect_error.h"
#include "support/passing_writer.h"

#include "vxattribute/json/text_writer_target_internal.h"
#include "vxattribute/samples.h"
#include "vxattribute/value_forms.h"
#include "vxcore/error_exception.h"
#include "vxjson/string_target.h"

#include <bit>
#include <limits>
#include <numeric>

namespace {

using namespace vxattribute;

vxcore::ErrorCode const readerCode("error.vxjson.reader", true);

/// Returns the failure as a line of the table.
std::string line_of(vxcore::ErrorInfo const & info) {
    std::string const line = info.text() + " in " + info.location().function().data();
    return "! " + line + (info.nested() ? std::string(": ") + info.nested()->code().name() : "");
}

TEST(JsonMarshaler, ReadsAndWritesAsInTheTable) {
    auto const check = [](std::string const & line, std::string const & expected, auto const &) {
        std::string const text = vxtest::decode(line);
        vxjson::Document::Options options;
        options.reader.allow_reserved_names = true;
        vxjson::Document document(text.data(), text.size(), options);
        AttributeValue value = "kept", wanted;
        try {
            read_attribute_value(document.reader(), value);
        } catch (vxcore::ErrorException const & e) {
            EXPECT_EQ(line_of(*e.info()), expected);
            EXPECT_EQ(e.info()->code(), readerCode);
            EXPECT_EQ(value, AttributeValue("kept"));
            EXPECT_EQ(document.reader().error(), e.info());
            EXPECT_EQ(document.reader().current(), nullptr);
            return;
        }
        std::size_t const arrow = expected.find(" -> ");
        vxtest::read_text(expected.substr(0, arrow), wanted);
        EXPECT_EQ(value, wanted) << text;
        EXPECT_EQ(value_from_json(text), wanted) << text;
        std::string const written =
            arrow == expected.npos ? text : vxtest::decode(expected.substr(arrow + 4));
        EXPECT_EQ(value_to_json(value), written);
        EXPECT_EQ(value_to_json(make_map({{"a", value}})), "{\"a\":" + written + "}");
    };
    EXPECT_GT(vxtest::for_each_case("vxattribute/json/forms.txt", check), 50);
    AttributeValue const late = value_from_json(R"({"a":{"b":1,"vxserialize":"true"}})");
    EXPECT_EQ(late,
              AttributeValue(make_map({{"a", make_map({{"b", 1}, {"vxserialize", "true"}})}})));
    EXPECT_EQ(value_from_json(value_to_json(late)), late);
    std::string text = "late = ";
    vxjson::StringTarget target(text);
    write_json(target, late);
    EXPECT_EQ(text, "late = " + value_to_json(late));
}

TEST(JsonMarshaler, WholeTextsAreOneDocument) {
    for (char const * const text : {"", "[1e400]", "1", "{} {}", "[1,]"}) {
        EXPECT_THROW(value_from_json(text), vxcore::ErrorException) << text;
    }
}

TEST(JsonMarshaler, DefaultOptionsTakeEveryNameThatMapsHave) {
    AttributeValue const word = make_map({{"class", 1}});
    std::string const text = value_to_json(word);
    vxtest::StringStream stream(text, false);
    EXPECT_EQ(value_from_json(text, {}), word);
    EXPECT_EQ(value_from_json(stream, {}), word);
    EXPECT_EQ(value_from_json("{'class':1}", JsonReadOptions{.allow_single_quotes = true}), word);
    EXPECT_THROW(value_from_json(text, vxjson::Document::Options()), vxcore::ErrorException);
}

TEST(JsonMarshaler, ReadsMapsFromObjectsOnly) {
    using namespace vxattribute::literals;
    std::string const text = R"({"a":1})";
    vxtest::StringStream stream(text, false);
    AttributeMap const map = map_from_json(stream);
    EXPECT_EQ(AttributeValue(map), R"({"a":1})"_vxjson);
    EXPECT_EQ(map, R"([{"a":1}])"_vxmap);
    EXPECT_EQ(map, map_from_json("{'a':1}", {.allow_single_quotes = true}));
    vxtest::expect_error([] { map_from_json("[1]"); }, error::vxattribute_value_type_mismatch,
                         "Expected a JSON object, found a value of type Integer");
    vxtest::expect_error([] { map_from_json("[{},{}]"); },
                         error::vxattribute_value_cardinality_expectSingle,
                         "Expected one JSON object, found 2");
}

TEST(JsonMarshaler, EveryTypeComesBackEqual) {
    AttributeValue const trap = make_map({{"vxserialize", "1"}, {"", make_map({{"", 2.5}})}});
    auto const check = [](AttributeValue const & value) {
        for (bool const sorted : {false, true}) {
            std::string const text = value_to_json(value, {sorted ? 2u : 0u, sorted, sorted});
            EXPECT_EQ(value_from_json(text), value) << text;
            vxtest::StringStream stream(text, false);
            EXPECT_EQ(value_from_json(stream), value) << text;
        }
    };
    for (vxtest::Sample const & sample : vxtest::samples()) {
        AttributeMap const map = make_map({{"a", sample.value}, {"b", trap}});
        AttributeMap const around = make_map({{"c", make_list<AttributeMap>({map, {}, map})}});
        check(map);
        check(make_list<AttributeMap>({around, map}));
    }
    for (std::uint64_t const bits : std::initializer_list<std::uint64_t>{
             0x7FF8000000000001u, 0xFFF0000000000123u, 0x8000000000000000u, 0x3FB999999999999Au,
             0x0000000000000001u}) {
        auto const number = std::bit_cast<double>(bits);
        AttributeValue const back = value_from_json(value_to_json(number));
        EXPECT_EQ(std::bit_cast<std::uint64_t>(back.get<double>()), bits);
    }
}

TEST(JsonMarshaler, DoublesAreNumbersWhereThisIsAsked) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    AttributeValue const none(ValueTypeId::typeDouble);
    AttributeMap const map = make_map({{"a", 0.1 + 0.2},
                                       {"b", 2.0},
                                       {"c", make_list<double>({1.5, 2, 5e-324})},
                                       {"d", make_list<double>({1, infinity})},
                                       {"e", make_map({{"f", none}, {"g", -0.0}, {"h", 1e300}})}});
    std::string const text =
        R"({"a":0.30000000000000004,"b":2.0,"c":[1.5,2.0,5e-324],"d":{"vxserialize":"4u [2: 1.0, inf]"},)"
        R"("e":{"f":{"vxserialize":"4u []"},"g":-0.0,"h":1e+300}})";
    JsonTextOptions const options{.sorted_names = true, .doubles = eJsonDoubles_Numbers};
    EXPECT_EQ(value_to_json(map, options), text);
    std::string again = text; // whole numbers come back as integers
    again.replace(again.find("2.0"), 3, "2").replace(again.find("-0.0"), 4, "0");
    EXPECT_EQ(value_to_json(value_from_json(text), options), again);
}

TEST(JsonMarshaler, ReadsDocumentsAndPlacesOneAfterTheOther) {
    std::string const text = R"({"a":1}["b"]{"c":[{"d":2},{"e":[]}],"f":"g"}{})";
    vxjson::Document document(text.data(), text.size());
    vxjson::Reader & reader = document.reader();
    EXPECT_EQ(read_attribute_value(reader), AttributeValue(make_map({{"a", 1}})));
    EXPECT_EQ(read_attribute_value(reader), AttributeValue("b"));
    auto const object = reader.current();
    auto child = reader.next_child(object);
    EXPECT_EQ(
        read_attribute_value(reader),
        make_list<AttributeMap>(
            {make_map({{"d", 2}}), make_map({{"e", AttributeValue(ValueTypeId::typeString)}})}));
    child = reader.next_child(object);
    EXPECT_EQ(child->as_string(), "g");
    EXPECT_EQ(read_attribute_value(reader), AttributeValue("g"));
    EXPECT_EQ(child->as_string(), "g") << "the caller's value keeps its text";
    EXPECT_EQ(reader.next_child(object), nullptr);
    EXPECT_EQ(read_attribute_value(reader), AttributeValue(make_map({})));
    EXPECT_EQ(reader.next_value(), nullptr);
}

TEST(JsonMarshaler, LosslessTextGoesInPiecesOf2048) {
    using Pieces = std::vector<unsigned int>;
    using Target = impl::JsonStringTarget<vxjson::Writer &>;
    std::string data(10'000, 'x');
    std::iota(data.begin(), data.begin() + 26, 'a');
    for (auto const & [sizes, pieces] :
         std::initializer_list<std::pair<Pieces, Pieces>>{{{5000}, {2048, 2952}},
                                                          {{3000}, {2048, 952}},
                                                          {{4096}, {2048, 2048}},
                                                          {{2048, 2048}, {2048, 2048}},
                                                          {{100, 5000}, {2048, 3052}},
                                                          {{2047, 1, 1}, {2048, 1}},
                                                          {{}, {}}}) {
        std::string text, expected;
        vxjson::TextWriter whole(text);
        vxtest::PassingWriter writer(whole);
        Target target(writer);
        writer.begin_string();
        for (unsigned int const size : sizes) {
            size == 1 ? target.write_char('a') : target.write_data(data.data(), size);
            expected.append(data, 0, size);
        }
        target.flush();
        writer.end_string();
        whole.finish();
        EXPECT_EQ(writer.pieces, pieces);
        EXPECT_EQ(text, '"' + expected + '"');
    }
    for (std::size_t size = 2030; size < 2060; ++size) { // an escape lies across the boundary
        AttributeMap const map = make_map({{"", std::string(size, 'x') + "\"\xC3\xA4\\"}});
        EXPECT_EQ(value_from_json(value_to_json(map)), AttributeValue(map)) << size;
    }
    std::string text;
    vxjson::TextWriter whole(text);
    vxtest::PassingWriter writer(whole);
    write_attribute_value(writer, BinaryValue(3'000'000));
    EXPECT_EQ(std::accumulate(writer.pieces.begin(), writer.pieces.end(), 0u), 6'000'001u);
    EXPECT_EQ(*std::max_element(writer.pieces.begin(), writer.pieces.end()), 2048u);
}

TEST(JsonMarshaler, EveryWriterReceivesTheSame) {
    std::vector<AttributeValue> values;
    for (vxtest::Sample const & sample : vxtest::samples()) {
        values.push_back(sample.value);
        values.push_back(make_list<AttributeMap>({make_map({{"a", sample.value}}), {}}));
    }
    for (char const * const text : {"\"", "\n", "\xC3\xA4", "\xFF", "more than 16 bytes\xE2\x82"}) {
        values.push_back(make_map({{"a", make_map({{"b", make_list<std::string>({"c", text})}})}}));
        values.push_back(make_map({{text, 1}}));
    }
    for (unsigned int flags = 0; flags != 16; ++flags) {
        vxjson::TextWriter::Options options;
        options.indent = flags & 1 ? 3 : 0;
        options.ascii_only = (flags & 2) != 0;
        options.validate_utf8 = (flags & 4) != 0;
        options.max_depth = flags & 8 ? 2 : 256;
        for (AttributeValue const & value : values) {
            EXPECT_EQ(vxtest::write_value(value, options, false),
                      vxtest::write_value(value, options, true));
        }
    }
}

TEST(JsonMarshaler, NoAllocationThatFailsLeavesAnythingBehind) {
    long const before = vxtest::live_blocks();
    for (std::string const comma : {",", " "}) { // without a comma, a reader takes over at the end
        std::string const text =
            R"([{"a":[1,2,300],"b":"a string beyond the small ones"},)"
            R"({"a name beyond the small ones":[1.5,2],"c":[true,false],"d":["x"],)"
            R"("e":{"vxserialize":"3u [<x>]"}}])";
        std::string source = text;
        source.replace(source.rfind(",\"e\""), 1, comma);
        AttributeValue const expected = value_from_json(text);
        std::string const written = value_to_json(expected);
        AttributeValue value = "kept";
        for (unsigned long n = 1; value == AttributeValue("kept"); ++n) {
            try {
                vxjson::Document document(source.data(), source.size());
                vxtest::fail_allocation(n);
                read_attribute_value(document.reader(), value);
                vxtest::fail_allocation(0);
                EXPECT_GT(n, 10u);
            } catch (std::exception const &) { // in "vxserialize" it is an error's cause
                vxtest::fail_allocation(0);
            }
        }
        EXPECT_EQ(value, expected);
        vxtest::fail_each_allocation([&] { EXPECT_EQ(value_to_json(value), written); },
                                     [&] { ASSERT_EQ(value, expected); });
    }
    EXPECT_LE(vxtest::live_blocks() - before, 40) << "slabs that threads keep";
}

TEST(JsonMarshaler, ArraysOfNumbersMakeNoObjectPerElement) {
    std::string text = "[1";
    for (int i = 0; i < 10'000; ++i) {
        text += ",2";
    }
    text += "]";
    EXPECT_LT(vxtest::count_allocations([&] { value_from_json(text); }), 60u);
}

} // namespace
