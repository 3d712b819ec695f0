// The rule under test: a configured value is assigned to a variable from its own type or from a
// text, completely or not at all.

#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"
#include "vxcore/error_codes.h"

#include <limits>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

/// Expects every value of the list to convert to `expected`.
template <typename T>
void expect_all(std::initializer_list<AttributeValue> values, T const & expected) {
    for (AttributeValue const & value : values) {
        T target{};
        EXPECT_EQ(&ConvertableValue(value).assign_to(target), &target);
        EXPECT_EQ(target, expected) << to_text(value);
    }
}

TEST(ConvertableValue, TakesTheProperTypeOrAText) {
    expect_all<bool>({true, "yes", "On"}, true);
    expect_all<double>({0.5, "+0.5", "5e-1"}, 0.5);
    expect_all<std::string>({"text"}, "text");
    expect_all<std::string>({AttributeValue(ValueTypeId::typeString)}, "");
    expect_all<int>({-70000, "-70000"}, -70000);
    expect_all<char>({-128, "-128"}, static_cast<char>(-128));
    expect_all<unsigned short>({65535, "65535", "+65535"}, 65535);
    expect_all<long long>({std::numeric_limits<long long>::min(), "-9223372036854775808"},
                          std::numeric_limits<long long>::min());
    expect_all<unsigned long long>({"18446744073709551615"},
                                   std::numeric_limits<unsigned long long>::max());
    expect_all<int>({AttributeValue(ValueTypeId::typeInteger)}, 0);
    vxcore::Uuid const uuid({0x6b, 0xa7});
    expect_all<vxcore::Uuid>({uuid, "6ba70000000000000000000000000000"}, uuid);
    expect_all<vxcore::AbsoluteTime>({vxcore::AbsoluteTime(10'000'000), "1970-01-01T00:00:01Z"},
                                     vxcore::AbsoluteTime(10'000'000));
    expect_all<vxcore::SimpleDateTime>({vxcore::SimpleDateTime(-1), "1969-12-31T23:59:59.9999999"},
                                       vxcore::SimpleDateTime(-1));
    expect_all<vxcore::RelativeTime>({vxcore::RelativeTime(-864'000'000'000), "-P1D"},
                                     vxcore::RelativeTime(-864'000'000'000));
    expect_all<vxuri::UriReference>({vxuri::UriReference::parse("a?b"), "a?b"},
                                    vxuri::UriReference::parse("a?b"));
}

template <typename T>
void expect_failure(AttributeValue const & value, vxcore::ErrorCode const & code,
                    std::string const & text) {
    T target{};
    expect_error([&] { ConvertableValue(value).assign_to(target); }, code, text);
    EXPECT_EQ(target, T());
}

TEST(ConvertableValue, SaysWhyItCannot) {
    expect_failure<unsigned long long>(-1, vxcore::error::vxcore_conversion_truncated,
                                       "Value -1 does not fit into unsigned long long");
    expect_failure<int>(2147483648, vxcore::error::vxcore_conversion_truncated,
                        "Value 2147483648 does not fit into int");
    expect_failure<unsigned char>("256", vxcore::error::vxcore_conversion,
                                  "Cannot convert '256' to unsigned char");
    for (std::string const text : {"", " 1", "1 ", "0x1", "+-1", "1.0"}) {
        expect_failure<int>(text, vxcore::error::vxcore_conversion,
                            "Cannot convert '" + text + "' to int");
    }
    expect_failure<vxcore::Uuid>("6ba7", vxcore::error::vxcore_conversion,
                                 "Cannot convert '6ba7' to vxcore::Uuid");
    expect_failure<double>(1, error::vxattribute_query_typeConversion,
                           "Cannot convert value [Integer: {1}] to type double");
    expect_failure<int>(make_list<long long>({1, 2}),
                        error::vxattribute_value_cardinality_expectSingle,
                        "Attribute value 'get' invoked on multi-value attribute");
}

} // namespace
