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

using Change = void (*)(AttributeValue &, AttributeValue const & argument);

/// Every way to write a value of any type. The argument is of the same type.
Change const changes[] = {
    [](AttributeValue & value, AttributeValue const & argument) { value = argument; },
    [](AttributeValue & value, AttributeValue const &) { value.clear(); },
    [](AttributeValue & value, AttributeValue const &) { value.set("another type, and long"); },
    [](AttributeValue & value, AttributeValue const & argument) {
        visit_elements(argument, [&value]<typename T>(std::span<T const> elements) {
            value.set(elements[0]);
        });
    },
    [](AttributeValue & value, AttributeValue const & argument) {
        visit_elements(argument, [&value]<typename T>(std::span<T const> elements) {
            value.multivalue_writer<T>().push_back(elements[0]);
        });
    },
    [](AttributeValue & value, AttributeValue const & argument) {
        visit_elements(argument, [&value]<typename T>(std::span<T const> elements) {
            value.multivalue_writer<T>().reserve(10);
            (void)elements;
        });
    },
    [](AttributeValue & value, AttributeValue const & argument) {
        visit_elements(argument, [&value]<typename T>(std::span<T const> elements) {
            value.multivalue_writer<T>().assign(elements.data(), elements.data() + elements.size());
        });
    },
};

/// Samples with an element to use as an argument.
class CopyOnWriteArguments : public CopyOnWrite {};

TEST_P(CopyOnWriteArguments, FailedChangesLeaveBothAsTheyWere) {
    // A thread of its own starts without spent blocks, so that every allocation can fail.
    std::thread([] {
        for (Change const change : changes) {
            for (bool const isShared : {true, false}) {
                AttributeValue value = deep_copy(GetParam().value);
                AttributeValue const sharer = isShared ? value : AttributeValue();
                AttributeValue const before = deep_copy(value);
                AttributeValue const argument = deep_copy(GetParam().value);
                vxtest::fail_each_allocation([&] { change(value, argument); },
                                             [&] {
                                                 ASSERT_EQ(value, before);
                                                 ASSERT_TRUE(!isShared || sharer == before);
                                             });
                EXPECT_EQ(isShared ? sharer : before, before);
            }
        }
    }).join();
}

TEST_P(CopyOnWriteArguments, ArgumentsMayLiveInTheValueItself) {
    for (bool const isShared : {true, false}) {
        for (unsigned int index = 0; index < GetParam().value.size(); ++index) {
            AttributeValue appended = deep_copy(GetParam().value);
            AttributeValue set = deep_copy(appended);
            AttributeValue assigned = deep_copy(appended);
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
    AttributeValue const shared = make_list<std::string>({"a", "b", std::string(50, 'c')});
    auto const work = [value = shared](int seed) mutable {
        for (int i = 0; i < 2000; ++i) {
            AttributeValue copy = value;
            copy.multivalue_writer<std::string>().push_back(std::to_string(seed));
            ASSERT_EQ(copy.size(), 4u);
            ASSERT_EQ(value.at<std::string>(1), "b");
        }
    };
    vxtest::in_four_threads(work);
    EXPECT_EQ(shared.size(), 3u);
}

} // namespace
