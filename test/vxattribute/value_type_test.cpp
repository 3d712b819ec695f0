// The rule under test: the closed set of types and, per element type, order, equality and hash.

#include "support/expect_error.h"

#include "vxattribute/samples.h"
#include "vxcore/error_composer.h"

#include <cmath>
#include <limits>
#include <sstream>

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

/// Uses each rule of a type on two elements that differ.
template <typename T>
void use_rules(T const & a, T const & b) {
    using Base = ValueTypeTraitsBase<T>;
    using Traits = ValueTypeTraits<T>;
    bool const byAddress = std::is_same_v<T, impl::ErrorInfoPtr>; // the generic forms
    EXPECT_TRUE(byAddress || Base::compare(a, b) == (Traits::compare(a, b) < 0 ? -1 : 1));
    EXPECT_TRUE(Base::compare(a, b) == -Base::compare(b, a) && Base::compare(a, a) == 0);
    EXPECT_TRUE(Base::equal(a, a) && Traits::equal(a, a));
    EXPECT_FALSE(Base::equal(a, b) || Traits::equal(a, b) || Base::compare(a, b) == 0);
    EXPECT_EQ(Traits::hash(a), AttributeValue(a).hash());
    alignas(T) std::byte storage[2 * sizeof(T)];
    T * const p = reinterpret_cast<T *>(storage);
    Traits::construct_value(p, a);
    Traits::assign_value(p, b);
    EXPECT_TRUE(Traits::move_construct_range(p, p + 1, p + 1) == p + 2 && Traits::equal(p[1], b));
    EXPECT_EQ(Traits::erase_range(p + 1, p + 2, p + 2), p + 1);
    std::ostringstream stream;
    Traits::write_trace(stream, defaultTraceFormatter, 0, &a, &a + 1);
    EXPECT_EQ(stream.str(), to_text(AttributeValue(a)));
}

TEST(ElementRules, AreThereForEveryType) {
    for (vxtest::Sample const & sample : vxtest::samples()) {
        if (sample.value.is_multivalue()) {
            visit_elements(sample.value, []<typename T>(std::span<T const> elements) {
                use_rules(elements[0], elements[1]);
            });
        }
    }
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
