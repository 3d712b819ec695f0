#include "time_text_internal.h"

#include "vxcore/absolute_time.h"
#include "vxcore/chrono.h"
#include "vxcore/relative_time.h"
#include "vxcore/text_conversion.h"

#include <chrono>
#include <limits>
#include <ostream>

namespace vxcore {

namespace impl {

bool TextScanner::take(char c) noexcept {
    if (m_rest.empty() || m_rest.front() != c) {
        return false;
    }
    m_rest.remove_prefix(1);
    return true;
}

bool TextScanner::take_digit(unsigned int & value) noexcept {
    if (m_rest.empty() || m_rest.front() < '0' || m_rest.front() > '9') {
        return false;
    }
    value = static_cast<unsigned int>(m_rest.front() - '0');
    m_rest.remove_prefix(1);
    return true;
}

bool TextScanner::take_digits(unsigned int count, unsigned int & value) noexcept {
    value = 0;
    for (unsigned int digit = 0; count > 0; --count) {
        if (!take_digit(digit)) {
            return false;
        }
        value = value * 10 + digit;
    }
    return true;
}

bool TextScanner::take_number(unsigned long long & value) noexcept {
    unsigned int digit = 0;
    if (!take_digit(digit)) {
        return false;
    }
    value = digit;
    while (take_digit(digit)) {
        if (value > (std::numeric_limits<unsigned long long>::max() - digit) / 10) {
            return false;
        }
        value = value * 10 + digit;
    }
    return true;
}

bool TextScanner::take_fraction(unsigned int & ticks) noexcept {
    if (!take_digit(ticks)) {
        return false;
    }
    for (unsigned int count = 1, digit = 0; count < 7; ++count) {
        ticks = ticks * 10 + (take_digit(digit) ? digit : 0);
    }
    return true;
}

DayTime split_ticks(long long ticks) noexcept {
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
    // A day of ticks more or less goes to the day, so that both parts are of one sign: neither step
    // below leaves the range then unless the sum does.
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
    // The calendar types keep a year in 16 bits and month and day in 8: they would wrap.
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
    // The range first: the sum of any fields would overflow.
    if (hour >= 24 || minute >= 60 || second >= 60 || fraction >= ticksPerSecond) {
        return false;
    }
    result = hour * ticksPerHour + minute * ticksPerMinute + second * ticksPerSecond + fraction;
    return true;
}

bool scan_date(TextScanner & scanner, long long & result) noexcept {
    bool const plus = scanner.take('+');
    bool const minus = !plus && scanner.take('-');
    unsigned int year = 0;
    unsigned int month = 0;
    unsigned int day = 0;
    if (!scanner.take_digits(4, year)) {
        return false;
    }
    if (unsigned int digit = 0; (plus || minus) && year >= 1000 && scanner.take_digit(digit)) {
        year = year * 10 + digit;
    }
    if ((plus && year <= 9999) || (minus && year == 0)) {
        return false;
    }
    return scanner.take('-') && scanner.take_digits(2, month) && scanner.take('-') &&
           scanner.take_digits(2, day) &&
           civil_day(minus ? -static_cast<int>(year) : static_cast<int>(year), month, day, result);
}

bool scan_clock(TextScanner & scanner, long long & ticks) noexcept {
    unsigned int hour = 0;
    unsigned int minute = 0;
    unsigned int second = 0;
    unsigned int fraction = 0;
    if (!scanner.take_digits(2, hour) || !scanner.take(':') || !scanner.take_digits(2, minute) ||
        !scanner.take(':') || !scanner.take_digits(2, second)) {
        return false;
    }
    if (scanner.take('.') && !scanner.take_fraction(fraction)) {
        return false;
    }
    return clock_ticks(hour, minute, second, fraction, ticks);
}

namespace {

/// Writes `value` with zeros in front up to `width` digits.
void append_padded(std::string & text, unsigned int value, std::size_t width) {
    std::string const digits = to_string(value);
    text.append(width > digits.size() ? width - digits.size() : 0, '0').append(digits);
}

} // namespace

void append_fraction(std::string & text, unsigned int ticks) {
    if (ticks != 0) {
        text += '.';
        append_padded(text, ticks, 7);
        text.erase(text.find_last_not_of('0') + 1);
    }
}

void append_date_time(std::string & text, long long ticks) {
    DayTime const time = split_ticks(ticks);
    std::chrono::year_month_day const date{
        std::chrono::sys_days(std::chrono::days(static_cast<int>(time.day)))};
    int const year = static_cast<int>(date.year());
    if (year < 0 || year > 9999) {
        text += year < 0 ? '-' : '+';
    }
    append_padded(text, static_cast<unsigned int>(year < 0 ? -year : year), 4);
    text += '-';
    append_padded(text, static_cast<unsigned int>(date.month()), 2);
    text += '-';
    append_padded(text, static_cast<unsigned int>(date.day()), 2);
    text += 'T';
    append_padded(text, static_cast<unsigned int>(time.ticks / ticksPerHour), 2);
    text += ':';
    append_padded(text, static_cast<unsigned int>(time.ticks / ticksPerMinute % 60), 2);
    text += ':';
    append_padded(text, static_cast<unsigned int>(time.ticks / ticksPerSecond % 60), 2);
    append_fraction(text, static_cast<unsigned int>(time.ticks % ticksPerSecond));
}

namespace {

/// Reads "Z" or an offset from UTC such as +02:00.
bool scan_zone(TextScanner & scanner, long long & ticks) noexcept {
    ticks = 0;
    if (scanner.take('Z')) {
        return true;
    }
    bool const west = scanner.take('-');
    unsigned int hour = 0;
    unsigned int minute = 0;
    if ((!west && !scanner.take('+')) || !scanner.take_digits(2, hour) || !scanner.take(':') ||
        !scanner.take_digits(2, minute) || !clock_ticks(hour, minute, 0, 0, ticks)) {
        return false;
    }
    ticks = west ? -ticks : ticks;
    return true;
}

/// sum += count * unit; false beyond 64 bits.
bool add_units(unsigned long long & sum, unsigned long long count, long long unit) noexcept {
    auto const size = static_cast<unsigned long long>(unit);
    if (count > (std::numeric_limits<unsigned long long>::max() - sum) / size) {
        return false;
    }
    sum += count * size;
    return true;
}

/// Reads the part of a duration behind its "T", up to the end: hours, minutes and seconds in this
/// order, at least one of them; only the seconds may have a fraction.
bool scan_span_clock(TextScanner & scanner, unsigned long long & ticks) noexcept {
    struct Unit {
        char letter;
        long long ticks;
    };

    static constexpr Unit units[] = {
        {'H', ticksPerHour}, {'M', ticksPerMinute}, {'S', ticksPerSecond}};
    Unit const * unit = units;
    do {
        unsigned long long count = 0;
        unsigned int fraction = 0;
        if (!scanner.take_number(count)) {
            return false;
        }
        bool const hasFraction = scanner.take('.');
        if (hasFraction && !scanner.take_fraction(fraction)) {
            return false;
        }
        while (unit != std::end(units) && !scanner.take(unit->letter)) {
            ++unit;
        }
        if (unit == std::end(units) || (hasFraction && unit->letter != 'S') ||
            !add_units(ticks, count, unit->ticks) || !add_units(ticks, fraction, 1)) {
            return false;
        }
        ++unit;
    } while (!scanner.at_end());
    return true;
}

/// Reads the part of a duration behind its "P", up to the end.
bool scan_span(TextScanner & scanner, unsigned long long & ticks) noexcept {
    unsigned long long count = 0;
    if (!scanner.take('T')) {
        if (!scanner.take_number(count)) {
            return false;
        }
        if (scanner.take('W')) {
            return scanner.at_end() && add_units(ticks, count, 7 * ticksPerDay);
        }
        if (!scanner.take('D') || !add_units(ticks, count, ticksPerDay)) {
            return false;
        }
        if (scanner.at_end()) {
            return true;
        }
        if (!scanner.take('T')) {
            return false;
        }
    }
    return scan_span_clock(scanner, ticks);
}

/// Writes `count` and the letter of its unit; nothing for 0.
void append_units(std::string & text, unsigned long long count, char letter) {
    if (count != 0) {
        text.append(to_string(count)) += letter;
    }
}

} // namespace
} // namespace impl

AbsoluteTime AbsoluteTime::now() noexcept {
    return from_sys_time(std::chrono::system_clock::now());
}

bool AbsoluteTime::parse(std::string_view text, AbsoluteTime & time) noexcept {
    impl::TextScanner scanner(text);
    impl::DayTime moment;
    long long offset = 0;
    long long ticks = 0;
    if (!impl::scan_date(scanner, moment.day) || !scanner.take('T') ||
        !impl::scan_clock(scanner, moment.ticks) || !impl::scan_zone(scanner, offset) ||
        !scanner.at_end()) {
        return false;
    }
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

bool RelativeTime::parse(std::string_view text, RelativeTime & time) noexcept {
    impl::TextScanner scanner(text);
    unsigned long long size = 0;
    bool const negative = scanner.take('-');
    if (!scanner.take('P') || !impl::scan_span(scanner, size)) {
        return false;
    }
    constexpr unsigned long long max = std::numeric_limits<long long>::max();
    if (size > (negative ? max + 1 : max)) {
        return false;
    }
    time = RelativeTime(static_cast<long long>(negative ? 0 - size : size));
    return true;
}

std::string RelativeTime::as_string() const {
    // Unsigned: the smallest number has no counterpart among the positive ones.
    auto size = static_cast<unsigned long long>(ticks());
    std::string text = ticks() < 0 ? "-P" : "P";
    if (ticks() < 0) {
        size = 0 - size;
    }
    impl::append_units(text, size / impl::ticksPerDay, 'D');
    size %= impl::ticksPerDay;
    if (size == 0 && ticks() != 0) {
        return text;
    }
    text += 'T';
    impl::append_units(text, size / impl::ticksPerHour, 'H');
    impl::append_units(text, size / impl::ticksPerMinute % 60, 'M');
    if (size % impl::ticksPerMinute != 0 || ticks() == 0) {
        text.append(to_string(size % impl::ticksPerMinute / impl::ticksPerSecond));
        impl::append_fraction(text, static_cast<unsigned int>(size % impl::ticksPerSecond));
        text += 'S';
    }
    return text;
}

std::ostream & operator<<(std::ostream & stream, RelativeTime const & time) {
    return stream << time.as_string();
}

} // namespace vxcore
