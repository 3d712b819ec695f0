// The rule under test: the closed set of types and, per element type, order, equality and hash.

#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"
#include "vxcore/error_composer.h"

#include <cmath>
#include <limits>

namespace {

using namespace vxattribute;
using impl::ValueTypeTraits;
using impl::ValueTypeTraitsBase;
using vxtest::expect_error;

TEST(ValueTypeId, NumbersNamesAndConstantsAgree) {
    char const * const names[] = {"Null",         "Boolean",        "Integer",  "String",
                                  "Double",       "UUID",           "URI",      "AbsoluteTime",
                                  "RelativeTime", "SimpleDateTime", "Binary",   "Serialized",
                                  "AttributeMap", "Secured",        "ErrorInfo"};
    for (int i = 0; i < 15; ++i) {
        ValueTypeId const & type = ValueTypeId::from_id(static_cast<ValueTypeId::EId>(i));
        EXPECT_EQ(type.id(), i);
        EXPECT_EQ(type.name(), names[i]);
    }
    EXPECT_EQ(&ValueTypeId::from_id(ValueTypeId::eId_Uri), &ValueTypeId::typeUri);
    EXPECT_EQ(ValueTypeId::typeString.compare(ValueTypeId::typeDouble), -1);
    EXPECT_EQ(ValueTypeId::typeErrorInfo.compare(ValueTypeId::typeNull), 14);
}

TEST(ValueTypeId, UnknownNumbersAreRefused) {
    for (int const id : {15, -1}) {
        expect_error([&] { ValueTypeId::from_id(static_cast<ValueTypeId::EId>(id)); },
                     error::vxattribute_value_type_unknown,
                     "Unknown attribute type id.  Value=" + std::to_string(id));
    }
}

TEST(ElementRules, DoublesFollowIeee) {
    using Traits = ValueTypeTraits<double>;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Traits::compare(nan, 1.0), 0);
    EXPECT_FALSE(Traits::equal(nan, 1.0));
    EXPECT_FALSE(Traits::equal(nan, nan));
    EXPECT_TRUE(Traits::equal(0.0, -0.0));
    EXPECT_EQ(Traits::hash(0.0), 0u);
    EXPECT_EQ(Traits::hash(-0.0), 0x80000000u);
    EXPECT_EQ(ValueTypeTraits<long long>::hash(-1), 0u);
    EXPECT_EQ(ValueTypeTraits<long long>::hash(0x100000002), 3u);
    EXPECT_LT(ValueTypeTraits<long long>::compare(std::numeric_limits<long long>::min(), 1), 0);
}

TEST(ElementRules, BytesOfTextsAreSignedInHashesOnly) {
    EXPECT_EQ(ValueTypeTraits<std::string>::hash("\xff"), 0xffffffffu);
    EXPECT_EQ(ValueTypeTraits<std::string>::hash("ab"), 97u * 5 + 98);
    EXPECT_GT(ValueTypeTraits<std::string>::compare("\x80", "\x7f"), 0);
}

TEST(ElementRules, ErrorInfosCompareByContentWithNullFirst) {
    using Traits = ValueTypeTraits<impl::ErrorInfoPtr>;
    auto const make = [] {
        return vxcore::ErrorComposer("m").create(error::vxattribute_query, {});
    };
    impl::ErrorInfoPtr const a = make(), b = make();
    EXPECT_EQ(Traits::compare(nullptr, a), -1);
    EXPECT_EQ(Traits::compare(a, nullptr), 1);
    EXPECT_EQ(Traits::compare(a, b), 0);
    EXPECT_TRUE(Traits::equal(nullptr, nullptr));
    EXPECT_EQ(Traits::hash(nullptr), 0u);
    EXPECT_EQ(Traits::hash(a), Traits::hash(b));
    EXPECT_FALSE(ValueTypeTraitsBase<impl::ErrorInfoPtr>::equal(a, b)) << "by address";
}

} // namespace
