#pragma once

/// Arithmetic of the three time types: the proleptic Gregorian calendar, without leap seconds.
namespace vxcore::impl {

inline constexpr long long ticksPerSecond = 10'000'000;
inline constexpr long long ticksPerMinute = 60 * ticksPerSecond;
inline constexpr long long ticksPerHour = 60 * ticksPerMinute;
inline constexpr long long ticksPerDay = 24 * ticksPerHour;

/// A moment as the number of its day since 1970-01-01 and the ticks since that day's midnight. The
/// two are separate because the midnight of the first day in range is itself out of range.
struct DayTime {
    long long day = 0;
    long long ticks = 0;
};

/// Splits a moment. `ticks` of the result is in 0 to ticksPerDay - 1.
DayTime split_ticks(long long ticks) noexcept;

/// The inverse of `split_ticks`. Returns false if the moment does not fit.
///
/// @pre `time.ticks` is within two days of 0, `time.day` is a result of `civil_day` (25 bits).
bool join_ticks(DayTime time, long long & ticks) noexcept;

/// Computes the number of a day. Returns false if the calendar has no such day or year (the last
/// year is 32767).
bool civil_day(int year, unsigned int month, unsigned int day, long long & result) noexcept;

/// Computes the ticks since midnight. Returns false if a field is out of range.
bool clock_ticks(unsigned int hour, unsigned int minute, unsigned int second, unsigned int fraction,
                 long long & result) noexcept;

} // namespace vxcore::impl
