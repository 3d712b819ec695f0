#include "vxcore/simple_date_time.h"

#include "vxcore/time/calendar_internal.h"
#include "vxcore/time/time_text_internal.h"

#include <chrono>
#include <ostream>
#include <stdexcept>

namespace vxcore {

SimpleDateTime::SimpleDateTime(Fields const & fields) {
    impl::DayTime time;
    long long ticks = 0;
    if (!impl::civil_day(fields.year, fields.month, fields.day, time.day) ||
        !impl::clock_ticks(fields.hour, fields.minute, fields.second, fields.fraction,
                           time.ticks) ||
        !impl::join_ticks(time, ticks)) {
        throw std::out_of_range("vxcore::SimpleDateTime::SimpleDateTime()");
    }
    *this = SimpleDateTime(ticks);
}

SimpleDateTime::Fields SimpleDateTime::fields() const noexcept {
    // The number of the day has 25 bits for any ticks, so that the cast to int is exact.
    impl::DayTime const time = impl::split_ticks(ticks());
    std::chrono::year_month_day const date{
        std::chrono::sys_days(std::chrono::days(static_cast<int>(time.day)))};
    return {.year = static_cast<int>(date.year()),
            .month = static_cast<unsigned int>(date.month()),
            .day = static_cast<unsigned int>(date.day()),
            .hour = static_cast<unsigned int>(time.ticks / impl::ticksPerHour),
            .minute = static_cast<unsigned int>(time.ticks / impl::ticksPerMinute % 60),
            .second = static_cast<unsigned int>(time.ticks / impl::ticksPerSecond % 60),
            .fraction = static_cast<unsigned int>(time.ticks % impl::ticksPerSecond)};
}

bool SimpleDateTime::parse(std::string_view text, SimpleDateTime & time) noexcept {
    impl::TextScanner scanner(text);
    impl::DayTime moment;
    long long ticks = 0;
    if (!impl::scan_date(scanner, moment.day)) {
        return false;
    }
    // A date alone means its midnight.
    if (!scanner.at_end() && (!scanner.take('T') || !impl::scan_clock(scanner, moment.ticks))) {
        return false;
    }
    if (!scanner.at_end() || !impl::join_ticks(moment, ticks)) {
        return false;
    }
    time = SimpleDateTime(ticks);
    return true;
}

std::string SimpleDateTime::as_string() const {
    std::string text;
    impl::append_date_time(text, ticks());
    return text;
}

std::ostream & operator<<(std::ostream & stream, SimpleDateTime const & time) {
    return stream << time.as_string();
}

} // namespace vxcore
