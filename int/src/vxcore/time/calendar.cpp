#include "vxcore/time/calendar_internal.h"

#include <chrono>
#include <limits>

namespace vxcore::impl {

DayTime split_ticks(long long ticks) noexcept {
    // Division rounds towards 0, but a moment before 1970 belongs to the day whose midnight
    // precedes it.
    DayTime time{ticks / ticksPerDay, ticks % ticksPerDay};
    if (time.ticks < 0) {
        time.ticks += ticksPerDay;
        --time.day;
    }
    return time;
}

bool join_ticks(DayTime time, long long & ticks) noexcept {
    constexpr long long min = std::numeric_limits<long long>::min();
    constexpr long long max = std::numeric_limits<long long>::max();
    // Give both parts the same sign first. Neither step below can then overflow unless the result
    // itself is out of range.
    time.day += time.ticks / ticksPerDay;
    time.ticks %= ticksPerDay;
    if (time.day < 0 && time.ticks > 0) {
        ++time.day;
        time.ticks -= ticksPerDay;
    } else if (time.day > 0 && time.ticks < 0) {
        --time.day;
        time.ticks += ticksPerDay;
    }
    if (time.day > max / ticksPerDay || time.day < min / ticksPerDay) {
        return false;
    }
    long long const days = time.day * ticksPerDay;
    if (time.ticks > 0 ? days > max - time.ticks : days < min - time.ticks) {
        return false;
    }
    ticks = days + time.ticks;
    return true;
}

bool civil_day(int year, unsigned int month, unsigned int day, long long & result) noexcept {
    // The calendar types store a year in 16 bits, a month and a day in 8: larger values would wrap.
    if (year < static_cast<int>(std::chrono::year::min()) ||
        year > static_cast<int>(std::chrono::year::max()) || month > 12 || day > 31) {
        return false;
    }
    std::chrono::year_month_day const date{std::chrono::year(year), std::chrono::month(month),
                                           std::chrono::day(day)};
    if (!date.ok()) {
        return false;
    }
    result = std::chrono::sys_days(date).time_since_epoch().count();
    return true;
}

bool clock_ticks(unsigned int hour, unsigned int minute, unsigned int second, unsigned int fraction,
                 long long & result) noexcept {
    // Check the ranges first: the sum of unchecked fields could overflow.
    if (hour >= 24 || minute >= 60 || second >= 60 || fraction >= ticksPerSecond) {
        return false;
    }
    result = hour * ticksPerHour + minute * ticksPerMinute + second * ticksPerSecond + fraction;
    return true;
}

} // namespace vxcore::impl
