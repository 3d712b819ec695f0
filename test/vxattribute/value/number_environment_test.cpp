// The rule under test: texts of numbers do not depend on the rounding mode of the thread, nor on
// whether it keeps subnormal numbers.

#include "vxattribute/trace_formatter.h"
#include "vxattribute/vxattribute.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cmath>
#include <random>
#include <sstream>
#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace {

using namespace vxattribute;

/// Returns all texts of a number, and what is read from them.
std::string texts_of(double number) {
    std::string json;
    vxjson::TextWriter writer(json);
    writer.begin_array();
    writer.write_double(number);
    writer.end_array();
    writer.finish();
    std::string const lossless = value_to_json(number);
    std::ostringstream precise;
    precise.precision(15);
    AttributeValue(number).write_trace(precise, defaultTraceFormatter, 0);
    auto const bits = [](AttributeValue const & value) {
        return std::to_string(value.type() == ValueTypeId::typeInteger
                                  ? value.get<long long>()
                                  : std::bit_cast<long long>(value.get<double>()));
    };
    return json + lossless + to_text(number) + precise.str() + bits(value_from_json(json)) + " " +
           bits(value_from_json(lossless));
}

/// Returns any bits, a subnormal number, a number of few digits, or an integer that needs rounding.
double random_number(std::mt19937_64 & random) {
    std::uint64_t const bits = random();
    switch (bits % 4) {
    case 0:
        return std::bit_cast<double>(bits & 0x800FFFFFFFFFFFFF);
    case 1:
        return static_cast<double>(random() % 100'000) / 1000;
    case 2:
        return static_cast<double>(random());
    default:
        return std::bit_cast<double>(bits);
    }
}

TEST(NumberTexts, DoNotDependOnTheFloatingPointEnvironment) {
    void (*const environments[])() = {
        [] { std::fesetround(FE_UPWARD); }, [] { std::fesetround(FE_DOWNWARD); },
        [] { std::fesetround(FE_TOWARDZERO); },
#ifdef __SSE2__
        [] { _mm_setcsr(_mm_getcsr() | 0x8040); }, // subnormal numbers are zeros
#endif
    };
    std::mt19937_64 random(20261125);
    for (int i = 0; i < 2000; ++i) {
        double const number = random_number(random);
        if (!std::isfinite(number)) {
            continue;
        }
        std::string const expected = texts_of(number);
        std::fenv_t before;
        std::fegetenv(&before);
        for (auto const & enter : environments) {
            enter();
            std::string const texts = texts_of(number);
            std::fesetenv(&before);
            ASSERT_EQ(texts, expected);
        }
    }
}

} // namespace
