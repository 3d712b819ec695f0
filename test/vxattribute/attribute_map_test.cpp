// The rule under test: maps share until one is changed, lookups never clone, merges prefer the side
// that they say, and a change that fails changes nothing.

#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/threads.h"

#include "vxattribute/samples.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <thread>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

AttributeName const a("a"), b("b"), c("c");

/// True when the two non-empty maps share a holder.
bool share(AttributeMapBase const & x, AttributeMapBase const & y) {
    return &*x.begin() == &*y.begin();
}

TEST(AttributeMap, DefaultMapsShareAndTheFirstChangeParts) {
    MutableAttributeMap x;
    MutableAttributeMap y = x;
    EXPECT_EQ(x, AttributeMap());
    y.add(a, 1);
    EXPECT_TRUE(x.empty());
    EXPECT_EQ(y.size(), 1u);
    EXPECT_EQ(&y.query(b), &AttributeValue::null);
    EXPECT_EQ(y.query_ptr(b), nullptr);
    EXPECT_EQ(*y.query_ptr(a), AttributeValue(1));
}

TEST(AttributeMap, ChangesOneByOne) {
    MutableAttributeMap map;
    EXPECT_TRUE(map[a].is_null());
    EXPECT_TRUE(map.exists(a));
    map[a] = 5;
    auto const [place, isNew] = map.insert({a, AttributeValue(6)});
    EXPECT_FALSE(isNew);
    EXPECT_EQ(place->second, AttributeValue(5));
    EXPECT_EQ(map.insert(map.begin(), {c, AttributeValue(8)})->first, c);
    AttributeMap const more = make_map({{"a", 1}, {"b", 2}});
    map.insert(more.begin(), more.end());
    map.insert(map.begin(), map.end());
    EXPECT_EQ(map, make_map({{"a", 5}, {"b", 2}, {"c", 8}})) << "existing values stay";
    map.erase(map.find(a));
    EXPECT_EQ(map, make_map({{"b", 2}, {"c", 8}}));
    map.erase(map.begin(), map.end());
    EXPECT_TRUE(map.empty());
}

TEST(AttributeMap, MergesPreferTheSideThatTheySay) {
    AttributeMap const left = make_map({{"a", 1}, {"b", 2}});
    AttributeMap const right = make_map({{"b", 3}, {"c", 4}});
    EXPECT_EQ(left.merged_with(right), make_map({{"a", 1}, {"b", 2}, {"c", 4}}));
    EXPECT_TRUE(share(left.merged_with(AttributeMap()), left));
    EXPECT_TRUE(share(AttributeMap().merged_with(left), left));
    for (bool const isShared : {true, false}) {
        MutableAttributeMap map;
        map.add(a, 1).add(b, 2);
        AttributeMap const sharer = isShared ? AttributeMap(map) : AttributeMap();
        map.add(right);
        EXPECT_EQ(map, make_map({{"a", 1}, {"b", 3}, {"c", 4}}));
        EXPECT_EQ(sharer, isShared ? left : AttributeMap());
        MutableAttributeMap const before = map;
        map.add(map);
        EXPECT_TRUE(share(map, before));
    }
    MutableAttributeMap empty;
    empty.add(left);
    EXPECT_TRUE(share(empty, left));
}

TEST(AttributeMap, OrderIsByPairsAndAPrefixIsLower) {
    AttributeMap const one = make_map({{"a", 1}});
    AttributeMap const two = make_map({{"a", 1}, {"b", 1}});
    EXPECT_LT(one, make_map({{"a", 2}}));
    EXPECT_EQ(one < two, a < b); // when b comes first, it decides against the longer map
    EXPECT_EQ(one.compare(one), 0);
    EXPECT_EQ(one.compare(two), -two.compare(one));
    EXPECT_EQ(AttributeMap().compare(one), -1);
    EXPECT_EQ(AttributeMap().hash(), 0u);
    EXPECT_EQ(two.hash(), make_map({{"b", 1}, {"a", 1}}).hash());
    double const nan = std::numeric_limits<double>::quiet_NaN();
    AttributeMap const odd = make_map({{"a", nan}});
    AttributeMap const copy = odd;
    EXPECT_EQ(odd, copy) << "one holder is equal without a look";
    EXPECT_NE(odd, make_map({{"a", nan}}));
}

TEST(AttributeMap, ArgumentsMayLiveInTheMapItself) {
    for (bool const isShared : {true, false}) {
        MutableAttributeMap map = make_map({{"a", make_map({{"b", "inner text, long enough"}})}});
        AttributeMap sharer = isShared ? AttributeMap(map) : AttributeMap();
        map.add(a, map.query(a).get<AttributeMap>().query(b));
        EXPECT_EQ(map, make_map({{"a", "inner text, long enough"}}));
        map.add(std::as_const(map).begin()->first, map.query(a));
        map[c] = map.query(a);
        map.insert({b, map.query(c)});
        EXPECT_EQ(map.query(b), map.query(a));
    }
}

TEST(AttributeMap, WritableRefLendsAndGivesBack) {
    AttributeMap map = make_map({{"a", 1}});
    AttributeMap const sharer = map;
    WritableAttributeMapRef(map).add("b", 2);
    EXPECT_EQ(map, make_map({{"a", 1}, {"b", 2}}));
    EXPECT_EQ(sharer, make_map({{"a", 1}}));
    void const * const place = map.query_ptr(a);
    try {
        WritableAttributeMapRef ref(map);
        ref.add("c", 3);
        throw std::runtime_error("unwinding");
    } catch (std::runtime_error const &) {
    }
    EXPECT_EQ(map.size(), 3u);
    EXPECT_EQ(map.query_ptr(a), place) << "changed in place";
}

TEST(AttributeMap, MovesAndTransfersTakeTheHolder) {
    MutableAttributeMap source = make_map({{"a", 1}});
    void const * const place = source.query_ptr(a);
    AttributeMap taken(std::move(source));
    source = MutableAttributeMap();
    MutableAttributeMap last(taken.transfer().get());
    EXPECT_EQ(last.query_ptr(a), place);
    AttributeMap const final(last.transfer().get());
    EXPECT_EQ(final.query_ptr(a), place);
}

TEST(AttributeMapAccess, TypedAccessorsNameTheAttribute) {
    AttributeMap const map = make_map({{"n", 5},
                                       {"l", make_list<long long>({1, 2})},
                                       {"e", AttributeValue(ValueTypeId::typeInteger)},
                                       {"0", AttributeValue()}});
    EXPECT_EQ(get<long long>(map, "n"), 5);
    EXPECT_EQ(get_or<long long>(map, "x", 8), 8);
    EXPECT_EQ(*find<long long>(map, "n"), 5);
    EXPECT_EQ(find<long long>(map, "x"), nullptr);
    EXPECT_EQ(find<long long>(map, "e"), nullptr);
    EXPECT_EQ(get_list<long long>(map, "l").size(), 2u);
    EXPECT_TRUE(get_list<long long>(map, "x").empty());
    expect_error([&] { get<bool>(map, "x"); }, error::vxattribute_map_attributeNotFound,
                 "Attribute 'x' not found in map");
    expect_error([&] { get<bool>(map, "l"); }, error::vxattribute_value_type_mismatch,
                 "Attribute 'l': Expecting value of type 'Boolean'; actual type 'Integer'");
    expect_error([&] { find<long long>(map, "l"); },
                 error::vxattribute_value_cardinality_expectSingle,
                 "Attribute 'l': Expecting scalar, found value with cardinality 2");
    EXPECT_THROW(get<long long>(map, "e"), vxcore::ErrorException);
    expect_error([&] { get_list<bool>(map, "0"); }, error::vxattribute_value_type_mismatch,
                 "Attribute '0': Expecting value of type 'Boolean'; actual type 'Null'");
}

TEST(AttributeMapAccess, DefaultsAreCheckedToo) {
    struct Checks : AttributeMapBase {
        using AttributeMapBase::check_default_of_type;
        using AttributeMapBase::check_scalar_of_type;
    };

    expect_error([] { Checks::check_default_of_type("n", 1, ValueTypeId::typeDouble); },
                 error::vxattribute_value_type_mismatch,
                 "Expecting default value of type 'Double' for attribute 'n'; actual default value "
                 "type: 'Integer'");
    expect_error([] { Checks::check_scalar_of_type("n", AttributeValue(), ValueTypeId::typeNull); },
                 error::vxattribute_value_cardinality_expectSingle,
                 "Attribute 'n': Expecting scalar, found value with cardinality 0");
}

TEST(AttributeMapAccess, SortedNamesGoByCharacters) {
    AttributeMap const map = make_map({{"b", 1}, {"a", 2}, {"\xc3\xa4", 3}, {"", 4}, {"B", 5}});
    std::string names;
    for (auto const & element : sorted_by_name(map)) {
        names += element->first.value() + ',';
    }
    EXPECT_EQ(names, ",B,a,b,\xc3\xa4,");
}

/// Random changes on four maps, each step compared with plain maps of strings.
TEST(AttributeMapModel, AgreesWithPlainMaps) {
    std::mt19937 random(20240607);
    auto const pick = [&random](unsigned int n) { return static_cast<unsigned>(random() % n); };
    std::vector<AttributeName> names;
    for (int i = 0; i < 40; ++i) {
        names.emplace_back("name " + std::to_string(i));
    }
    using Model = std::map<AttributeName, AttributeValue>;
    MutableAttributeMap maps[4];
    Model models[4];
    for (int step = 0; step < 20000; ++step) {
        unsigned int const i = pick(4), j = pick(4);
        AttributeName const & name = names[pick(40)];
        AttributeValue const value = step % 3 == 0 ? AttributeValue(step) : AttributeValue("text");
        switch (pick(9)) {
        case 0:
            maps[i] = maps[j];
            models[i] = models[j];
            break;
        case 1:
            maps[i].erase(name);
            models[i].erase(name);
            break;
        case 2:
            maps[i].swap(maps[j]);
            models[i].swap(models[j]);
            break;
        case 3:
            maps[i].add(maps[j]);
            for (auto const & [n, v] : Model(models[j])) {
                models[i][n] = v;
            }
            break;
        case 4:
            maps[i] = maps[i].merged_with(maps[j]);
            models[i].insert(models[j].begin(), models[j].end());
            break;
        case 5:
            maps[i].insert({name, value});
            models[i].insert({name, value});
            break;
        case 6:
            if (pick(20) == 0) {
                maps[i].clear();
                models[i].clear();
            }
            break;
        default:
            maps[i].add(name, value);
            models[i][name] = value;
            break;
        }
        ASSERT_EQ(maps[i].size(), models[i].size()) << step;
        ASSERT_TRUE(std::equal(models[i].begin(), models[i].end(), std::as_const(maps[i]).begin()))
            << step;
        ASSERT_EQ(maps[i] == maps[j], models[i] == models[j]);
        ASSERT_EQ(maps[i] < maps[j], models[i] < models[j]);
    }
}

TEST(AttributeMapFailure, FailedChangesLeaveTheMapAsItWas) {
    using Change = void (*)(MutableAttributeMap &, AttributeMap const &);
    Change const changes[] = {
        [](auto & map, auto &) { map.add("new", "a long text, to allocate"); },
        [](auto & map, auto & more) { map.add(more); },
        [](auto & map, auto & more) { map = map.merged_with(more); },
        [](auto & map, auto & more) { map.insert(more.begin(), more.end()); },
        [](auto & map, auto &) {
            map.insert({AttributeName("new"), AttributeValue(2.5)});
        },
        [](auto & map, auto &) { map["new"]; },
        [](auto & map, auto &) { map.erase("a"); },
        [](auto & map, auto &) { map.clear(); },
    };
    std::thread([&changes] {
        AttributeMap const more = make_map({{"a", 1000}, {"x", 2000}, {"y", "text"}, {"z", 1.5}});
        for (Change const change : changes) {
            for (bool const isShared : {true, false}) {
                MutableAttributeMap map;
                map.add("a", 500).add("b", "text").add("c", 2.5);
                AttributeMap const sharer = isShared ? AttributeMap(map) : AttributeMap();
                AttributeMap const before =
                    vxtest::deep_copy(AttributeValue(map)).get<AttributeMap>();
                vxtest::fail_each_allocation([&] { change(map, more); },
                                             [&] { ASSERT_TRUE(map == before); });
                EXPECT_TRUE(!isShared || sharer == before);
            }
        }
    }).join();
}

TEST(AttributeMapDepth, TwoHundredThousandLevelsDieWithoutRecursion) {
    AttributeMap map;
    for (int i = 0; i < 200000; ++i) {
        MutableAttributeMap outer;
        outer.add(a, map);
        map = std::move(outer);
    }
    map = AttributeMap();
    EXPECT_TRUE(map.empty());
}

TEST(AttributeMapThreads, SharedHolderManyCopies) {
    AttributeMap const shared = make_map({{"a", 1000}, {"b", make_map({{"c", "text"}})}});
    auto const work = [shared](int seed) {
        for (int i = 0; i < 2000; ++i) {
            MutableAttributeMap copy = shared;
            copy.add(c, seed * 1000).erase(b);
            ASSERT_EQ(copy.size(), 2u);
            ASSERT_EQ(shared.size(), 2u);
            ASSERT_TRUE(shared.exists(b));
        }
    };
    vxtest::in_four_threads(work);
    EXPECT_EQ(shared, make_map({{"b", make_map({{"c", "text"}})}, {"a", 1000}}));
}

} // namespace
