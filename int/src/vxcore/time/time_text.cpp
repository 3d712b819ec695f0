#include "vxcore/text_conversion.h"
#include "vxcore/time/calendar_internal.h"
#include "vxcore/time/time_text_internal.h"

#include <chrono>
#include <limits>

namespace vxcore::impl {

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
        // value * 10 + digit would exceed the maximum; computed without doing so.
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
    // Digits that are missing are zeros: ".5" is 5,000,000 ticks.
    for (unsigned int count = 1, digit = 0; count < 7; ++count) {
        ticks = ticks * 10 + (take_digit(digit) ? digit : 0);
    }
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
    // A year has one text only: a fifth digit needs a sign and no leading zero, a plus needs a
    // fifth digit, and there is no -0000.
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

/// Appends `value`, padded with leading zeros to `width` digits.
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
    // The day fits an int: 64 bits of ticks are 10.7 million days in either direction.
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

} // namespace vxcore::impl
