// The rule under test: names compare by token, attributes by name and then by value.

#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"
#include "vxcore/error_codes.h"

#include <sstream>

namespace {

using namespace vxattribute;

TEST(AttributeName, StaticInstancesCompareAndRaiseAfterTheirEnd) {
    vxcore::StaticInstance<AttributeName> instance("port");
    vxcore::StaticInstance<AttributeName const> const constant("port");
    AttributeName const name("port");
    EXPECT_TRUE(name == instance);
    EXPECT_TRUE(name == constant);
    EXPECT_TRUE(instance == name);
    EXPECT_FALSE(name != instance);
    EXPECT_FALSE(name < constant);
    EXPECT_FALSE(name > instance);
    EXPECT_TRUE(name <= instance);
    EXPECT_TRUE(name >= constant);
    AttributeName copy(instance);
    copy = constant;
    EXPECT_EQ(copy, name);
    instance.destroy();
    EXPECT_THROW((void)(name == instance), vxcore::ErrorException);
    EXPECT_THROW((void)(name >= instance), vxcore::ErrorException);
    vxtest::expect_error([&] { copy = instance; }, vxcore::error::vxcore_destroyed,
                         "A static object was used after its end");
    EXPECT_THROW(AttributeName{instance}, vxcore::ErrorException);
    EXPECT_EQ(copy, name);
}

TEST(Attribute, OrdersByNameThenByValue) {
    AttributeName const name("n");
    Attribute const number(name, 5), text(name, "x"), other(AttributeName("m"), "x");
    EXPECT_LT(number, text);
    EXPECT_LE(number, text);
    EXPECT_GT(text, number);
    EXPECT_GE(text, number);
    EXPECT_NE(number, text);
    EXPECT_EQ(other < number, other.name() < name);
    EXPECT_EQ(number, Attribute("n", 5));
    EXPECT_EQ(number.hash(), name.hash() ^ 5u);
}

TEST(Attribute, MovesLeaveNullAndAssignmentsCopy) {
    Attribute source("n", "text");
    Attribute const taken(std::move(source));
    EXPECT_TRUE(source.value().is_null());
    EXPECT_EQ(taken, Attribute("n", "text"));
    Attribute kept("k", 1), target;
    target = std::move(kept);
    EXPECT_EQ(kept, Attribute("k", 1));
    EXPECT_EQ(target, kept);
}

TEST(Attribute, InsertionShowsNameAndValue) {
    EXPECT_EQ((std::ostringstream() << Attribute("count", 5)).str(), "'count' => [Integer: {5}]");
}

} // namespace
