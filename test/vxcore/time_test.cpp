#include "support/cases.h"

#include "vxcore/absolute_time.h"
#include "vxcore/chrono.h"
#include "vxcore/relative_time.h"
#include "vxcore/simple_date_time.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

using vxcore::AbsoluteTime;
using vxcore::RelativeTime;
using vxcore::SimpleDateTime;

constexpr long long minTicks = std::numeric_limits<long long>::min();

template <typename Time>
void check(std::string const & text, std::string const & ticks, bool isWritten) {
    Time read(77);
    if (Time::parse(text, read)) {
        EXPECT_EQ(std::to_string(read.ticks()), ticks) << text;
    } else {
        EXPECT_EQ(ticks, "none") << text;
        EXPECT_EQ(read.ticks(), 77) << "kept";
    }
    if (isWritten) {
        EXPECT_EQ((std::ostringstream() << read).str(), text);
    }
}

TEST(TimeText, IsReadAndWrittenAsInTheTable) {
    auto const check_row = [](std::string const & line, std::string const & ticks,
                              std::string const & kind) {
        std::string const text = vxtest::decode(line);
        bool const isWritten = kind.ends_with(" written");
        if (kind.starts_with("= span")) {
            check<RelativeTime>(text, ticks, isWritten);
        } else if (kind == "= moment") {
            check<AbsoluteTime>(text, ticks, isWritten);
        } else {
            check<SimpleDateTime>(text, ticks, isWritten);
            if (kind != "= civil alone") {
                check<AbsoluteTime>(text + "Z", ticks, isWritten);
            }
        }
    };
    EXPECT_GT(vxtest::for_each_case("vxcore/times.txt", check_row), 70);
    check<SimpleDateTime>("", "none", false);
    check<AbsoluteTime>("Z", "none", false);
    check<RelativeTime>("", "none", false);
}

TEST(SimpleDateTime, FieldsAndTicksConvertIntoEachOther) {
    SimpleDateTime::Fields const first{-27258, 4, 19, 21, 11, 54, 5224192};
    EXPECT_EQ(SimpleDateTime(minTicks).fields(), first);
    EXPECT_EQ(SimpleDateTime(first).ticks(), minTicks);
    SimpleDateTime::Fields const wrong[] = {
        {2023, 2, 29}, {2023, 257, 1}, {65536 + 1970, 1, 1}, {2023, 1, 1, 0, 0, 0, 10'000'000}};
    for (SimpleDateTime::Fields const & wrongFields : wrong) {
        EXPECT_THROW(SimpleDateTime{wrongFields}, std::out_of_range);
    }
}

TEST(TimeChrono, ConversionsRoundDownToATick) {
    using namespace std::chrono;
    EXPECT_EQ(vxcore::from_sys_time(sys_time<nanoseconds>(nanoseconds(-50))).ticks(), -1);
    EXPECT_EQ(vxcore::from_duration(nanoseconds(199)).ticks(), 1);
    EXPECT_EQ(vxcore::to_sys_time(AbsoluteTime(10'000'000)), sys_time<seconds>(seconds(1)));
    EXPECT_EQ(vxcore::to_duration(RelativeTime(-25)), nanoseconds(-2500));
    EXPECT_LT(abs(vxcore::to_sys_time(AbsoluteTime::now()) - system_clock::now()), minutes(5));
}

} // namespace
