// The rule under test: what callers see of a value, namely states, types, typed reads, order and
// errors.

#include "support/expect_error.h"

#include "vxattribute/samples.h"

#include <limits>
#include <stdexcept>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

TEST(AttributeValue, NullIsAStateOfItsOwn) {
    AttributeValue const null;
    EXPECT_EQ(null, AttributeValue::null);
    EXPECT_EQ(null, AttributeValue(ValueTypeId::typeNull));
    EXPECT_TRUE(null.is_null());
    EXPECT_TRUE(null.empty());
    EXPECT_EQ(null.hash(), 0u);
    EXPECT_EQ(null.subrange(0, 0), null);
    EXPECT_THROW(null.subrange(1), std::out_of_range);
    EXPECT_THROW(null.subrange(0, 1), std::out_of_range);
    expect_error([&] { null.get<std::string>(); }, error::vxattribute_value_type_mismatch,
                 "Attribute value type mismatch.  Expected=String, ActualType=Null",
                 "vxattribute::raise_type_error()");
}

TEST(AttributeValue, TypedEmptyIsNeitherNullNorADefaultElement) {
    AttributeValue const empty(ValueTypeId::typeString);
    AttributeValue const blank("");
    EXPECT_FALSE(empty.is_null());
    EXPECT_EQ(empty.size(), 0u);
    EXPECT_EQ(empty.get<std::string>(), "");
    EXPECT_NE(empty, blank);
    EXPECT_EQ(blank.size(), 1u);
    EXPECT_EQ(empty.compare(blank), -1);
    EXPECT_EQ(empty.hash(), blank.hash());
    EXPECT_EQ(AttributeValue().compare(empty), -3);
    EXPECT_EQ(AttributeValue(true).compare(AttributeValue(0)), -1);
}

TEST(AttributeValue, ArgumentsBecomeTheTypeThatOneExpects) {
    EXPECT_EQ(AttributeValue(-3L).get<long long>(), -3);
    EXPECT_EQ(AttributeValue(4'000'000'000u).get<long long>(), 4'000'000'000);
    EXPECT_EQ(AttributeValue(short{-2}).get<long long>(), -2);
    EXPECT_EQ(AttributeValue(1.5f).get<double>(), 1.5);
    EXPECT_EQ(AttributeValue(std::string_view("view")).get<std::string>(), "view");
    EXPECT_EQ(AttributeValue("a\0b", 3).get<std::string>().size(), 3u);
    AttributeValue value = 5;
    value = 0;
    EXPECT_EQ(value.get<long long>(), 0) << "0 is no text";
    value = {};
    EXPECT_TRUE(value.is_null());
}

TEST(AttributeValue, TypedReadsCheckTypeAndCardinality) {
    AttributeValue const one(7);
    AttributeValue const three = make_list<long long>({1, 2, 3});
    expect_error([&] { one.get<double>(); }, error::vxattribute_value_type_mismatch,
                 "Attribute value type mismatch.  Expected=Double, ActualType=Integer");
    expect_error([&] { three.get<long long>(); }, error::vxattribute_value_cardinality_expectSingle,
                 "Attribute value 'get' invoked on multi-value attribute",
                 "vxattribute::impl::throw_get_on_multi_value_attribute()");
    impl::SingleValueImpl<double> const empty;
    expect_error([&] { empty.front(); }, error::vxattribute_value_cardinality_expectNonzero,
                 "Expecting non-empty attribute value",
                 "vxattribute::impl::throw_array_empty_error()");
    EXPECT_EQ(three.at<long long>(2), 3);
    EXPECT_EQ(three.end<long long>() - three.begin<long long>(), 3);
    EXPECT_THROW(three.at<long long>(3), std::out_of_range);
    EXPECT_THROW(three.begin<bool>(), vxcore::ErrorException);
}

TEST(AttributeValue, SetReplacesTypeAndElements) {
    AttributeValue value = make_list<long long>({1, 2, 3});
    AttributeValue const copy = value;
    value.set(5);
    EXPECT_EQ(value.size(), 1u);
    EXPECT_FALSE(value.is_multivalue());
    EXPECT_EQ(copy, make_list<long long>({1, 2, 3}));
    value.set("x");
    EXPECT_EQ(value, AttributeValue("x"));
    value.clear();
    EXPECT_EQ(value, AttributeValue(ValueTypeId::typeString));
    value.set_null();
    EXPECT_TRUE(value.is_null());
    AttributeValue source("moved");
    EXPECT_EQ(AttributeValue(source.transfer()), AttributeValue("moved"));
    EXPECT_TRUE(source.is_null());
}

TEST(AttributeValue, SubrangesNeverWrap) {
    for (vxtest::Sample const & sample : vxtest::samples()) {
        AttributeValue const & value = sample.value;
        unsigned int const n = value.size();
        EXPECT_EQ(value.subrange(n).size(), 0u) << sample.name;
        EXPECT_EQ(value.subrange(n).type(), value.type());
        EXPECT_EQ(value.subrange(0, n), value);
        EXPECT_THROW(value.subrange(n + 1), std::out_of_range);
        EXPECT_THROW(value.subrange(1, 0xffffffffu), std::out_of_range);
        EXPECT_THROW(value.subrange(0, n + 1), std::out_of_range);
        if (n == 3) {
            EXPECT_EQ(value.subrange(1).size(), 2u);
            EXPECT_EQ(value.subrange(2, 1), value.subrange(0, 1)) << "elements 0 and 2 are alike";
            EXPECT_THROW(value.subrange(1, 3), std::out_of_range);
        }
    }
}

TEST(AttributeValue, OrderIsByTypeNumberThenByElements) {
    AttributeValue const empty(ValueTypeId::typeBoolean), list = make_list<long long>({-1, 5});
    AttributeValue const ordered[] = {{}, empty, false, true,   -1,      list,
                                      0,  "a",   "ab",  "\x80", -1000.0, AttributeMap()};
    for (std::size_t i = 0; i < std::size(ordered); ++i) {
        for (std::size_t j = 0; j < std::size(ordered); ++j) {
            int const order = ordered[i].compare(ordered[j]);
            EXPECT_TRUE(i < j ? order < 0 : i == j ? order == 0 : order > 0) << i << ' ' << j;
        }
    }
    EXPECT_EQ(AttributeValue().compare(AttributeValue(make_map({}))), -12);
    double const nan = std::numeric_limits<double>::quiet_NaN();
    AttributeValue const value(nan), copy = value;
    EXPECT_EQ(value.compare(copy), 0);
    EXPECT_NE(value, copy);
}

TEST(AttributeValue, NocaseComparisonIsForTextsOnly) {
    AttributeValue const lower = make_list<std::string>({"ab", "cd"});
    EXPECT_EQ(lower.compare_nocase_ascii(make_list<std::string>({"AB", "CD"})), 0);
    EXPECT_NE(lower.compare(make_list<std::string>({"AB", "CD"})), 0);
    EXPECT_EQ(lower.compare_nocase_ascii(AttributeValue("AB")), 1);
    EXPECT_EQ(AttributeValue("x").compare_nocase_ascii(AttributeValue(1)), 1);
}

TEST(AttributeValue, WritersBuildListsFromNullAndFromEmpty) {
    AttributeValue value;
    {
        auto writer = value.multivalue_writer<double>();
        EXPECT_EQ(value, AttributeValue(ValueTypeId::typeDouble));
        writer.push_back(1.5);
        EXPECT_FALSE(value.is_multivalue());
        writer.push_back(2.5);
    }
    EXPECT_EQ(value, make_list<double>({1.5, 2.5}));
    AttributeValue integer(1);
    EXPECT_THROW(integer.multivalue_writer<double>(), vxcore::ErrorException);
    double const number = 3;
    value.multivalue_writer<double>().assign(&number, &number + 1);
    EXPECT_EQ(value, AttributeValue(3.0));
    EXPECT_FALSE(value.is_multivalue());
}

} // namespace
