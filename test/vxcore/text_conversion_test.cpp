#include "support/expect_error.h"
#include "support/grouping_locale.h"

#include "vxcore/error_codes.h"
#include "vxcore/streamers.h"
#include "vxcore/text_conversion.h"
#include "vxcore/text_size.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace {

using vxcore::ErrorInfo;

unsigned int size_of(std::string_view text) {
    return static_cast<unsigned int>(text.size());
}

int compare(std::string_view a, std::string_view b) {
    return vxcore::compare_nocase_ascii(a.data(), size_of(a), b.data(), size_of(b));
}

double to_double(std::string_view text, ErrorInfo::Ptr * error) {
    return vxcore::impl::string_to_double(text.data(), size_of(text), error);
}

/// Read while the program loads: the string must exist by then.
std::size_t const emptySizeAtLoad = vxcore::g_emptyString.size();

TEST(TextConversion, CaseOfAsciiLettersAloneIsIgnored) {
    EXPECT_EQ(compare("abZ", "ABz"), 0);
    EXPECT_EQ(compare("ab", "ABC"), -1);
    EXPECT_EQ(compare("_", "a"), -1); // between the cases: letters count as lower case
    EXPECT_EQ(compare("\xC4", "\xE4"), -1);
    EXPECT_FALSE(vxcore::string_equal_nocase_ascii("@", 1, "`", 1));
}

TEST(TextConversion, BooleansHaveFourPairsOfNames) {
    std::string_view const names[] = {"true", "YES", "On", "1", "false", "No", "OFF", "0"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        EXPECT_EQ(vxcore::impl::string_to_bool(names[i].data(), size_of(names[i]), nullptr), i < 4);
    }
    for (std::string_view const text : {"", "t", "truer", " true", "2", "01"}) {
        ErrorInfo::Ptr error;
        EXPECT_FALSE(vxcore::impl::string_to_bool(text.data(), size_of(text), &error));
        ASSERT_NE(error, nullptr) << text;
        EXPECT_EQ(error->text(), "Cannot convert '" + std::string(text) + "' to bool");
    }
}

std::string const zeros(400, '0');

TEST(TextConversion, DoublesAreReadWholeAndToTheLimits) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (auto const & [text, value] : std::initializer_list<std::pair<std::string, double>>{
             {"+1.5", 1.5},
             {"-.5e3", -500.0},
             {"5.", 5.0},
             {"4.9e-324", 0x1p-1074},
             {"1.7976931348623157e308", 0x1.fffffffffffffp1023},
             {"0." + zeros + "1", 0.0},
             {"1e-99999999999999999999", 0.0},
             {"0e99999999999999999999", 0.0},
             {"1" + zeros + "e-400", 1.0},
             {"0." + zeros + "1e401", 1.0},
             {"-Infinity", -infinity}}) {
        EXPECT_EQ(to_double(text, nullptr), value) << text;
    }
    EXPECT_TRUE(std::signbit(to_double("-1e-400", nullptr)));
    EXPECT_TRUE(std::isnan(to_double("NaN", nullptr)));
}

TEST(TextConversion, OtherTextsAreNoDoubles) {
    std::string const tooLong = "1" + zeros;
    std::string const tooLarge = "0." + zeros + "1e800";
    for (std::string_view const text :
         {"", "+", "+-1", "--1", " 1", "1 ", "1,5", "0x10", "1e", ".", "nan(1)", "infinit", "1e400",
          "-1e400", "1e99999999999999999999", tooLong.c_str(), tooLarge.c_str()}) {
        ErrorInfo::Ptr error;
        EXPECT_EQ(to_double(text, &error), 0.0);
        ASSERT_NE(error, nullptr) << text;
        EXPECT_EQ(error->code(), vxcore::error::vxcore_conversion);
    }
}

TEST(TextConversion, FailuresWithoutASlotAreRaised) {
    for (std::size_t const shown : {255u, 256u}) { // at most, and no half character
        std::string const text(shown, 'x');
        vxtest::expect_error([&] { to_double(text + "\xC3\xA9", nullptr); },
                             vxcore::error::vxcore_conversion,
                             "Cannot convert '" + text + "' to double");
    }
    EXPECT_EQ(vxcore::text_size(0xFFFFFFFFull), 0xFFFFFFFFu);
    EXPECT_THROW(vxcore::text_size(0x100000000ull), std::length_error);
}

TEST(TextConversion, TheEmptyStringStandsDuringLoad) {
    EXPECT_EQ(emptySizeAtLoad, 0u);
    EXPECT_EQ(vxcore::g_emptyString, "");
}

TEST(Streamers, StringsAreCutBetweenCharactersAndCountedWithoutLocale) {
    auto const written = [](std::string_view text, unsigned int limit) {
        std::ostringstream stream;
        stream.imbue(vxtest::grouping_locale());
        stream << vxcore::streamers::String(text, limit, '\'');
        return stream.str();
    };
    EXPECT_EQ(written("abc", 0), "''...(+3)");
    EXPECT_EQ(written(std::string(1002, 'x'), 2), "'xx'...(+1000)");
    EXPECT_EQ(written("a\xE2\x82\xACz", 3), "'a'...(+4)");
    EXPECT_EQ(written("a\xE2\x82\xACz", 4), "'a\xE2\x82\xAC'...(+1)");
    EXPECT_EQ(written("\x80\x80\x80", 2), "''...(+3)");
    EXPECT_EQ(written("a\xE2\x82", 3), "'a\xE2\x82'"); // nothing is cut, nothing stepped back
}

} // namespace
