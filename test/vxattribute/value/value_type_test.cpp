// The rule under test: the closed set of types and, per element type, order, equality and hash.

#include "support/cases.h"
#include "support/expect_error.h"

#include "vxattribute/samples.h"
#include "vxattribute/value_forms.h"
#include "vxcore/error_composer.h"

#include <algorithm>
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
                     "Unknown attribute type id.  Value=" + std::to_string(id),
                     "vxattribute::ValueTypeId::from_id()");
    }
}

TEST(ElementRules, DoublesFollowIeee) {
    using Traits = ValueTypeTraits<double>;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Traits::compare(nan, 1.0), 0);
    EXPECT_FALSE(Traits::equal(nan, 1.0));
    EXPECT_FALSE(Traits::equal(nan, nan));
    EXPECT_TRUE(Traits::equal(0.0, -0.0));
    EXPECT_LT(ValueTypeTraits<long long>::compare(std::numeric_limits<long long>::min(), 1), 0);
}

/// Applies each rule of a type to two different elements.
template <typename T>
void use_rules(T const & a, T const & b) {
    using Base = ValueTypeTraitsBase<T>;
    using Traits = ValueTypeTraits<T>;
    bool const byAddress = std::is_same_v<T, impl::ErrorInfoPtr>; // the generic forms
    EXPECT_TRUE(byAddress || Base::compare(a, b) == (Traits::compare(a, b) < 0 ? -1 : 1));
    EXPECT_EQ(Base::compare(a, b), -Base::compare(b, a));
    EXPECT_EQ(Base::compare(a, a), 0);
    EXPECT_TRUE(Base::equal(a, a));
    EXPECT_TRUE(Traits::equal(a, a));
    EXPECT_FALSE(Base::equal(a, b));
    EXPECT_FALSE(Traits::equal(a, b));
    EXPECT_NE(Base::compare(a, b), 0);
    EXPECT_EQ(Traits::hash(a), AttributeValue(a).hash());
    alignas(T) std::byte storage[2 * sizeof(T)];
    T * const p = reinterpret_cast<T *>(storage);
    Traits::construct_value(p, a);
    Traits::assign_value(p, b);
    EXPECT_EQ(Traits::move_construct_range(p, p + 1, p + 1), p + 2);
    EXPECT_TRUE(Traits::equal(p[1], b));
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

TEST(ElementRules, HashesOfValuesAreTheSameInEveryProcess) {
    auto const check = [](std::string const & text, std::string const & hash, auto const &) {
        AttributeValue value;
        vxtest::read_text(text, value);
        EXPECT_EQ(value.hash(), std::stoul(hash, nullptr, 16)) << text;
    };
    EXPECT_EQ(vxtest::for_each_case("vxattribute/value/hashes.txt", check), 12);
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

// The constant of a code has its name, with "_" for ".".
TEST(ErrorCodes, HaveTheNamesOfTheirConstants) {
// clang-format off
#define E(name) {&error::vxattribute##name, "error.vxattribute" #name}
    std::pair<vxcore::ErrorCode const *, std::string> rows[] = {
        E(), E(_invalidParameter), E(_map), E(_map_attributeNotFound), E(_name), E(_name_decoder),
        E(_name_decoder_packageRef), E(_name_decoder_packageRef_invalid),
        E(_name_decoder_packageRef_unknown), E(_name_decoder_unknownIndex), E(_name_package),
        E(_name_package_duplicateName), E(_name_package_serialization), E(_query),
        E(_query_badValue), E(_query_notFound), E(_query_settings), E(_query_tooFew), E(_query_tooMany),
        E(_query_typeConversion), E(_query_unknownName), E(_value), E(_value_binary), E(_value_binary_size),
        E(_value_cardinality), E(_value_cardinality_expectNonzero),
        E(_value_cardinality_expectSingle), E(_value_conversion), E(_value_conversion_data),
        E(_value_conversion_data_size), E(_value_secured), E(_value_secured_authentication),
        E(_value_secured_cipher), E(_value_secured_cipher_unknown), E(_value_secured_ciphertext),
        E(_value_secured_key), E(_value_secured_key_duplicate), E(_value_secured_key_unknown),
        E(_value_secured_keysize), E(_value_type), E(_value_type_mismatch), E(_value_type_unknown),
    };
#undef E
    // clang-format on
    for (auto & [code, name] : rows) {
        std::replace(name.begin(), name.end(), '_', '.');
        EXPECT_EQ(code->name(), name);
    }
}

} // namespace
