// The rule under test: a query finds the first of its names, counts the elements, and names the
// faulty setting in every failure. A matcher's failure is wrapped once.

#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/grouping_locale.h"

#include "vxattribute/vxattribute.h"
#include "vxcore/error_composer.h"

#include <stdexcept>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

AttributeMap const config = make_map({{"b", 8080}, {"a", make_list<long long>({1, 2})}});

std::string_view function_of(vxcore::ErrorInfo const & info) {
    return info.location().function().data();
}

TEST(Query, TakesTheFirstOfItsNamesThatIsThere) {
    EXPECT_EQ(Query({"b", "a"}).execute(config, nullptr), Attribute("b", 8080));
    EXPECT_EQ(Query("b").alternate("a").execute(config, nullptr).name(), "b");
    EXPECT_EQ(Query({"a", "b"}).scalar(true).max_count(), 1);
    // An absent name and a name with null differ.
    EXPECT_EQ(Query("none").execute(config, nullptr), Attribute());
    EXPECT_EQ(Query("n").execute(make_map({{"n", AttributeValue()}}), nullptr).name(), "n");
    EXPECT_EQ(Query(std::vector<AttributeName>()).execute(config, nullptr), Attribute());
}

TEST(Query, SaysWhatIsWrongWithTheCount) {
    std::vector<long long> const numbers(65536);
    AttributeMap const two = make_map({{"a", make_list<long long>({1, 2})}});
    AttributeMap const none = make_map({{"e", AttributeValue(ValueTypeId::typeString)}});

    struct {
        Query query;
        AttributeMap const & map;
        vxcore::ErrorCode const & code;
        char const * text;
    } const rows[] = {
        {Query({"x", "y", "z"}, 1), two, error::vxattribute_query_notFound,
         "No values configured under \"x\" or \"y\" or \"z\" in \n 'a' => [Integer: {1, 2}]"},
        {Query("a").scalar(true), two, error::vxattribute_query_tooMany,
         "More than 1 values configured under a in \n 'a' => [Integer: {1, 2}]"},
        {Query("a", 3, 1), two, error::vxattribute_query_tooMany,
         "More than 1 values configured under a in \n 'a' => [Integer: {1, 2}]"},
        {Query("e").required(true), none, error::vxattribute_query_tooFew,
         "Fewer than 1 values configured under e in \n 'e' => [String: {}]"}};

    for (auto const & row : rows) {
        expect_error([&] { row.query.execute(row.map, nullptr); }, row.code, row.text,
                     "vxattribute::Query::query_impl()");
    }
    vxcore::ErrorInfo::Ptr error;
    Query("m").execute(make_map({{"m", make_list(std::span(numbers))}}), &error);
    ASSERT_TRUE(error);
    EXPECT_EQ(*error->params().find_value("maximum"), "65535");
}

TEST(Query, StoresTheFailureOrRaisesIt) {
    auto const reject = [](Query::MatchContext const &) { return false; };
    vxcore::ErrorInfo::Ptr error;
    EXPECT_EQ(Query("b").execute(config, &error).name(), "b");
    EXPECT_FALSE(error);
    EXPECT_EQ(Query("x", 1).execute(config, reject, &error), Attribute());
    ASSERT_TRUE(error);
    EXPECT_EQ(Query::bad_attribute_name(error), "\"x\"");
    EXPECT_EQ(Query("b").execute(config, reject, &error), Attribute());
    EXPECT_EQ(error->code(), error::vxattribute_query_badValue);
    EXPECT_EQ(Query::bad_attribute_name(error), "b");
    EXPECT_EQ(Query::bad_attribute_name(nullptr), "");
}

TEST(Query, FindsTheSettingToBlameAnywhereInAChain) {
    auto const around = [](vxcore::ErrorInfo::Ptr nested, vxcore::ErrorCode const & code,
                           char const * key, char const * name) {
        return vxcore::ErrorComposer("").param(key, name).create(code, {}, std::move(nested));
    };
    auto chain = around(nullptr, error::vxattribute_query_tooFew, "name", "deepest");
    EXPECT_EQ(Query::bad_attribute_name(chain), "deepest");
    chain = around(chain, error::vxattribute_query, "name", "nearest");
    chain = around(chain, error::vxattribute_query_typeConversion, "value", "no name");
    chain = around(chain, error::vxattribute_value_type_mismatch, "name", "no query");
    EXPECT_EQ(Query::bad_attribute_name(chain), "nearest");
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
    AttributeMap const unnamed = make_map({{"", 8080}});
    EXPECT_EQ(Query("", 1).execute(unnamed, matcher, nullptr), Attribute("", 8080));
    EXPECT_EQ(Query("x").execute(config, matcher, nullptr), Attribute());
    EXPECT_EQ(calls, 1);
}

TEST(Query, WrapsTheFailureOfAMatcherOnce) {
    auto const run = [](auto matcher) {
        vxcore::ErrorInfo::Ptr error;
        Query("n").execute(make_map({{"n", 300}}), matcher, &error);
        return error;
    };
    auto error = run([](auto const &) -> bool { throw std::runtime_error("no good"); });
    EXPECT_EQ(error->text(), "Invalid value ([Integer: {300}]) configured under n in "
                             "\n 'n' => [Integer: {300}]");
    EXPECT_EQ(error->nested()->text(), "no good");
    EXPECT_EQ(function_of(*error), "vxattribute::Query::execute()");
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
    EXPECT_EQ(function_of(*error->nested()),
              "vxattribute::ConvertableValue::throw_no_conversion()");
}

TEST(Query, CostsNoMemoryWhenAnswered) {
    Query const query = Query("x").alternate("b").required(true).scalar(true);
    AttributeMap const map = make_map({{"b", "a text that is shared"}});
    auto const accept = [](Query::MatchContext const &) { return true; };
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

TEST(Query, ShortMemoryCutsNoMessage) {
    std::string const n(256, 'n'), x(1000, 'x');
    AttributeMap const map =
        make_map({{"e", vxcore::ErrorComposer(x.c_str()).create(error::vxattribute_query, {})}});
    std::string const shown =
        "\n 'e' => [ErrorInfo: \n  {\n   error.vxattribute.query: " + x + "\n  }]";
    EXPECT_GT(vxtest::fail_each_allocation([&] { EXPECT_EQ(to_text(map), shown); }, [] {}), 3u);
    std::string const whole =
        "No values configured under \"" + n + "\" or \"" + n + "\"...(+1) in " + shown;
    Query const query({n, n + "m"}, 1);
    vxcore::ErrorInfo::Ptr error;
    for (unsigned long i = 1; !error || error->text() != whole; ++i) {
        vxtest::fail_allocation(i);
        query.execute(map, &error);
        vxtest::fail_allocation(0);
        ASSERT_TRUE(error->text() == whole || error->text() == "std::bad_alloc") << error->text();
    }
}

TEST(Query, FindsByPathAndNamesThePath) {
    AttributeMap const one = make_map({{"rate", 10}, {"a/b", 1}});
    AttributeMap const map =
        make_map({{"a/b", 0}, {"in", one}, {"list", make_list<AttributeMap>({{}, one})}});
    EXPECT_EQ(Query::at_path("in/rate").execute(map, nullptr), Attribute("in/rate", 10));
    EXPECT_EQ(Query::at_path("/in/a~1b").execute(map, nullptr), Attribute("/in/a~1b", 1));
    EXPECT_EQ(Query::at_path("x").alternate("list/1/rate").execute(map, nullptr).value(), 10);
    EXPECT_EQ(Query::at_path("a/b").execute(map, nullptr), Attribute());
    EXPECT_EQ(Query("a/b").execute(map, nullptr).value(), 0);
    for (char const * const path : {"in/rate", "list", "/in/none"}) {
        vxcore::ErrorInfo::Ptr error;
        Query::at_path(path, 1, 1)
            .execute(
                map, [](auto const &) { return false; }, &error);
        EXPECT_NE(Query::bad_attribute_name(error).find(path), std::string::npos);
    }
    Query const queries[] = {Query("a/b"), Query::at_path("/in/rate")};
    EXPECT_EQ(unknown_names(map, queries), std::vector<AttributeName>{"list"});
}

TEST(UnknownNames, AreThoseThatNoQueryAsksFor) {
    Query const queries[] = {Query("port").alternate("listen"), Query("host")};
    AttributeMap const map = make_map({{"prot", 1}, {"listen", 2}, {"Host", 3}, {"host", 4}});
    EXPECT_EQ(unknown_names(map, queries), (std::vector<AttributeName>{"Host", "prot"}));
}

/// Expects a level of 7 to become the given one, and returns the failure.
vxcore::ErrorInfo::Ptr read_level(AttributeValue const & value, int expected) {
    char level = 7;
    vxcore::ErrorInfo::Ptr error;
    Query("level").execute(make_map({{"level", value}}), TraceLevel(level), &error);
    EXPECT_EQ(static_cast<signed char>(level), expected) << to_text(value);
    EXPECT_TRUE(!error || error->code() == error::vxattribute_query_badValue);
    return error;
}

/// Does the same for a row of a text and the expected level.
vxcore::ErrorInfo::Ptr read_level(std::string const & row) {
    std::size_t const mark = row.find('=');
    return read_level(row.substr(0, mark), std::stoi(row.substr(mark + 1)));
}

TEST(TraceLevel, ReadsNamesAndNumbers) {
    for (char const * row : {"NEVER=-1", "status=41", "Note=61", "vErBoSe=81", "ALWAYS=100",
                             "100=100", "-1=-1", "+5=5", "-0=0"}) {
        EXPECT_FALSE(read_level(row)) << row;
    }
    EXPECT_FALSE(read_level(81, 81));
    EXPECT_FALSE(read_level(-1, -1));
    EXPECT_FALSE(read_level(AttributeValue(ValueTypeId::typeInteger), 0));
    // A number that fits into a `char` is stored before its range is checked.
    for (char const * row : {"101=101", "-2=-2", "-128=-128", "128=7", "=7", "-=7", " 5=7",
                             "18446744073709551617=7"}) {
        EXPECT_TRUE(read_level(row)) << row;
    }
    for (AttributeValue const & value :
         {AttributeValue(-129), AttributeValue(true), AttributeValue(),
          AttributeValue(ValueTypeId::typeString)}) {
        EXPECT_TRUE(read_level(value, 7)) << to_text(value);
    }
}

TEST(TraceLevel, SaysWhatItCannotRead) {
    auto const error = read_level(make_list<std::string>({"NOTE", "NOTE"}), 7);
    EXPECT_EQ(error->nested()->text(),
              "Multi-valued trace level attributes are NOT currently supported.");
    EXPECT_EQ(function_of(*error->nested()), "vxattribute::TraceLevel::operator()()");
    EXPECT_EQ(read_level("--5=7")->nested()->text(), "Cannot convert '-5' to unsigned long long");
    EXPECT_EQ(read_level("-129=7")->nested()->text(), "Cannot convert '-129' to char");
    EXPECT_EQ(read_level(300, 7)->nested()->text(), "Value 300 does not fit into char");
}

} // namespace
