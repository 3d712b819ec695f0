#pragma once

#include <string>
#include <string_view>

/// What the texts of the three time types share: reading and writing ISO 8601 by hand-written
/// steps, in the proleptic Gregorian calendar and without any locale.
namespace vxcore::impl {

inline constexpr long long ticksPerSecond = 10'000'000;
inline constexpr long long ticksPerMinute = 60 * ticksPerSecond;
inline constexpr long long ticksPerHour = 60 * ticksPerMinute;
inline constexpr long long ticksPerDay = 24 * ticksPerHour;

/// Reads a text from front to back. A step that gives false ends the reading: what it passed over
/// and what it stored mean nothing then.
class TextScanner {
  public:
    explicit TextScanner(std::string_view text) noexcept : m_rest(text) {}

    bool at_end() const noexcept { return m_rest.empty(); }

    /// Passes over `c` when it comes next; stays when it does not.
    bool take(char c) noexcept;

    /// One decimal digit.
    bool take_digit(unsigned int & value) noexcept;

    /// Exactly `count` digits, at most nine.
    bool take_digits(unsigned int count, unsigned int & value) noexcept;

    /// All digits that come next, at least one; false above 64 bits.
    bool take_number(unsigned long long & value) noexcept;

    /// The one to seven digits behind a decimal point, as ticks within the second.
    bool take_fraction(unsigned int & ticks) noexcept;

  private:
    std::string_view m_rest;
};

/// A moment as the number of its day since 1970-01-01 and the ticks since that day's midnight. The
/// two stay apart because the midnight of the first day in range is itself out of range.
struct DayTime {
    long long day = 0;
    long long ticks = 0;
};

/// `ticks` of the result is in 0 to ticksPerDay - 1.
DayTime split_ticks(long long ticks) noexcept;

/// The other way round, for a `time.ticks` of less than two days of either sign; false when the
/// moment does not fit. `time.day` is that of a year of the calendar, so of 25 bits.
bool join_ticks(DayTime time, long long & ticks) noexcept;

/// The number of a day; false when the calendar has no such day or year (it ends at 32767).
bool civil_day(int year, unsigned int month, unsigned int day, long long & result) noexcept;

/// The ticks since midnight; false when a field is out of range. There are no leap seconds.
bool clock_ticks(unsigned int hour, unsigned int minute, unsigned int second, unsigned int fraction,
                 long long & result) noexcept;

/// Reads a date such as 2026-11-24. A year outside 0 to 9999, and no other, has a sign.
bool scan_date(TextScanner & scanner, long long & day) noexcept;

/// Reads a time of day such as 14:46:20 or 14:46:20.5.
bool scan_clock(TextScanner & scanner, long long & ticks) noexcept;

/// Writes the point and the digits of a fraction without trailing zeros; nothing for 0.
void append_fraction(std::string & text, unsigned int ticks);

/// Writes a moment such as 2026-11-24T14:46:20.5.
void append_date_time(std::string & text, long long ticks);

} // namespace vxcore::impl
