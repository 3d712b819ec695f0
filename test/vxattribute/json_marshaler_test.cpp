#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/streams.h"

#include "vxattribute/json_text_writer_target_internal.h"
#include "vxattribute/samples.h"

#include <bit>
#include <limits>
#include <numeric>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

vxcore::ErrorCode const readerCode("error.vxjson.reader", true);

/// A value with what is in it by its type: values of different types are never equal.
struct Reading {
    char const * text;
    AttributeValue value;
    char const * written; // null: the same text
};

std::vector<Reading> readings() {
    std::vector<Reading> all{
        // Objects and empty containers
        {"{}", make_map({}), nullptr},
        {"[]", AttributeValue(ValueTypeId::typeString), nullptr},
        {R"({"a":null})", make_map({{"a", AttributeValue()}}), nullptr},
        {R"({"a":{"a":{}}})", make_map({{"a", make_map({{"a", make_map({})}})}}), nullptr},
        {R"({"a":1,"a":[2]})", make_map({{"a", 2}}), R"({"a":2})"},
        {R"({"class":"\u00e9\u0000\n"})", make_map({{"class", std::string("\xc3\xa9\0\n", 4)}}),
         "{\"class\":\"\xc3\xa9\\u0000\\n\"}"},
        // Arrays
        {R"(["a","","b"])", make_list<std::string>({"a", "", "b"}), nullptr},
        {R"([""])", "", R"("")"},
        {"[true,false]", make_list<bool>({true, false}), nullptr},
        {"[true]", true, "true"},
        {"[5]", 5, "5"},
        {"[1,2,-3]", make_list<long long>({1, 2, -3}), nullptr},
        {"[1,2.5]", make_list<double>({1, 2.5}), R"({"vxserialize":"4u [2: 1.0, 2.5]"})"},
        {"[1,1e300]", make_list<double>({1, 1e300}), R"({"vxserialize":"4u [2: 1.0, 1e+300]"})"},
        {R"([{},{"a":["x"]}])", make_list<AttributeMap>({AttributeMap(), make_map({{"a", "x"}})}),
         R"([{},{"a":"x"}])"},
        {R"([{"a":[{"b":1},{"b":2}]}])",
         make_map({{"a", make_list<AttributeMap>({make_map({{"b", 1}}), make_map({{"b", 2}})})}}),
         R"({"a":[{"b":1},{"b":2}]})"},
        // The number rule
        {"[1.0]", 1, "1"},
        {"[1e3]", 1000, "1000"},
        {"[-0.0]", 0, "0"},
        {"[1.5]", 1.5, R"({"vxserialize":"1.5"})"},
        {"[1e-400]", 0, "0"},
        {"[9007199254740992,-9007199254740992]",
         make_list<long long>({9007199254740992, -9007199254740992}), nullptr},
        {"[9007199254740993]", 9007199254740992, "9007199254740992"},
        {"[9007199254740994]", 9007199254740994, R"({"vxserialize":"9007199254740994"})"},
        {"[-9223372036854775808]", std::numeric_limits<long long>::min(),
         R"({"vxserialize":"-9223372036854775808"})"},
        {"[9223372036854775807]", 0x1p63, R"({"vxserialize":"9223372036854775808.0"})"},
        {"[9223372036854774784]", 9223372036854774784, // the largest double below 2^63
         R"({"vxserialize":"9223372036854774784"})"},
        {"[-9223372036854777856]", -0x1.0000000000001p63,
         R"({"vxserialize":"-9223372036854777856.0"})"},
        {"[-9007199254740993]", -9007199254740992, "-9007199254740992"},
        {"[4503599627370495.5]", 0x1.fffffffffffffp51, R"({"vxserialize":"4503599627370495.5"})"},
        // The lossless form: only as the first property, and not for an element of an array
        {R"({"vxserialize":"9007199254740993"})", 9007199254740993, nullptr},
        {R"({"vxserialize":" \u0031u [] behind","b":[{"c":"d"}],"e":"f"})",
         AttributeValue(ValueTypeId::typeBoolean), R"({"vxserialize":"1u []"})"},
        {R"({"a":{"vxserialize":"2.5"},"a":{"vxserialize":"null","x":{}}})",
         make_map({{"a", AttributeValue()}}), R"({"a":null})"},
        {R"({"vxserializes":1})", make_map({{"vxserializes", 1}}), nullptr},
        {R"([{"vxserialize":{"vxserialize":"true"}}])", make_map({{"vxserialize", true}}),
         R"({"vxserialize":"12u [[<vxserialize> true]]"})"}};
    return all;
}

TEST(JsonMarshaler, ReadsAndWritesAsTheTableTells) {
    for (auto const & [text, value, written] : readings()) {
        EXPECT_EQ(value_from_json(text), value) << text;
        EXPECT_EQ(value_to_json(value), written != nullptr ? written : text);
    }
    AttributeValue const late = value_from_json(R"({"a":{"b":1,"vxserialize":"true"}})");
    EXPECT_EQ(late,
              AttributeValue(make_map({{"a", make_map({{"b", 1}, {"vxserialize", "true"}})}})));
    EXPECT_EQ(value_from_json(value_to_json(late)), late);
}

TEST(JsonMarshaler, WritesInTheLosslessFormWhatHasNoPlainOne) {
    using Limits = std::numeric_limits<double>;

    struct Row {
        AttributeValue value;
        char const * text; // what "vxserialize" holds
    };

    long long const beyond = (1LL << 53) + 1;
    std::vector<Row> const rows{
        {1.0, "1.0"},
        {-0.0, "-0.0"},
        {-Limits::infinity(), "-inf"},
        {Limits::quiet_NaN(), "nan(7ff8000000000000)"},
        {Limits::denorm_min(), "5e-324"},
        {beyond, "9007199254740993"},
        {make_list<long long>({1, -beyond}), "2u [2: 1, -9007199254740993]"},
        {AttributeValue(ValueTypeId::typeInteger), "2u []"},
        {AttributeValue(ValueTypeId::typeAttributeMap), "12u []"},
        {make_map({{"", 1}}), "12u [[<> 1]]"},
        {make_list<AttributeMap>({AttributeMap(), make_map({{"vxserialize", "x"}})}),
         "12u [2: [], [<vxserialize> <x>]]"}};
    for (auto const & [value, text] : rows) {
        std::string const json = std::string(R"({"vxserialize":")") + text + "\"}";
        EXPECT_EQ(value_to_json(value), json);
        EXPECT_EQ(value_to_json(make_map({{"a", value}})), "{\"a\":" + json + "}");
    }
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

TEST(JsonMarshaler, FailuresEndTheReaderAndLeaveTheTarget) {
    struct Row {
        char const * text;
        char const * message;
        char const * function;
    };

    char const * const array = "vxattribute::impl::read_json_array()";
    char const * const serialized = "vxattribute::impl::read_serialized_attribute_value()";
    for (auto const & [text, message, function] : std::initializer_list<Row>{
             {"", "[line 1, pos 1]: Expecting JSON value", "read_attribute_value()"},
             {R"({"a":[1,"b"]})",
              "[line 1, pos 10]: All array elements must be of same type.  Expecting 'Number' "
              "found "
              "'String'.",
              array},
             {"[{},[]]",
              "[line 1, pos 5]: All array elements must be of same type.  Expecting 'Object' found "
              "'Array'.",
              array},
             {"[true,\nnull]",
              "[line 2, pos 5]: All array elements must be of same type.  Expecting 'Boolean' "
              "found 'Null'.",
              array},
             {"[[1]]", "[line 1, pos 2]: Array of Array elements not supported.", array},
             {R"({"a":[null]})", "[line 1, pos 11]: Array of null elements not supported.", array},
             {R"({"vxserialize":1})",
              "[line 1, pos 17]: Value of \"vxserialize\" property must be of type 'String'.",
              serialized}}) {
        vxjson::Document document(text, std::strlen(text));
        AttributeValue value = "kept";
        auto const info = expect_error([&] { read_attribute_value(document.reader(), value); },
                                       readerCode, message);
        ASSERT_NE(info, nullptr);
        EXPECT_STREQ(info->location().function().data(), function);
        EXPECT_EQ(value, AttributeValue("kept"));
        EXPECT_EQ(document.reader().error(), info);
        EXPECT_EQ(document.reader().current(), nullptr);
    }
    EXPECT_THROW(value_from_json("[1e400]"), vxcore::ErrorException);
    EXPECT_THROW(value_from_json("1"), vxcore::ErrorException);
    EXPECT_THROW(value_from_json("{} {}"), vxcore::ErrorException);
    EXPECT_THROW(value_from_json("[1,]"), vxcore::ErrorException);
}

TEST(JsonMarshaler, BadLosslessTextTellsWhatIsBehindIt) {
    // What the text lacks, and what the tokenizer finds within it.
    for (auto const & [held, code] : std::initializer_list<std::array<char const *, 2>>{
             {"", "error.vxserialize.data.truncated"},
             {"<cut", "error.vxserialize.data.truncated"},
             {"99u", "error.vxattribute.value.type.unknown"},
             {"[]", "error.vxserialize.data.type"},
             {"<\\x>", "error.vxjson.reader.tokenizer.syntaxError"}}) {
        std::string const text = std::string(R"([{"a":{"vxserialize":")") + held + "\"}}]";
        vxjson::Document document(text.data(), text.size());
        try {
            read_attribute_value(document.reader());
            ADD_FAILURE() << held;
        } catch (vxcore::ErrorException const & e) {
            EXPECT_EQ(e.info()->code(), readerCode);
            EXPECT_TRUE(e.info()->text().ends_with(
                "]: String value is not a valid vxserialize Text serialized AttributeValue."));
            ASSERT_NE(e.info()->nested(), nullptr);
            EXPECT_STREQ(e.info()->nested()->code().name(), code);
        }
    }
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

/// Notes the sizes of the pieces of strings.
class PieceWriter final : public vxjson::Writer {
  public:
    void write_name(char const *, unsigned int) override {}

    void write_number(char const *, unsigned int) override { FAIL(); }

    void write_string(char const *, unsigned int) override {}

    void write_bool(bool) override {}

    void write_integer(long long) override {}

    void write_unsigned(unsigned long long) override { FAIL(); }

    void write_double(double) override { FAIL(); }

    void write_null() override {}

    void begin_object() override {}

    void end_object() override {}

    void begin_array() override {}

    void end_array() override {}

    void begin_string() override {}

    void write_string_data(char const * data, unsigned int size) override {
        pieces.push_back(size);
        text.append(data, size);
    }

    void end_string() override {}

    std::vector<unsigned int> pieces;
    std::string text; // of the pieces
};

TEST(JsonMarshaler, LosslessTextGoesInPiecesOf2048) {
    using Pieces = std::vector<unsigned int>;
    using Target = impl::JsonRenderVisitor::TextWriterTarget;
    std::string data(10'000, '\0');
    std::iota(data.begin(), data.end(), '\0');
    for (auto const & [sizes, pieces] :
         std::initializer_list<std::pair<Pieces, Pieces>>{{{5000}, {2048, 2952}},
                                                          {{3000}, {2048, 952}},
                                                          {{4096}, {2048, 2048}},
                                                          {{2048, 2048}, {2048, 2048}},
                                                          {{100, 5000}, {2048, 3052}},
                                                          {{2047, 1, 1}, {2048, 1}},
                                                          {{}, {}}}) {
        PieceWriter writer;
        std::string expected;
        Target target(writer);
        for (unsigned int const size : sizes) {
            size == 1 ? target.write_char('\0') : target.write_data(data.data(), size);
            expected.append(data, 0, size);
        }
        target.flush();
        EXPECT_EQ(writer.pieces, pieces);
        EXPECT_EQ(writer.text, expected);
    }
    for (std::size_t size = 2030; size < 2060; ++size) { // an escape lies across the boundary
        AttributeMap const map = make_map({{"", std::string(size, 'x') + "\"\xC3\xA4\\"}});
        EXPECT_EQ(value_from_json(value_to_json(map)), AttributeValue(map)) << size;
    }
    PieceWriter writer;
    write_attribute_value(writer, BinaryValue(3'000'000));
    EXPECT_EQ(std::accumulate(writer.pieces.begin(), writer.pieces.end(), 0u), 6'000'001u);
    EXPECT_EQ(*std::max_element(writer.pieces.begin(), writer.pieces.end()), 2048u);
}

TEST(JsonMarshaler, NoAllocationThatFailsLeavesAnythingBehind) {
    std::string const text =
        R"([{"a":[1,2,300],"b":"a string beyond the small ones"},)"
        R"({"a name beyond the small ones":[1.5,2],"c":[true,false],"d":["x"],)"
        R"("e":{"vxserialize":"3u [<x>]"}}])";
    long const before = vxtest::live_blocks();
    {
        AttributeValue const expected = value_from_json(text);
        std::string const written = value_to_json(expected);
        AttributeValue value = "kept";
        for (unsigned long n = 1; value == AttributeValue("kept"); ++n) {
            try {
                vxjson::Document document(text.data(), text.size());
                vxtest::fail_allocation(n);
                read_attribute_value(document.reader(), value);
                vxtest::fail_allocation(0);
                EXPECT_GT(n, 20u);
            } catch (std::exception const &) { // in "vxserialize" it is an error's cause
                vxtest::fail_allocation(0);
            }
        }
        EXPECT_EQ(value, expected);
        vxtest::fail_each_allocation([&] { EXPECT_EQ(value_to_json(value), written); },
                                     [&] { ASSERT_EQ(value, expected); });
    }
    EXPECT_LE(vxtest::live_blocks() - before, 40) << "spent blocks that threads keep";
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
