// Arrays in boxes: any JSON comes back as it was, also over the binary form, and the values are
// those that docs/formats/json.md shows.

#include "support/streams.h"

#include "vxattribute/vxattribute.h"
#include "vxcore/error_exception.h"
#include "vxserialize/vxserialize.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace vxattribute;

AttributeValue read(std::string_view text) {
    return value_from_json(text, JsonReadOptions{.arrays = eJsonArrays_Boxed});
}

std::string write(AttributeValue const & value) {
    return value_to_json(
        value,
        {.sorted_names = true, .doubles = eJsonDoubles_Numbers, .arrays = eJsonArrays_Boxed});
}

AttributeValue through_binary(AttributeValue const & value) {
    vxserialize::MemoryWriter writer;
    write_attribute_value(writer, value);
    vxserialize::MemoryReader reader = writer.reader();
    AttributeValue copy;
    read_attribute_value(reader, copy);
    return copy;
}

/// Makes random texts in the form in which they are written: names sorted, numbers with a fraction
/// in lists of doubles.
class Maker {
  public:
    explicit Maker(unsigned int seed) : m_random(seed) {}

    std::string value(unsigned int depth) {
        static constexpr char const * scalars[] = {
            "null", "true",     "false", "\"a\"", "\"\"", "\"[]\"", "0", "-7", "9007199254740993",
            "0.5",  "-1.5e-07", "1e+25"};
        std::size_t const kind = pick(depth == 0 ? 12 : 20);
        return kind < 12 ? scalars[kind] : kind < 16 ? array(depth) : object(depth);
    }

  private:
    std::size_t pick(std::size_t count) { return m_random() % count; }

    std::string object(unsigned int depth) {
        static constexpr char const * names[] = {"", "=", "[]", "a", "class", "vxserialize"};
        std::size_t const only = pick(12); // often an object that looks like a box
        std::string text;
        for (std::size_t i = 0; i < std::size(names); ++i) {
            if (only < std::size(names) ? i == only : pick(4) == 0) {
                text += std::string(text.empty() ? "" : ",") + '"' + names[i] +
                        "\":" + value(depth - 1);
            }
        }
        return '{' + text + '}';
    }

    /// Of elements of any kind, of equal scalars, or of objects.
    std::string array(unsigned int depth) {
        std::size_t const kind = pick(4);
        std::string const scalar = value(0);
        std::string text;
        for (std::size_t size = pick(4); size != 0; --size) {
            text += text.empty() ? "" : ",";
            text += kind == 0 ? scalar : kind == 1 ? object(depth) : value(depth - 1);
        }
        return '[' + text + ']';
    }

    std::mt19937 m_random;
};

/// Whole numbers have a fraction where doubles are beside them: the only difference there may be.
std::string without_fractions(std::string text) {
    for (std::size_t at = 0; (at = text.find(".0", at)) != text.npos;) {
        bool const isEnd = at + 2 == text.size() || text[at + 2] == ',' || text[at + 2] == ']';
        isEnd ? void(text.erase(at, 2)) : void(++at);
    }
    return text;
}

TEST(JsonBoxes, AnyDocumentComesBack) {
    for (unsigned int seed = 0; seed < 20'000; ++seed) {
        std::string const text = Maker(seed).value(4);
        AttributeValue const value = read(text);
        ASSERT_EQ(without_fractions(write(value)), text);
        ASSERT_EQ(without_fractions(write(through_binary(value))), text);
        vxtest::StringStream stream(text, false);
        ASSERT_EQ(value_from_json(stream, JsonReadOptions{.arrays = eJsonArrays_Boxed}), value);
    }
}

TEST(JsonBoxes, AreMapsOfOneName) {
    AttributeName const array("[]"), element("=");
    AttributeValue const one = make_map({{array, 5}});
    EXPECT_EQ(read("[5]"), one);
    EXPECT_EQ(read("[[5],null]"),
              make_list<AttributeMap>(
                  {make_map({{array, one}}), make_map({{element, AttributeValue()}})}));
    EXPECT_EQ(read("{\"=\":1}"), make_map({{element, make_map({{element, 1}})}}));
    EXPECT_EQ(read("[1,2.5]"), make_list<double>({1, 2.5}));
    EXPECT_EQ(write(make_map({{array, "x"}, {"b", 1}})), R"({"[]":"x","b":1})");
    EXPECT_EQ(write(make_map({{element, 1}})), R"({"=":1})"); // no box: it holds no object
    for (char const * const text : {"", "[1,]", "5 6", "5,", "{\"a\"}", "[1] [2]", "nul"}) {
        EXPECT_THROW(read(text), vxcore::ErrorException) << text;
    }
}

TEST(JsonBoxes, TakeNoStack) {
    std::string const text = std::string(100'000, '[') + std::string(100'000, ']');
    AttributeValue const value =
        value_from_json(text, JsonReadOptions{.max_depth = 100'000, .arrays = eJsonArrays_Boxed});
    EXPECT_EQ(value_to_json(value, {.max_depth = 100'000, .arrays = eJsonArrays_Boxed}), text);
}

} // namespace
