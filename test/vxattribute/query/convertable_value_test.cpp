// The rule under test: a configured value is assigned to a variable from its own type or from a
// text, completely or not at all. Numbers are exact or refused.

#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"
#include "vxcore/error_codes.h"

#include <cmath>
#include <limits>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

/// Reads the value into a variable, and returns the failure of the conversion.
template <typename T>
vxcore::ErrorInfo::Ptr read_into(T & target, AttributeValue const & value) {
    vxcore::ErrorInfo::Ptr error;
    Query("n").execute(make_map({{"n", value}}), into(target), &error);
    return error ? error->nested() : nullptr;
}

/// Expects every value of the list to be read as `expected`.
template <typename T>
void expect_into(std::initializer_list<AttributeValue> values, T const & expected) {
    for (AttributeValue const & value : values) {
        T target{};
        EXPECT_FALSE(read_into(target, value));
        EXPECT_EQ(target, expected) << to_text(value);
    }
}

/// The same for both ways of reading.
template <typename T>
void expect_all(std::initializer_list<AttributeValue> values, T const & expected) {
    expect_into(values, expected);
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

TEST(Into, ReadsAlsoMapsListsAndNumbersOfTheOtherType) {
    expect_into<unsigned short>({8080, 8080.0, "8080"}, 8080);
    expect_into<double>({2, 2.0, "2"}, 2.0);
    expect_into<float>({0.1, "0.1"}, 0.1f);
    AttributeMap const map = make_map({{"a", 1}});
    expect_into<AttributeMap>({map}, map);
    expect_into<MutableAttributeMap>({map}, map);
    expect_into<AttributeValue>({AttributeValue()}, AttributeValue());
    expect_into<std::vector<float>>({make_list<long long>({1, 2})}, {1, 2});
    expect_into<std::vector<int>>({AttributeValue(), value_from_json("[]")}, {});
    expect_into<std::optional<int>>({5}, 5);
    expect_into<std::optional<int>>({AttributeValue()}, std::nullopt);
}

template <typename T>
void expect_kept(T target, AttributeValue const & value, std::string const & text) {
    T const before = target;
    EXPECT_EQ(read_into(target, value)->text(), text);
    EXPECT_EQ(target, before);
}

TEST(Into, NamesTheWantedTypeAndLeavesTheVariable) {
    std::string const cannot = "Cannot convert value ";
    expect_kept<unsigned short>(7, true, cannot + "[Boolean: {true}] to type unsigned short");
    expect_kept<unsigned short>(7, 0.5, "0.5 is not a whole number, as unsigned short requires");
    expect_kept<char>('a', 0.5, cannot + "[Double: {0.5}] to type char");
    expect_kept<std::string>("a", 1, cannot + "[Integer: {1}] to type std::string");
    expect_kept<std::vector<int>>({7}, make_list<std::string>({"1", "x"}),
                                  "Cannot convert 'x' to int");
    expect_kept(BinaryValue(), true, cannot + "[Boolean: {true}] to type vxattribute::BinaryValue");
}

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(NumberAccess, TakesBothTypesUpToTheLimits) {
    EXPECT_EQ(get_number<unsigned char>(255.0), 255);
    EXPECT_EQ(get_number<double>(std::numeric_limits<long long>::min()), -0x1p63);
    EXPECT_EQ(get_number<long long>(-0x1p63), std::numeric_limits<long long>::min());
    EXPECT_EQ(get_number<unsigned long long>(0x1.fffffffffffffp63), 0xFFFFFFFFFFFFF800u);
    EXPECT_EQ(get_number<float>(-infinity), -std::numeric_limits<float>::infinity());
    AttributeMap const map = make_map({{"n", 2.0}});
    EXPECT_EQ(get_number<short>(map, "n"), 2);
    EXPECT_EQ(get_number_or<short>(map, "n", 3), 2);
    EXPECT_EQ(get_number_or<short>(map, "x", 3), 3);
    EXPECT_THROW(get_number<short>(map, "x"), vxcore::ErrorException);
}

template <typename T>
void expect_refusal(AttributeValue const & value, std::string const & text,
                    vxcore::ErrorCode const & code = vxcore::error::vxcore_conversion_truncated) {
    expect_error([&] { get_number<T>(value); }, code, text);
    expect_error(
        [&] {
            get_number_or<T>(make_map({{"n", value}}), "n", T());
        },
        code, "Attribute 'n': " + text);
}

TEST(NumberAccess, SaysWhyItCannot) {
    for (AttributeValue const & number : {AttributeValue(256), AttributeValue(256.0)}) {
        expect_refusal<unsigned char>(
            number, "256 does not fit into unsigned char, which is from 0 to 255");
    }
    expect_refusal<unsigned int>(
        -1.0, "-1 does not fit into unsigned int, which is from 0 to 4294967295");
    expect_refusal<long long>(0x1p63, "9223372036854775808 does not fit into long long, which is "
                                      "from -9223372036854775808 to 9223372036854775807");
    expect_refusal<float>(-1e300, "-1e+300 does not fit into float, which is from -3.4028235e+38 "
                                  "to 3.4028235e+38");
    expect_refusal<int>(std::nan(""), "nan is not a whole number, as int requires");
    for (long long const number : {9007199254740993ll, std::numeric_limits<long long>::max()}) {
        expect_refusal<double>(number, "double has no number equal to " + std::to_string(number));
    }
    expect_refusal<short>(AttributeValue(), "Expecting a number for short; actual type 'Null'",
                          error::vxattribute_value_type_mismatch);
    expect_refusal<short>(make_list<double>({1, 2}), "Expecting one number for short, found 2",
                          error::vxattribute_value_cardinality_expectSingle);
}

} // namespace
