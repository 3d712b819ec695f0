// The rule under test: a query finds the first of its names, counts the elements, and says in every
// failure which setting is to blame; a matcher's failure is wrapped once.

#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/grouping_locale.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/make_value.h"
#include "vxattribute/query.h"
#include "vxattribute/to_text.h"
#include "vxattribute/trace_level.h"
#include "vxattribute/unknown_names.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

AttributeMap const config = make_map({{"b", 8080}, {"a", make_list<long long>({1, 2})}});

bool accept(Query::MatchContext const &) {
    return true;
}

bool reject(Query::MatchContext const &) {
    return false;
}

TEST(Query, TakesTheFirstOfItsNamesThatIsThere) {
    EXPECT_EQ(Query({"b", "a"}).execute(config, nullptr), Attribute("b", 8080));
    EXPECT_EQ(Query("none").alternate("b").execute(config, nullptr).name(), "b");
    EXPECT_EQ(Query({"a", "b"}).scalar(true).max_count(), 1);
    // An absent name and a name with null differ.
    EXPECT_EQ(Query("none").execute(config, nullptr), Attribute());
    EXPECT_EQ(Query("n").execute(make_map({{"n", AttributeValue()}}), nullptr).name(), "n");
    EXPECT_EQ(Query(std::vector<AttributeName>()).execute(config, nullptr), Attribute());
}

TEST(Query, SaysWhatIsWrongWithTheCount) {
    AttributeMap const one = make_map({{"a", make_list<long long>({1, 2})}});
    expect_error(
        [&] {
            Query({"x", "y", "z"}, 1).execute(one, nullptr);
        },
        error::vxattribute_query_notFound,
        "No values configured under \"x\" or \"y\" or \"z\" in "
        "\n 'a' => [Integer: {1, 2}]");
    expect_error([&] { Query("a").scalar(true).execute(one, nullptr); },
                 error::vxattribute_query_tooMany,
                 "More than 1 values configured under a in \n 'a' => [Integer: {1, 2}]");
    expect_error([&] { Query("a", 3, 1).execute(one, nullptr); }, error::vxattribute_query_tooMany,
                 "More than 1 values configured under a in \n 'a' => [Integer: {1, 2}]");
    expect_error(
        [] {
            Query("e").required(true).execute(
                make_map({{"e", AttributeValue(ValueTypeId::typeString)}}), nullptr);
        },
        error::vxattribute_query_tooFew,
        "Fewer than 1 values configured under e in \n 'e' => [String: {}]");
    std::vector<long long> const numbers(65536);
    AttributeMap const many = make_map({{"m", make_list(std::span(numbers))}});
    vxcore::ErrorInfo::Ptr error;
    Query("m").execute(many, &error);
    ASSERT_TRUE(error);
    EXPECT_EQ(*error->params().find_value("maximum"), "65535");
}

TEST(Query, StoresTheFailureOrRaisesIt) {
    vxcore::ErrorInfo::Ptr error;
    EXPECT_EQ(Query("b").execute(config, &error).name(), "b");
    EXPECT_FALSE(error);
    EXPECT_EQ(Query("x", 1).execute(config, accept, &error), Attribute());
    ASSERT_TRUE(error);
    EXPECT_EQ(Query::bad_attribute_name(error), "\"x\"");
    EXPECT_EQ(Query("b").execute(config, reject, &error), Attribute());
    EXPECT_EQ(error->code(), error::vxattribute_query_badValue);
    EXPECT_EQ(Query::bad_attribute_name(error), "b");
    EXPECT_EQ(Query::bad_attribute_name(nullptr), "");
}

TEST(Query, AsksTheMatcherOnlyAboutWhatIsThere) {
    int calls = 0;
    Query const query = Query("x").alternate("b");
    auto const matcher = [&](Query::MatchContext const & found) {
        ++calls;
        EXPECT_EQ(found.name(), "b");
        EXPECT_EQ(found.attribute_value(), AttributeValue(8080));
        EXPECT_EQ(&found.query(), &query);
        EXPECT_EQ(found.configuration(), config);
        return true;
    };
    EXPECT_EQ(query.execute(config, matcher, nullptr).name(), "b");
    EXPECT_EQ(Query("x").execute(config, matcher, nullptr), Attribute());
    EXPECT_EQ(calls, 1);
}

TEST(Query, WrapsTheFailureOfAMatcherOnce) {
    AttributeMap const map = make_map({{"n", 300}});
    auto const run = [&](auto matcher) {
        vxcore::ErrorInfo::Ptr error;
        Query("n").execute(map, matcher, &error);
        return error;
    };
    auto error = run([](auto const &) -> bool { throw std::runtime_error("no good"); });
    EXPECT_EQ(error->text(), "Invalid value ([Integer: {300}]) configured under n in "
                             "\n 'n' => [Integer: {300}]");
    EXPECT_EQ(error->nested()->text(), "no good");
    // A failure that names a setting says enough.
    error =
        run([](auto const &) { return Query("other", 1).execute(AttributeMap(), nullptr), true; });
    EXPECT_EQ(error->code(), error::vxattribute_query_notFound);
    EXPECT_EQ(Query::bad_attribute_name(error), "\"other\"");
    // One of the family without a name does not.
    error = run([](auto const & found) -> bool {
        ConvertableValue::throw_no_conversion(found.attribute_value(), typeid(int), "odd");
    });
    EXPECT_EQ(error->code(), error::vxattribute_query_badValue);
    EXPECT_EQ(error->nested()->text(), "Cannot convert value [Integer: {300}] to type int:\nodd");
}

TEST(Query, CostsNoMemoryWhenAnswered) {
    Query const query = Query("x").alternate("b").required(true).scalar(true);
    AttributeMap const map = make_map({{"b", "a text that is shared"}});
    EXPECT_EQ(vxtest::count_allocations([&] { query.execute(map, accept, nullptr); }), 0u);
}

TEST(Query, MessagesDoNotDependOnTheLocale) {
    std::locale const before = std::locale::global(vxtest::grouping_locale());
    vxcore::ErrorInfo::Ptr error;
    Query("n", 2000).execute(make_map({{"n", 1234567}}), &error);
    std::locale::global(before);
    EXPECT_EQ(error->text(), "Fewer than 2000 values configured under n in "
                             "\n 'n' => [Integer: {1234567}]");
}

TEST(UnknownNames, AreThoseThatNoQueryAsksFor) {
    Query const queries[] = {Query("port").alternate("listen"), Query("host")};
    AttributeMap const map = make_map({{"prot", 1}, {"listen", 2}, {"Host", 3}, {"host", 4}});
    EXPECT_EQ(unknown_names(map, queries), (std::vector<AttributeName>{"Host", "prot"}));
}

struct LevelCase {
    AttributeValue value;
    bool isGood;
    signed char level; // what the target holds afterwards; it was 7 before
};

TEST(TraceLevel, ReadsNamesAndNumbers) {
    LevelCase const cases[] = {
        {"NEVER", true, -1},
        {"status", true, 41},
        {"Note", true, 61},
        {"vErBoSe", true, 81},
        {"ALWAYS", true, 100},
        {"100", true, 100},
        {"101", false, 101},
        {"128", false, 7},
        {"-1", true, -1},
        {"-2", false, -2},
        {"-128", false, -128},
        {"+5", true, 5},
        {"-0", true, 0},
        {"", false, 7},
        {"-", false, 7},
        {"--5", false, 7},
        {" 5", false, 7},
        {"18446744073709551617", false, 7},
        {81, true, 81},
        {300, false, 7},
        {-1, true, -1},
        {-129, false, 7},
        {true, false, 7},
        {AttributeValue(), false, 7},
        {AttributeValue(ValueTypeId::typeInteger), true, 0},
        {AttributeValue(ValueTypeId::typeString), false, 7},
    };
    for (LevelCase const & c : cases) {
        char level = 7;
        vxcore::ErrorInfo::Ptr error;
        Query("level").execute(make_map({{"level", c.value}}), TraceLevel(level), &error);
        EXPECT_EQ(!error, c.isGood) << to_text(c.value);
        EXPECT_EQ(static_cast<signed char>(level), c.level) << to_text(c.value);
    }
}

TEST(TraceLevel, SaysWhatItCannotRead) {
    auto const nested_text = [](AttributeValue const & value) {
        char level = 0;
        vxcore::ErrorInfo::Ptr error;
        Query("level").execute(make_map({{"level", value}}), TraceLevel(level), &error);
        EXPECT_EQ(error->code(), error::vxattribute_query_badValue);
        return error->nested()->text();
    };
    EXPECT_EQ(nested_text(make_list<std::string>({"NOTE", "NOTE"})),
              "Multi-valued trace level attributes are NOT currently supported.");
    EXPECT_EQ(nested_text("--5"), "Cannot convert '-5' to unsigned long long");
    EXPECT_EQ(nested_text("-129"), "Cannot convert '-129' to char");
    EXPECT_EQ(nested_text(300), "Value 300 does not fit into char");
}

} // namespace
