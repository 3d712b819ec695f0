// The rule under test: which object holds a value, and when it is shared.

#include "support/allocation.h"

#include "vxattribute/samples.h"

#include <gtest/gtest.h>

namespace {

using namespace vxattribute;
using impl::ValueHolder;

/// Returns the object that holds a value.
impl::ValueBase const * object_of(AttributeValue & value) {
    ValueHolder holder;
    value.swap_impl(holder);
    impl::ValueBase const * const object = holder.get();
    value.swap_impl(holder);
    return object;
}

template <typename T>
bool share(T const & a, T const & b) {
    AttributeValue x(a), y(b);
    return object_of(x) == object_of(y);
}

TEST(Representation, CommonNumbersAreStatics) {
    EXPECT_TRUE(share(7, 7));
    EXPECT_FALSE(share(8, 8));
    EXPECT_TRUE(share(-1, -1));
    EXPECT_FALSE(share(-2, -2));
    EXPECT_TRUE(share(true, true));
    EXPECT_TRUE(share("", ""));
    AttributeValue const list = make_list<long long>({5, 900});
    EXPECT_TRUE(share(list.subrange(0, 2), list));
    EXPECT_TRUE(share(list.subrange(0), list));
    EXPECT_TRUE(share(list.subrange(0, 1), AttributeValue(5))) << "a class chosen anew";
    EXPECT_TRUE(share(make_list<long long>({5}), AttributeValue(5)));
}

TEST(Representation, OpenedStaticsBecomePrivateAndCopiesGoBack) {
    AttributeValue five(5), opened(5);
    opened.multivalue_writer<long long>();
    EXPECT_NE(object_of(opened), object_of(five));
    EXPECT_TRUE(share(opened, five)) << "its copy";
    EXPECT_EQ(opened, five);
    opened.clear();
    EXPECT_TRUE(share(opened, AttributeValue(ValueTypeId::typeInteger)));
}

TEST(Representation, ClearingASharedStringGivesTheSharedEmptyValue) {
    AttributeValue a("text that is shared");
    AttributeValue const b = a;
    a.clear();
    EXPECT_TRUE(share(a, AttributeValue(ValueTypeId::typeString)));
    EXPECT_EQ(b.get<std::string>(), "text that is shared");
}

// The block cache may keep some blocks, but no more on a second round.
TEST(Representation, NothingLeaks) {
    auto const use_samples = [] {
        for (vxtest::Sample const & sample : vxtest::samples()) {
            AttributeValue value = sample.value;
            sample.change(value);
            value.clear();
        }
        return vxtest::live_blocks();
    };
    long const once = use_samples();
    EXPECT_EQ(use_samples(), once);
}

} // namespace
