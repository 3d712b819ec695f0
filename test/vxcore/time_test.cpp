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
constexpr long long maxTicks = std::numeric_limits<long long>::max();

using Row = std::pair<long long, std::string>;

/// A target that holds 77 keeps it when the text is refused.
template <typename Time>
long long ticks_read(std::string const & text) {
    Time read(77);
    bool const good = Time::parse(text, read);
    EXPECT_EQ(good, read.ticks() != 77) << text;
    return read.ticks();
}

template <typename Time>
void expect_written_and_read(Row const & row) {
    EXPECT_EQ((std::ostringstream() << Time(row.first)).str(), row.second);
    EXPECT_EQ(ticks_read<Time>(row.second), row.first) << row.second;
}

Row const civilTimes[] = {
    {-1, "1969-12-31T23:59:59.9999999"},
    {17955315805000000, "2026-11-24T14:46:20.5"},
    {17091648000000000, "2024-02-29T00:00:00"},
    {-621672192000000000, "0000-01-01T00:00:00"},
    {-621672192000000001, "-0001-12-31T23:59:59.9999999"},
    {2534023008000000000, "+10000-01-01T00:00:00"},
    {maxTicks, "+31197-09-14T02:48:05.4775807"},
    {minTicks, "-27258-04-19T21:11:54.5224192"},
};

TEST(TimeText, CivilTimesAreWrittenAndReadOverTheWholeRange) {
    for (auto const & [ticks, text] : civilTimes) {
        expect_written_and_read<SimpleDateTime>({ticks, text});
        expect_written_and_read<AbsoluteTime>({ticks, text + "Z"});
    }
    EXPECT_EQ(ticks_read<SimpleDateTime>("2026-11-24T14:46:20.5000000"), 17955315805000000);
    EXPECT_EQ(ticks_read<SimpleDateTime>("2026-11-24"), 17954784000000000);
}

TEST(TimeText, AMomentNeedsItsZoneAndTakesOffsets) {
    EXPECT_EQ(ticks_read<AbsoluteTime>("2026-11-24T16:46:20.5+02:00"), 17955315805000000);
    EXPECT_EQ(ticks_read<AbsoluteTime>("2026-11-23T20:16:20.5-18:30"), 17955315805000000);
    EXPECT_EQ(ticks_read<AbsoluteTime>("+31197-09-15T02:47:05.4775807+23:59"), maxTicks);
    EXPECT_EQ(ticks_read<AbsoluteTime>("-27258-04-19T00:00:54.5224192-21:11"), minTicks);
    for (char const * text : {"2026-11-24T14:46:20", "2026-11-24T14:46:20ZZ",
                              "2026-11-24T14:46:20+02", "2026-11-24T14:46:20+24:00",
                              "+31197-09-14T02:48:05-00:01", "-27258-04-19T21:11:55+00:01"}) {
        EXPECT_EQ(ticks_read<AbsoluteTime>(text), 77);
    }
}

TEST(TimeText, WrongCivilTimesAreRefusedAndKeepTheTarget) {
    for (std::string const text :
         {"", "2026-11", "2026-11-24T", "2026-11-24T14:46", "2026-11-24 14:46:20",
          "20261124T144620", " 2026-11-24T14:46:20",
          // fields out of range
          "2026-13-24T00:00:00", "2026-11-00T00:00:00", "1900-02-29T00:00:00",
          "2026-11-24T24:00:00", "2026-11-24T14:60:00", "2026-11-24T14:46:60",
          // fractions and signs of years
          "2026-11-24T14:46:20.", "2026-11-24T14:46:20.12345678", "-0000-01-01T00:00:00",
          "10000-01-01T00:00:00", "+01000-01-01T00:00:00",
          // beyond the ticks, by one tick and by far
          "+31197-09-14T02:48:05.4775808", "-27258-04-19T21:11:54.5224191", "-32767-01-01T00:00:00",
          "-99999-01-01T00:00:00", "+123456-01-01T00:00:00"}) {
        EXPECT_EQ(ticks_read<SimpleDateTime>(text), 77);
        EXPECT_EQ(ticks_read<AbsoluteTime>(text + "Z"), 77);
    }
    EXPECT_EQ(ticks_read<SimpleDateTime>("2026-11-24T14:46:20Z"), 77);
}

TEST(TimeText, SpansAreWrittenAndReadOverTheWholeRange) {
    for (Row const & row : {Row{0, "PT0S"},
                            {-1, "-PT0.0000001S"},
                            {-864'000'000'000, "-P1D"},
                            {937'845'000'000, "P1DT2H3M4.5S"},
                            {maxTicks, "P10675199DT2H48M5.4775807S"},
                            {minTicks, "-P10675199DT2H48M5.4775808S"}}) {
        expect_written_and_read<RelativeTime>(row);
    }
    for (Row const & row : {Row{12'096'000'000'000, "P2W"},
                            {0, "P0D"},
                            {1'296'000'000'000, "PT36H"},
                            {minTicks, "-PT922337203685.4775808S"}}) {
        EXPECT_EQ(ticks_read<RelativeTime>(row.second), row.first) << row.second;
    }
}

TEST(TimeText, WrongSpansAreRefusedAndKeepTheTarget) {
    for (char const * text :
         {// signs, missing pieces and foreign units
          "", "P", "PT", "PT1", "1S", "P-1D", "P1DT", "PT1S ", "P1M",
          // order and place of the units, fractions
          "P1S", "PT1D", "PT1S1S", "PT1S1M", "P1W1D", "P1WT1S", "PT1.5M", "PT.5S", "PT0.00000001S",
          // beyond the ticks, by one tick, then in the number, the product and the sum of 64 bits
          "P10675199DT2H48M5.4775808S", "-P10675199DT2H48M5.4775809S", "PT18446744073709551616S",
          "P18446744073709551615W", "PT1844674407371S", "P21350398DT23H34M33.7095517S"}) {
        EXPECT_EQ(ticks_read<RelativeTime>(text), 77);
    }
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
