// The rule under test: tools for nested maps merge with the documented side winning, hide what they
// must, and leave the originals unchanged.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"

namespace {

using namespace vxattribute;
using vxtest::expect_error;

TEST(DeepMerge, JoinsMapsAndLetsTheWinnerHaveTheRest) {
    AttributeMap const user =
        make_map({{"port", 1},
                  {"in", make_map({{"a", 1}})},
                  {"own", make_map({{"c", 1}})},
                  {"log", make_map({{"level", "NOTE"}, {"file", AttributeValue()}})},
                  {"list", make_list<AttributeMap>({make_map({{"a", 1}})})},
                  {"mixed", 3}});
    AttributeMap const defaults =
        make_map({{"port", 2},
                  {"host", "localhost"},
                  {"in", make_map({{"b", 2}})},
                  {"log", make_map({{"level", "NEVER"}, {"file", "out"}, {"rotate", true}})},
                  {"mixed", make_map({{"b", 1}})}});
    EXPECT_EQ(
        merged_deep(user, defaults),
        make_map(
            {{"port", 1},
             {"host", "localhost"},
             {"in", make_map({{"a", 1}, {"b", 2}})},
             {"own", make_map({{"c", 1}})},
             {"log", make_map({{"level", "NOTE"}, {"file", AttributeValue()}, {"rotate", true}})},
             {"list", make_list<AttributeMap>({make_map({{"a", 1}})})},
             {"mixed", 3}}));
    EXPECT_EQ(user.query("log").get<AttributeMap>().size(), 2u) << "as it was";
    EXPECT_EQ(merged_deep(AttributeMap(), defaults), defaults);
}

TEST(Redaction, HidesTheNamesAtEveryDepth) {
    AttributeName const names[] = {"password", "key"};
    AttributeMap const map = make_map(
        {{"password", 1},
         {"open", make_map({{"user", "me"}})},
         {"inner", make_map({{"key", make_map({{"a", 1}})}, {"user", "me"}})},
         {"list", make_list<AttributeMap>({make_map({{"user", 1}}), make_map({{"key", 2}})})}});
    EXPECT_EQ(redacted(map, names),
              make_map({{"password", "(redacted)"},
                        {"open", make_map({{"user", "me"}})},
                        {"inner", make_map({{"key", "(redacted)"}, {"user", "me"}})},
                        {"list", make_list<AttributeMap>({make_map({{"user", 1}}),
                                                          make_map({{"key", "(redacted)"}})})}}));
}

AttributeMap const tree = make_map({
    {"a", make_map({{"b/c", make_map({{"~", 5}})}, {"", 6}})},
    {"list", make_list<AttributeMap>({make_map({{"x", 1}}), make_map({{"x", 2}})})},
});

TEST(MapPath, FindsValuesByNamesAndIndexes) {
    EXPECT_EQ(*find_path(tree, "a/b~1c/~0"), AttributeValue(5));
    EXPECT_EQ(*find_path(tree, "a/"), AttributeValue(6));
    EXPECT_EQ(*find_path(tree, "list/1/x"), AttributeValue(2));
    EXPECT_EQ(find_path(tree, "list")->size(), 2u);
    for (char const * path : {"", "b", "a/b", "a/b/c", "list/2/x", "list/x", "list/1", "list/-1/x",
                              "a/b~1c/~0/d", "no such name yet"}) {
        EXPECT_EQ(find_path(tree, path), nullptr) << path;
    }
    EXPECT_EQ(path_step("b/c~"), "b~1c~0");
    AttributeName name;
    EXPECT_FALSE(AttributeName::find_interned("no such name yet", name));
}

TEST(MapPath, SetsValuesAndMakesTheMapsOnTheWay) {
    MutableAttributeMap map(tree);
    set_path(map, "a/b~1c/~0", 7);
    set_path(map, "list/0/x", "one");
    set_path(map, "new/deep/er", true);
    EXPECT_EQ(map, make_map({{"a", make_map({{"b/c", make_map({{"~", 7}})}, {"", 6}})},
                             {"list", make_list<AttributeMap>(
                                          {make_map({{"x", "one"}}), make_map({{"x", 2}})})},
                             {"new", make_map({{"deep", make_map({{"er", true}})}})}}));
    EXPECT_EQ(*find_path(tree, "list/0/x"), AttributeValue(1));
}

TEST(MapPath, LeavesTheMapAloneWhenItCannotSet) {
    MutableAttributeMap map(tree);
    std::string const deep = std::string(100000, '/');
    for (std::string const & path : {std::string("a/b~1c/~0/d"), std::string("list/2/x"), deep}) {
        expect_error([&] { set_path(map, path, 1); }, error::vxattribute_map_attributeNotFound,
                     ("The path '" + path + "' leads through what is not a map, or too deep"));
    }
    vxtest::fail_each_allocation([&] { set_path(map, "list/1/y", "a text of more than 15 bytes"); },
                                 [&] { EXPECT_EQ(map, tree); });
    EXPECT_EQ(find_path(map, "list/1/y")->get<std::string>(), "a text of more than 15 bytes");
}

} // namespace
