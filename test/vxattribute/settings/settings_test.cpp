// The rule under test: a description finds every problem of a configuration, at its path and in its
// order, and shows neither secrets nor more than a message can take.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"

#include <stdexcept>

namespace {

using namespace vxattribute;

Settings const settings = {
    setting<std::string>("host", "Where the server listens").alternate("server").required(),
    setting<long long>("port", "The TCP port").range(1, 65535).default_value(8080),
    setting<long long>("ids").list(2, 3).at_least(0.5),
    setting<Number>("/limits/rate", "Requests a second, counted over the last ten of them")
        .at_most(2.5),
    setting<Number>("limits/burst~1s").default_value(0.1),
    setting<std::string>("log", "How much to log").one_of({"all", "errors"}).default_value("all"),
    setting<vxcore::Uuid>("id"),
    setting<AttributeValue>("notes"),
    setting<std::string>("password", "For the console").secret().default_value("swordfish"),
    setting("peers", {setting<bool>("up").required()}, "The others").list(),
    setting("vault", Settings{setting<long long>("key").at_least(1)}).secret(),
};

AttributeMap config_of(std::string const & json) {
    return value_from_json("{\"host\":\"a\"" + json + "}").get<AttributeMap>();
}

std::string problems_of(AttributeMap const & config) {
    std::string text;
    for (SettingProblem const & problem : settings.find_problems(config)) {
        text += problem.path + ": " + problem.text + " [" + problem.code.name() + "]\n";
    }
    return text;
}

TEST(Settings, SayWhatIsWrong) {
    std::string const query = " [error.vxattribute.query.";
    std::string const mismatch = " [error.vxattribute.value.type.mismatch]\n";

    struct {
        char const * json;
        std::string problem;
    } const rows[] = {
        {"", ""},
        {R"(,"server":"b")", ""},
        {R"(,"port":1,"ids":[1,2],"limits":{"rate":2,"burst/s":1e9},"notes":null)", ""},
        {R"(,"id":"123e4567-e89b-12d3-a456-426614174000","peers":[],"log":"all")", ""},
        {R"(,"port":0)", "port: 0 is not from 1 to 65535" + query + "badValue]\n"},
        {R"(,"port":8.5)", "port: expected Integer, found Double 8.5" + mismatch},
        {R"(,"port":null)", "port: expected Integer, found null" + mismatch},
        {R"(,"port":[1,2])", "port: expected one value, found 2" + query + "tooMany]\n"},
        {R"(,"port":[])", "port: expected one value, found none" + query + "tooFew]\n"},
        {R"(,"ids":1)", "ids: expected at least 2 values, found 1" + query + "tooFew]\n"},
        {R"(,"ids":[1,2,3,4])", "ids: expected at most 3 values, found 4" + query + "tooMany]\n"},
        {R"(,"ids":[1,0,-1])", "ids/1: 0 is not at least 0.5" + query + "badValue]\n" +
                                   "ids/2: -1 is not at least 0.5" + query + "badValue]\n"},
        {R"(,"limits":{"rate":3})", "limits/rate: 3 is not at most 2.5" + query + "badValue]\n"},
        {R"(,"limits":7)", "limits: expected AttributeMap, found Integer 7" + mismatch},
        {R"(,"limits":{"burst~1s":1})",
         "limits/burst~01s: unknown name (did you mean \"burst/s\"?)" + query + "unknownName]\n"},
        {R"(,"log":"error")", "log: \"error\" is none of all, errors" + query + "badValue]\n"},
        {R"(,"id":"12")", "id: \"12\" is no UUID" + query + "typeConversion]\n"},
        {R"(,"peers":{"up":1,"pu":1})", "peers/up: expected Boolean, found Integer 1" + mismatch +
                                            "peers/pu: unknown name (did you mean \"up\"?)" +
                                            query + "unknownName]\n"},
        {R"(,"peers":[{"up":true},{}])", "peers/1/up: missing" + query + "notFound]\n"},
        {R"(,"password":7)", "password: expected String, found Integer" + mismatch},
        {R"(,"vault":{"key":-7})",
         "vault/key: the value is not at least 1" + query + "badValue]\n"},
        {R"(,"pasword":7,"Zebra":1)", "Zebra: unknown name" + query + "unknownName]\n" +
                                          "pasword: unknown name (did you mean \"password\"?)" +
                                          query + "unknownName]\n"},
    };

    for (auto const & row : rows) {
        EXPECT_EQ(problems_of(config_of(row.json)), row.problem) << row.json;
    }
    EXPECT_EQ(problems_of(AttributeMap()), "host: missing" + query + "notFound]\n");
    Settings lax = settings;
    lax.allow_unknown();
    EXPECT_TRUE(lax.find_problems(config_of(R"(,"x":1,"limits":{"x":1})")).empty());
    EXPECT_EQ(lax.find_problems(config_of(R"(,"peers":{"up":true,"x":1})")).size(), 1u);
}

TEST(Settings, RaiseAllProblemsInOneErrorOfBoundedSize) {
    auto const error = vxtest::expect_error(
        [] {
            settings.check(make_map({{"port", 0}, {"hots", "a"}}));
        },
        error::vxattribute_query_settings,
        "The configuration has problems:\n  host: missing\n  port: 0 is not from 1 to 65535\n"
        "  hots: unknown name (did you mean \"host\"?)",
        "vxattribute::Settings::check()");
    EXPECT_EQ(Query::bad_attribute_name(error), "host");
    EXPECT_NO_THROW(settings.check(config_of("")));

    MutableAttributeMap many;
    for (int i = 0; i < 2000; ++i) {
        many.add(std::string(1000, 'x') + std::to_string(i), i);
    }
    try {
        settings.check(many);
        ADD_FAILURE();
    } catch (vxcore::ErrorException const & e) {
        EXPECT_LT(e.info()->text().size(), 40'000u);
        EXPECT_TRUE(e.info()->text().ends_with("\n  and 1901 more"));
    }
}

TEST(Settings, DescribeThemselvesWithoutSecrets) {
    EXPECT_EQ(settings.describe(77),
              R"(NAME             TYPE                  DEFAULT     DESCRIPTION
host             String                (required)  Where the server listens
port             Integer               8080        The TCP port (from 1 to
                                                   65535)
ids              list of Integer                   (at least 0.5)
limits/rate      number                            Requests a second, counted
                                                   over the last ten of them
                                                   (at most 2.5)
limits/burst~1s  number                0.1
log              String                "all"       How much to log (all,
                                                   errors)
id               UUID
notes            any
password         String                            For the console
peers            list of AttributeMap              The others
peers/*/up       Boolean               (required)
vault            AttributeMap
vault/key        Integer                           (at least 1)
)");
    EXPECT_EQ(settings.secret_names(), (std::vector<AttributeName>{"password", "vault"}));
}

TEST(Settings, AddDefaultsAtEveryDepth) {
    AttributeMap const expected = make_map({{"host", "b"},
                                            {"port", 8080},
                                            {"limits", make_map({{"burst/s", 0.1}})},
                                            {"log", "errors"},
                                            {"password", "swordfish"}});
    EXPECT_EQ(settings.with_defaults(make_map({{"server", "b"}, {"log", "errors"}})), expected);
    EXPECT_EQ(settings.with_defaults(expected), expected);
}

TEST(Settings, AreValuesThatRefuseANameTwice) {
    Settings copy = settings;
    EXPECT_THROW(copy.add(setting<bool>("server")), std::invalid_argument);
    EXPECT_THROW(copy.add(setting<bool>("port/number")), std::invalid_argument);
    EXPECT_THROW(copy.add(setting<bool>("limits/rate")), std::invalid_argument);
    EXPECT_EQ(copy.describe(), settings.describe());
    copy.add(setting<bool>("limits/hard"));
    EXPECT_EQ(copy.find_problems(config_of(R"(,"limits":{"hard":1})")).size(), 1u);
    EXPECT_EQ(settings.find_problems(config_of(R"(,"limits":{"hard":true})")).size(), 1u);

    std::string const before = copy.describe();
    Setting const added = setting<bool>("limits/more");
    EXPECT_LT(2u, vxtest::fail_each_allocation([&] { copy.add(added); },
                                               [&] { EXPECT_EQ(copy.describe(), before); }));
    EXPECT_NE(copy.describe(), before);
}

} // namespace
