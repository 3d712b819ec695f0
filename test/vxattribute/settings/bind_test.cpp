// The rule under test: a binding reads what it writes, reads nothing else, and reports all that is
// wrong at once.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/bind.h"
#include "vxattribute/vxattribute.h"

#include <functional> // std::bind, which must not be taken for ours
#include <limits>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

enum class Level { low, high };

EnumNames<Level> const levels = {{"low", Level::low}, {"high", Level::high}, {"top", Level::high}};

struct Limits {
    double rate = 2.5;
    std::optional<int> burst;
    bool operator==(Limits const &) const = default;
};

struct Base {
    bool isOpen = true;
    bool operator==(Base const &) const = default;
};

struct Everything : Base {
    std::string name;
    char letter = 'a';
    unsigned short port = 8080;
    unsigned long long large = 1;
    float ratio = 0.5F;
    Level level = Level::high;
    vxcore::Uuid id;
    vxcore::RelativeTime pause{5};
    BinaryValue bytes;
    std::vector<bool> flags = {true, false};
    std::vector<Level> levels;
    std::vector<std::string> paths = {"/"};
    std::vector<long long> numbers;
    std::optional<std::vector<int>> ports;
    Limits limits = {.rate = 7, .burst = {}};
    std::vector<Limits> history;
    std::optional<Limits> extra;
    AttributeMap map;
    AttributeValue any;
    long depth = 3;
    AttributeMap rest;

    bool operator==(Everything const &) const = default;
};

Binding<Limits> const limits = bind<Limits>(field("rate", &Limits::rate).range(0, 9.5),
                                            field("burst", &Limits::burst).at_least(1));

Binding<Everything> const everything =
    bind<Everything>(
        field("open", &Everything::isOpen), field("name", &Everything::name).alternate("title"),
        field("letter", &Everything::letter), field("port", &Everything::port).at_least(1),
        field("large", &Everything::large), field("ratio", &Everything::ratio),
        field("level", &Everything::level, levels, "How much"), field("id", &Everything::id),
        field("pause", &Everything::pause), field("bytes", &Everything::bytes),
        field("flags", &Everything::flags), field("levels", &Everything::levels, levels),
        field("paths", &Everything::paths).count(1, 2).one_of({"/", "/a"}),
        field("numbers", &Everything::numbers).at_most(3), field("ports", &Everything::ports),
        field("limits", &Everything::limits, limits),
        field("history", &Everything::history, limits), field("extra", &Everything::extra, limits),
        field("map", &Everything::map), field("any", &Everything::any),
        field("deep/er/depth", &Everything::depth))
        .keep_unknown(&Everything::rest);

AttributeMap from_json(std::string_view json) {
    return value_from_json(json).get<AttributeMap>();
}

TEST(Binding, WritesWhatItReads) {
    MutableAttributeMap map = from_json(
        R"({"open":false,"name":"n","letter":-128,"port":65535,"large":4611686018427387904,
            "level":"low","flags":[true,true,false],"levels":["high","low"],"paths":"/a",
            "numbers":3,"ports":[1,2],"limits":{"rate":1.5},"history":[{"rate":2.5},{"rate":1.5}],
            "extra":{"rate":1.5,"burst":4},"map":{"a":1},"any":[1.5,2.5],"other":1,
            "deep":{"er":{"depth":-4,"b":1},"c":2}})");
    map.add("ratio", -std::numeric_limits<double>::infinity()).add("id", vxcore::Uuid({1}));
    map.add("pause", vxcore::RelativeTime(7))
        .add("bytes", BinaryValue(vxcore::Uuid().data().data(), 16));
    Everything const object = everything.read(map);
    EXPECT_EQ(object.letter, static_cast<char>(-128));
    EXPECT_EQ(object.history.at(1), object.limits);
    EXPECT_EQ(object.depth, -4);
    EXPECT_EQ(object.rest.size(), 2u);
    EXPECT_EQ(everything.write(object), map);
    EXPECT_EQ(everything.read(AttributeMap()), Everything());
    EXPECT_EQ(everything.read(everything.write(Everything())), Everything());
}

TEST(Binding, ReadsWhatPeopleWrite) {
    Everything const object = everything.read(from_json(
        R"({"title":"n","ratio":1,"level":"top","paths":"/a","history":[],"any":null,
            "id":"123e4567-e89b-12d3-a456-426614174000","pause":"PT1.5S","limits":{"burst":2}})"));
    EXPECT_EQ(object.name, "n");
    EXPECT_EQ(object.ratio, 1);
    EXPECT_EQ(object.level, Level::high);
    EXPECT_EQ(object.id.data()[1], 0x3e);
    EXPECT_EQ(object.pause.as_string(), "PT1.5S");
    EXPECT_EQ(object.limits, (Limits{.rate = 7, .burst = 2})); // the default of the outer struct
    EXPECT_EQ(everything.read(make_map({{"ratio", 1e300}})).ratio,
              std::numeric_limits<float>::infinity());
    // Both names of a field are known. Its first one counts.
    EXPECT_EQ(everything.read(make_map({{"name", "a"}, {"title", "b"}})).rest, AttributeMap());
}

TEST(Binding, ReportsAllThatIsWrong) {
    expect_error(
        [] {
            everything.read(from_json(R"({"letter":128,"large":-1,"levels":["low","x"],
                "limits":{"rate":10,"bust":1},"history":[{},{"burst":0}],"deep":{"er":[]}})"));
        },
        error::vxattribute_query_settings,
        "The configuration has problems:"
        "\n  letter: 128 is not from -128 to 127"
        "\n  large: -1 is not at least 0"
        "\n  levels/1: \"x\" is none of low, high, top"
        "\n  limits/rate: 10 is not from 0 to 9.5"
        "\n  limits/bust: unknown name (did you mean \"burst\"?)"
        "\n  history/1/burst: 0 is not from 1 to 2147483647"
        "\n  deep/er: expected one value, found none");
}

/// Whether reading fails exactly when the description finds a problem.
template <typename Struct>
bool agrees(Binding<Struct> const & binding, AttributeMap const & map) {
    bool const isRight = binding.settings().find_problems(map).empty();
    try {
        binding.read(map);
        return isRight;
    } catch (vxcore::ErrorException const &) {
        return !isRight;
    }
}

TEST(Binding, AgreesWithItsDescription) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    AttributeValue const values[] = {
        AttributeValue(),
        0,
        1,
        9,
        10,
        128,
        70000,
        -1LL << 62,
        true,
        0.5,
        9.75,
        nan,
        "",
        "low",
        "/",
        "PT1S",
        make_list<long long>({1, 2}),
        make_list<std::string>({"/", "low"}),
        AttributeValue(ValueTypeId::typeInteger),
        AttributeMap(),
        make_map({{"rate", 1}}),
        make_map({{"rate", nan}}),
        make_map({{"er", AttributeMap()}}),
        make_map({{"er", make_map({{"depth", 1}})}}),
        make_list<AttributeMap>({AttributeMap(), make_map({{"burst", 0}})})};
    for (Setting const & setting : everything.settings().entries()) {
        for (AttributeValue const & value : values) {
            EXPECT_TRUE(agrees(everything, make_map({{setting.name, value}})))
                << setting.name << ' ' << to_text(value);
        }
    }

    Binding<Limits> const demanding = bind<Limits>(field("rate", &Limits::rate).required());

    struct Outer {
        Limits in;
        std::optional<Limits> maybe;
    };

    Binding<Outer> const outer =
        bind<Outer>(field("in", &Outer::in, demanding), field("maybe", &Outer::maybe, demanding));
    AttributeMap const one = make_map({{"rate", 1}});
    for (auto const & map :
         {AttributeMap(), make_map({{"in", one}}), make_map({{"in", one}, {"x", 1}}),
          make_map({{"in", one}, {"maybe", AttributeMap()}})}) {
        EXPECT_TRUE(agrees(outer, map));
    }
    EXPECT_EQ(outer.settings().find_problems(AttributeMap()).at(0).path, "in/rate");
}

TEST(Binding, DescribesItselfWithTheInitializers) {
    EXPECT_EQ(limits.settings().describe(), "NAME   TYPE     DEFAULT  DESCRIPTION\n"
                                            "rate   number   2.5      (from 0 to 9.5)\n"
                                            "burst  Integer           (at least 1)\n");
    std::string const table = everything.settings().describe(200);
    for (char const * line : {"\nlimits/rate      number", "\nhistory/*/rate   number",
                              "\ndeep/er/depth    Integer", "How much (low, high, top)\n"}) {
        EXPECT_NE(table.find(line), table.npos) << table;
    }

    struct Outer {
        Everything in;

        Outer() { in.limits.rate = 8; }
    };

    auto const outer = bind<Outer>(field("in", &Outer::in, everything));
    EXPECT_EQ(*find_path(outer.settings().with_defaults(AttributeMap()), "in/limits/rate"), 8.0);
}

TEST(Binding, RefusesToWriteWhatItCouldNotRead) {
    Everything object;
    object.large = std::numeric_limits<unsigned long long>::max();
    expect_error([&] { everything.write(object); }, error::vxattribute_query_badValue,
                 "The value 18446744073709551615 does not fit into an Integer");
    object.level = static_cast<Level>(7);
    object.large = 0;
    expect_error([&] { everything.write(object); }, error::vxattribute_query_badValue,
                 "The value 7 is no named constant");
}

} // namespace
