#include "vxcore/absolute_time.h"

#include "vxcore/chrono.h"
#include "vxcore/time/calendar_internal.h"
#include "vxcore/time/time_text_internal.h"

#include <chrono>
#include <ostream>

namespace vxcore {

namespace {

/// Reads "Z" or an offset from UTC such as +02:00, as ticks to subtract.
bool scan_zone(impl::TextScanner & scanner, long long & ticks) noexcept {
    ticks = 0;
    if (scanner.take('Z')) {
        return true;
    }
    bool const west = scanner.take('-');
    unsigned int hour = 0;
    unsigned int minute = 0;
    if ((!west && !scanner.take('+')) || !scanner.take_digits(2, hour) || !scanner.take(':') ||
        !scanner.take_digits(2, minute) || !impl::clock_ticks(hour, minute, 0, 0, ticks)) {
        return false;
    }
    ticks = west ? -ticks : ticks;
    return true;
}

} // namespace

AbsoluteTime AbsoluteTime::now() noexcept {
    return from_sys_time(std::chrono::system_clock::now());
}

bool AbsoluteTime::parse(std::string_view text, AbsoluteTime & time) noexcept {
    impl::TextScanner scanner(text);
    impl::DayTime moment;
    long long offset = 0;
    long long ticks = 0;
    // The offset is subtracted before day and time are joined: near the ends of the range the local
    // time may be out of range although the moment is not.
    if (!impl::scan_date(scanner, moment.day) || !scanner.take('T') ||
        !impl::scan_clock(scanner, moment.ticks) || !scan_zone(scanner, offset) ||
        !scanner.at_end()) {
        return false;
    }
    // May leave the day in either direction, which `join_ticks` accepts.
    moment.ticks -= offset;
    if (!impl::join_ticks(moment, ticks)) {
        return false;
    }
    time = AbsoluteTime(ticks);
    return true;
}

std::string AbsoluteTime::as_string() const {
    std::string text;
    impl::append_date_time(text, ticks());
    text += 'Z';
    return text;
}

std::ostream & operator<<(std::ostream & stream, AbsoluteTime const & time) {
    return stream << time.as_string();
}

} // namespace vxcore
