// The rule under test: maps share their elements until one is changed, look-ups never clone, each
// merge prefers the documented side, and a change that fails changes nothing.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/samples.h"

#include <map>
#include <random>
#include <thread>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

AttributeName const a("a"), b("b"), c("c");

/// Returns true when the two maps, which are not empty, share a holder.
bool share(AttributeMapBase const & x, AttributeMapBase const & y) {
    return &*x.begin() == &*y.begin();
}

/// Returns true when the order, the links and the balances of the map's tree are right.
bool has_valid_tree(AttributeMapBase const & map) {
    struct Access : AttributeMapBase {
        static MapHolder const & holder(AttributeMapBase const & x) {
            return *(x.*&Access::m_pImpl);
        }
    };

    return Access::holder(map).map().is_valid();
}

TEST(AttributeMap, LookupsGiveNullForAbsentNames) {
    MutableAttributeMap const map = make_map({{"a", 1}});
    EXPECT_TRUE(map.exists(a));
    EXPECT_FALSE(map.exists(b));
    EXPECT_EQ(&map.query(b), &AttributeValue::null);
    EXPECT_EQ(map.query_ptr(b), nullptr);
    EXPECT_EQ(*map.query_ptr(a), AttributeValue(1));
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
    double const nan = std::numeric_limits<double>::quiet_NaN();
    AttributeMap const odd = make_map({{"a", nan}});
    AttributeMap const copy = odd;
    EXPECT_EQ(odd, copy) << "one holder is equal without a look";
    EXPECT_NE(odd, make_map({{"a", nan}}));
}

TEST(AttributeMap, HashesNamesAndValuesInMapOrder) {
    auto const mix = [](unsigned int seed, unsigned int part) {
        return seed ^ (part + 0x9E3779B9u + (seed << 6) + (seed >> 2));
    };
    AttributeMap const map = make_map({{"a", 3}, {"b", true}}); // values that hash to 3 and 1
    bool const isOrdered = a < b;
    unsigned int const first = mix(mix(0, (isOrdered ? a : b).hash()), isOrdered ? 3 : 1);
    unsigned int const hash = mix(mix(first, (isOrdered ? b : a).hash()), isOrdered ? 1 : 3);
    EXPECT_EQ(map.hash(), hash);
    EXPECT_EQ(make_list<AttributeMap>({map, AttributeMap(), map}).hash(), hash * 26);
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
    auto const fail = [&map] {
        WritableAttributeMapRef ref(map);
        ref.add("c", 3);
        throw std::runtime_error("unwinding");
    };
    EXPECT_THROW(fail(), std::runtime_error);
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
    EXPECT_EQ(get_or(map, "n", 8), 5);
    EXPECT_EQ(get_or(map, "x", "text").size(), 4u);
    EXPECT_EQ(get_or(map, "x", 0.5f), 0.5);
    EXPECT_THROW(get_or(map, "n", 0.5), vxcore::ErrorException);
    EXPECT_EQ(*find<long long>(map, "n"), 5);
    EXPECT_EQ(find<long long>(map, "x"), nullptr);
    EXPECT_EQ(find<long long>(map, "e"), nullptr);
    EXPECT_EQ(get_list<long long>(map, "l").size(), 2u);
    EXPECT_TRUE(get_list<long long>(map, "x").empty());
    expect_error([&] { get<bool>(map, "x"); }, error::vxattribute_map_attributeNotFound,
                 "Attribute 'x' not found in map",
                 "vxattribute::AttributeMapBase::throw_attribute_not_found()");
    expect_error([&] { get<bool>(map, "l"); }, error::vxattribute_value_type_mismatch,
                 "Attribute 'l': Expecting value of type 'Boolean'; actual type 'Integer'",
                 "vxattribute::AttributeMapBase::check_attribute_of_type()");
    expect_error([&] { find<long long>(map, "l"); },
                 error::vxattribute_value_cardinality_expectSingle,
                 "Attribute 'l': Expecting scalar, found value with cardinality 2");
    EXPECT_THROW(get<long long>(map, "e"), vxcore::ErrorException);
    expect_error([&] { get_list<bool>(map, "0"); }, error::vxattribute_value_type_mismatch,
                 "Attribute '0': Expecting value of type 'Boolean'; actual type 'Null'");
}

TEST(AttributeMapAccess, BracketsAddOnlyToWhatCanBeChanged) {
    MutableAttributeMap map = make_map({{"n", 5}});
    EXPECT_EQ(&std::as_const(map)["n"], map.query_ptr("n"));
    EXPECT_TRUE(std::as_const(map)["x"].is_null() && AttributeMap(map)["x"].is_null());
    EXPECT_EQ(map.size(), 1u);
    map["x"] = 6;
    EXPECT_EQ(map.size(), 2u);
}

TEST(AttributeMapAccess, DefaultsAreCheckedToo) {
    struct Checks : AttributeMapBase {
        using AttributeMapBase::check_default_of_type;
        using AttributeMapBase::check_scalar_of_type;
    };

    expect_error([] { Checks::check_default_of_type("n", 1, ValueTypeId::typeDouble); },
                 error::vxattribute_value_type_mismatch,
                 "Expecting default value of type 'Double' for attribute 'n'; actual default value "
                 "type: 'Integer'",
                 "vxattribute::AttributeMapBase::check_default_of_type()");
    expect_error([] { Checks::check_scalar_of_type("n", AttributeValue(), ValueTypeId::typeNull); },
                 error::vxattribute_value_cardinality_expectSingle,
                 "Attribute 'n': Expecting scalar, found value with cardinality 0",
                 "vxattribute::AttributeMapBase::check_scalar_of_type()");
}

using Model = std::map<AttributeName, AttributeValue>;

/// Performs an operation that maps and plain maps share, and returns its result.
template <typename Map>
unsigned int change(unsigned int kind, Map & x, Map & y, Model::value_type const & element) {
    auto const & [name, value] = element;
    switch (kind) {
    case 0:
        return x = y, 0;
    case 1:
        return static_cast<unsigned int>(x.erase(name));
    case 2:
        return x.find(name) != x.end() && x.erase(x.find(name)) == x.end();
    case 3:
        return x.erase(x.begin(), x.find(name)) == x.end();
    case 4:
        return x.swap(y), 0;
    case 5:
        return x.insert(element).second;
    case 6:
        return x.insert(x.begin(), element)->second == value;
    case 7:
        return x.insert(y.begin(), y.end()), 0;
    case 8:
        return x[name].is_null();
    default:
        return x.size() < 4 ? x.clear(), 1 : 0;
    }
}

TEST(AttributeMapModel, RandomChangesAgreeWithPlainMaps) {
    std::mt19937 random(20240607);
    auto const pick = [&random](unsigned int n) { return static_cast<unsigned>(random() % n); };
    MutableAttributeMap maps[4];
    Model models[4];
    for (int step = 0; step < 20000; ++step) {
        unsigned int const i = pick(4), j = pick(4), kind = pick(16);
        AttributeName const name("name " + std::to_string(pick(40)));
        AttributeValue const value = step % 3 == 0 ? AttributeValue(step) : AttributeValue("text");
        if (kind < 10) {
            ASSERT_EQ(change(kind, maps[i], maps[j], {name, value}),
                      change(kind, models[i], models[j], {name, value}));
        } else if (kind == 10) {
            maps[i].add(maps[j]);
            for (auto const & [n, v] : Model(models[j])) {
                models[i][n] = v;
            }
        } else if (kind == 11) {
            maps[i] = maps[i].merged_with(maps[j]);
            models[i].insert(models[j].begin(), models[j].end());
        } else {
            maps[i].add(name, value);
            models[i][name] = value;
        }
        ASSERT_TRUE(has_valid_tree(maps[i])) << step;
        ASSERT_EQ(maps[i].size(), models[i].size()) << step;
        ASSERT_TRUE(std::equal(models[i].begin(), models[i].end(), std::as_const(maps[i]).begin()))
            << step;
        ASSERT_EQ(maps[i] == maps[j], models[i] == models[j]);
        ASSERT_EQ(maps[i] < maps[j], models[i] < models[j]);
    }
}

// The orders exercise all rotations, and both ways to build a tree must agree.
TEST(AttributeMapModel, IteratorsHoldThroughLongRunsOfChanges) {
    std::vector<AttributeName> names;
    for (int i = 0; i < 600; ++i) {
        names.emplace_back("run " + std::to_string(i));
    }
    std::sort(names.begin(), names.end());
    for (char const * const order : {"sorted", "reversed", "random"}) {
        MutableAttributeMap map;
        Model model;
        std::vector<Attribute> list;
        std::vector<MutableAttributeMap::iterator> places;
        for (std::size_t i = 0; i < names.size(); ++i) {
            AttributeValue const value(static_cast<long long>(i));
            places.push_back(map.insert({names[i], value}).first);
            model[names[i]] = value;
            list.emplace_back(names[(i + names.size()) / 2], -1); // overridden by what follows
            list.emplace_back(names[i], value);
            ASSERT_TRUE(has_valid_tree(map)) << order << ' ' << i;
        }
        AttributeMap const made = make_map(std::span(list));
        EXPECT_TRUE(made == map && has_valid_tree(made)) << order;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (i % 4 != 0) {
                auto const next = std::next(places[i]);
                EXPECT_TRUE(i % 4 != 1 || map.erase(places[i]) == next);
                EXPECT_EQ(map.erase(names[i]), i % 4 == 1 ? 0u : 1u);
                model.erase(names[i]);
                ASSERT_TRUE(has_valid_tree(map)) << order << ' ' << map.size();
            }
        }
        EXPECT_TRUE(std::equal(model.rbegin(), model.rend(), std::reverse_iterator(map.end())));
        for (std::size_t i = 0; i < names.size(); i += 4) {
            EXPECT_EQ(&*places[i], &*map.find(names[i])) << order;
            EXPECT_EQ(std::next(places[i]), map.upper_bound(names[i])) << order;
        }
        order[0] == 's' ? std::reverse(names.begin(), names.end())
                        : std::shuffle(names.begin(), names.end(), std::mt19937(3));
    }
}

TEST(AttributeMap, MapsOfOneListMayHaveTheirNamesInAnyOrder) {
    AttributeValue const maps = value_from_json(
        R"([{"a":1,"b":2,"c":3}, {"c":4,"b":5,"a":6}, {"b":7,"b":8,"a":9}, {"a":1}])");
    EXPECT_EQ(maps,
              make_list<AttributeMap>({make_map({{"a", 1}, {"b", 2}, {"c", 3}}),
                                       make_map({{"a", 6}, {"b", 5}, {"c", 4}}),
                                       make_map({{"a", 9}, {"b", 8}}), make_map({{"a", 1}})}));
}

TEST(AttributeMapFailure, FailedChangesLeaveTheMapAsItWas) {
    using Change = void (*)(MutableAttributeMap &, AttributeMap const &);
    Change const changes[] = {
        [](auto & map, auto &) { map.add("new", "a long text, to allocate"); },
        [](auto & map, auto & more) { map.add(more); },
        [](auto & map, auto & more) { map = map.merged_with(more); },
        [](auto & map, auto & more) { map.insert(more.begin(), more.end()); },
        [](auto & map, auto &) { map.insert(AttributeMap::value_type("new", 2.5)); },
        [](auto & map, auto &) { map["new"]; },
        [](auto & map, auto &) { map.erase("a"); },
        [](auto & map, auto &) { map.clear(); },
        [](auto & map, auto &) {
            map = make_map({{"b", "a long text, to allocate"}, {"a", 0.5}});
        },
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
                vxtest::fail_each_allocation(
                    [&] { change(map, more); },
                    [&] { ASSERT_TRUE(map == before && has_valid_tree(map)); });
                EXPECT_TRUE(!isShared || sharer == before);
            }
        }
    }).join();
}

} // namespace
