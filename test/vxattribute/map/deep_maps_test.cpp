// The rule under test: operations on nested maps need no stack for the depth and follow the rules
// of shallow maps.

#include "support/allocation.h"
#include "support/threads.h"

#include "vxattribute/samples.h"
#include "vxcore/hash.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace vxattribute;

/// The number of maps in the value of each level, from the inside out, repeated. The last map of a
/// value is the nested one.
constexpr std::string_view shapes[] = {"1", "2", "122"};

AttributeMap nested(int levels, std::string_view shape, AttributeMap map) {
    for (int i = 0; i < levels; ++i) {
        bool const isAlone = shape[static_cast<std::size_t>(i) % shape.size()] == '1';
        map = make_map({{"n", isAlone ? AttributeValue(map)
                                      : make_list<AttributeMap>({AttributeMap(), map})}});
    }
    return map;
}

TEST(DeepMaps, NeedNoStack) {
    vxtest::on_small_stack([] {
        for (std::string_view const shape : shapes) {
            auto const nest = [shape](std::initializer_list<Attribute> inner) {
                return nested(200'000, shape, make_map(inner));
            };
            AttributeMap const map = nest({{"x", 1}}), same = nest({{"x", 1}});
            AttributeMap const hidden = nest({{"x", "(redacted)"}}), other = nest({{"y", 2}});
            EXPECT_TRUE(map == same); // not EXPECT_EQ, which prints the map
            EXPECT_EQ(map.compare(same), 0);
            EXPECT_EQ(map.hash(), same.hash());
            EXPECT_FALSE(map == hidden);
            EXPECT_LT(map.compare(hidden), 0);
            EXPECT_NE(map.hash(), hidden.hash());
            EXPECT_EQ(find_differences(map, hidden).size(), 1u);
            AttributeName const names[] = {"x", "y"};
            EXPECT_TRUE(redacted(map, names) == hidden);
            EXPECT_EQ(&*redacted(map, {}).begin(), &*map.begin()) << "shared";
            EXPECT_TRUE(merged_deep(map, other) ==
                        (shape == "1" ? nest({{"x", 1}, {"y", 2}}) : map));
            JsonTextOptions out;
            JsonReadOptions in;
            out.max_depth = in.max_depth = 400'001;
            EXPECT_TRUE(value_from_json(value_to_json(map, out), in) == AttributeValue(map));
            AttributeNamePackage::Composer composer;
            collect_names(map, composer);
            EXPECT_EQ(composer.compose()->size(), 2u);
            vxcore::ErrorInfo::Ptr error;
            Query("y").required(true).execute(map, &error);
            EXPECT_LT(error->text().size(), 1'000'000u);
        }
    });
}

TEST(DeepMaps, FollowTheRulesOfShallowOnes) {
    std::vector<AttributeMap> maps(1);
    for (vxtest::Sample const & sample : vxtest::samples()) {
        maps.push_back(make_map({{"x", sample.value}}));
    }
    maps.push_back(make_map({{"x", std::nan("")}})); // equals itself alone
    maps.push_back(make_map({{"x", std::nan("")}}));
    for (std::string_view const shape : shapes) {
        for (AttributeMap const & a : maps) {
            unsigned int hash = a.hash();
            for (int i = 0; i < 50; ++i) { // a list of {} and another map has the hash of the other
                hash = vxcore::hash_mix(vxcore::hash_mix(0, AttributeName("n").hash()), hash);
            }
            EXPECT_EQ(nested(50, shape, a).hash(), hash) << to_text(a);
            for (AttributeMap const & b : maps) {
                AttributeMap const deepA = nested(50, shape, a), deepB = nested(50, shape, b);
                EXPECT_EQ(deepA.compare(deepB), a.compare(b)) << to_text(a) << to_text(b);
                EXPECT_EQ(deepA == deepB, a == b) << to_text(a) << to_text(b);
            }
        }
    }
}

TEST(DeepMaps, TakeMemoryToCompareOnlyBeyondTheFirstLevels) {
    for (int const levels : {50, 30}) { // the second time no level is still counted
        AttributeMap const map = nested(levels, "2", {}), same = nested(levels, "2", {});
        unsigned long const failures = vxtest::fail_each_allocation(
            [&] {
                EXPECT_TRUE(map == same);
                EXPECT_FALSE(map < same);
                EXPECT_EQ(map.hash(), same.hash());
            },
            [] {});
        EXPECT_EQ(failures == 0, levels == 30) << failures;
    }
}

TEST(DeepMaps, AreShownTo256Levels) {
    for (auto const & [shape, mark] :
         {std::pair("1", "{...(+1)\n"), std::pair("2", "{...(+2)\n")}) {
        std::string const whole = to_text(nested(256, shape, make_map({{"x", 1}})));
        EXPECT_NE(whole.find("'x' => "), whole.npos);
        EXPECT_EQ(whole.find("...(+"), whole.npos);
        std::string const cut = to_text(nested(257, shape, make_map({{"x", 1}})));
        EXPECT_NE(cut.find(mark), cut.npos);
        EXPECT_EQ(cut.find("'x' => "), cut.npos);
    }
}

} // namespace
