// The rule under test: a change through one object never shows in another, an unshared object is
// changed in place, and a change that fails changes nothing.

#include "support/allocation.h"
#include "support/threads.h"

#include "vxattribute/samples.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace vxattribute;
using vxtest::deep_copy;
using vxtest::Sample;

class CopyOnWrite : public testing::TestWithParam<Sample> {};

TEST_P(CopyOnWrite, NeitherCopySeesTheOthersChange) {
    for (bool const changeCopy : {true, false}) {
        AttributeValue original = GetParam().value;
        AttributeValue copy = original;
        AttributeValue const before = deep_copy(original);
        GetParam().change(changeCopy ? copy : original);
        EXPECT_EQ(changeCopy ? original : copy, before);
        EXPECT_NE(changeCopy ? copy : original, before);
        EXPECT_EQ(before.hash(), (changeCopy ? original : copy).hash());
    }
}

constexpr int waysToWrite = 7;

/// Writes a value in one of the ways that every type has. The argument is of the same type.
void write(int way, AttributeValue & value, AttributeValue const & argument) {
    visit_elements(argument, [&]<typename T>(std::span<T const> elements) {
        switch (way) {
        case 0:
            return void(value = argument);
        case 1:
            return value.clear();
        case 2:
            return void(value.set("another type, and long"));
        case 3:
            return void(value.set(elements[0]));
        case 4:
            return void(value.multivalue_writer<T>().push_back(elements[0]));
        case 5:
            return void(value.multivalue_writer<T>().reserve(10));
        default:
            value.multivalue_writer<T>().assign(elements.data(), elements.data() + elements.size());
        }
    });
}

/// Samples with an element to use as an argument.
class CopyOnWriteArguments : public CopyOnWrite {};

TEST_P(CopyOnWriteArguments, FailedChangesLeaveBothAsTheyWere) {
    // A thread of its own starts without blocks, so that the first of each size can fail.
    std::thread([] {
        AttributeValue null;
        visit_elements(GetParam().value, [&null]<typename T>(std::span<T const>) {
            vxtest::fail_each_allocation([&null] { null.multivalue_writer<T>(); },
                                         [&null] { ASSERT_TRUE(null.is_null()); });
        });
        for (int way = 0; way < waysToWrite; ++way) {
            for (bool const isShared : {true, false}) {
                AttributeValue value = deep_copy(GetParam().value);
                AttributeValue const before = deep_copy(value), argument = deep_copy(value);
                AttributeValue const sharer = isShared ? value : before;
                vxtest::fail_each_allocation([&] { write(way, value, argument); },
                                             [&] {
                                                 ASSERT_EQ(value, before);
                                                 ASSERT_EQ(sharer, before);
                                             });
                EXPECT_EQ(sharer, before);
            }
        }
    }).join();
}

TEST_P(CopyOnWriteArguments, ArgumentsMayLiveInTheValueItself) {
    for (bool const isShared : {true, false}) {
        for (unsigned int index = 0; index < GetParam().value.size(); ++index) {
            AttributeValue appended = deep_copy(GetParam().value), set = deep_copy(appended),
                           assigned = deep_copy(appended);
            AttributeValue const sharers[] = {isShared ? appended : AttributeValue(),
                                              isShared ? set : AttributeValue(),
                                              isShared ? assigned : AttributeValue()};
            AttributeValue const expected = deep_copy(appended.subrange(index, 1));
            AttributeValue const tail = deep_copy(appended.subrange(index));
            visit_elements(GetParam().value, [&]<typename T>(std::span<T const>) {
                appended.multivalue_writer<T>().push_back(appended.at<T>(index));
                set.set(set.at<T>(index));
                auto writer = assigned.multivalue_writer<T>();
                writer.assign(assigned.begin<T>() + index, assigned.end<T>());
            });
            EXPECT_EQ(appended.subrange(appended.size() - 1), expected);
            EXPECT_EQ(appended.size(), GetParam().value.size() + 1);
            EXPECT_EQ(set, expected);
            EXPECT_EQ(assigned, tail);
        }
    }
}

std::string name_of(testing::TestParamInfo<Sample> const & sample) {
    return sample.param.name + std::to_string(sample.index);
}

std::vector<Sample> samples_with_elements() {
    std::vector<Sample> samples = vxtest::samples();
    std::erase_if(samples, [](Sample const & sample) { return sample.value.empty(); });
    return samples;
}

INSTANTIATE_TEST_SUITE_P(AllTypes, CopyOnWrite, testing::ValuesIn(vxtest::samples()), name_of);
INSTANTIATE_TEST_SUITE_P(AllTypes, CopyOnWriteArguments, testing::ValuesIn(samples_with_elements()),
                         name_of);

TEST(CopyOnWriteThreads, CopiesLiveInSeparateThreads) {
    AttributeValue const sharedList = make_list<std::string>({"a", "b", std::string(50, 'c')});
    AttributeMap const sharedMap = make_map({{"a", 1000}, {"b", make_map({{"c", "text"}})}});
    vxtest::in_four_threads([list = sharedList, map = sharedMap](int seed) {
        for (int i = 0; i < 2000; ++i) {
            AttributeValue listCopy = list;
            listCopy.multivalue_writer<std::string>().push_back(std::to_string(seed));
            ASSERT_EQ(listCopy.size(), 4u);
            ASSERT_EQ(list.at<std::string>(1), "b");
            MutableAttributeMap mapCopy = map;
            mapCopy.add("c", seed * 1000).erase("b");
            ASSERT_EQ(mapCopy.size(), 2u);
            ASSERT_TRUE(map.exists("b"));
        }
    });
    EXPECT_EQ(sharedList.size(), 3u);
    EXPECT_EQ(sharedMap, make_map({{"b", make_map({{"c", "text"}})}, {"a", 1000}}));
}

} // namespace
