// The rule under test: a new element type needs only a row of the table and a pair of files.

#include "vxattribute/value_forms.h"

namespace {

using namespace vxattribute;
using vxtest::Version;

TEST(ExtraType, IsStoredReadWrittenComparedAndRendered) {
    AttributeValue const lone = Version{1, 2};
    AttributeValue const list = make_list<Version>({{1, 2}, {1, 10}});
    for (AttributeValue const & value : {AttributeValue(ValueTypeId::typeVersion), lone, list}) {
        AttributeValue copy;
        vxtest::read_binary(vxtest::write_binary(value), copy);
        EXPECT_EQ(copy, value);
        EXPECT_EQ(&copy.type(), &ValueTypeId::from_id(ValueTypeId::eId_Version));
    }
    EXPECT_EQ(vxtest::write_text(lone), "15u 258u");
    EXPECT_LT(lone, AttributeValue(Version{1, 3}));
    EXPECT_LT(AttributeValue(impl::ErrorInfoPtr()), lone);
    EXPECT_EQ(lone.hash(), 258u);
    EXPECT_EQ(to_text(list), "[Version: {1.2, 1.10}]");
}

} // namespace
