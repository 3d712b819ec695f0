#include "vxcore/relative_time.h"

#include "vxcore/text_conversion.h"
#include "vxcore/time/calendar_internal.h"
#include "vxcore/time/time_text_internal.h"

#include <limits>
#include <ostream>

namespace vxcore {

using namespace impl;

namespace {

/// Adds `count * unit` to `sum`. Returns false if the result exceeds 64 bits.
bool add_units(unsigned long long & sum, unsigned long long count, long long unit) noexcept {
    auto const size = static_cast<unsigned long long>(unit);
    if (count > (std::numeric_limits<unsigned long long>::max() - sum) / size) {
        return false;
    }
    sum += count * size;
    return true;
}

/// Reads the rest of a duration after its "T": hours, minutes and seconds in this order, at least
/// one of them. Only the seconds may have a fraction.
bool scan_span_clock(TextScanner & scanner, unsigned long long & ticks) noexcept {
    struct Unit {
        char letter;
        long long ticks;
    };

    static constexpr Unit units[] = {
        {'H', ticksPerHour}, {'M', ticksPerMinute}, {'S', ticksPerSecond}};
    // `unit` only moves forward: letters come in order and each at most once.
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
        // `unit` only moves forward, so each unit comes at most once and in the order above.
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

/// Reads the rest of a duration after its "P".
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

/// Appends `count` and the letter of its unit; nothing if `count` is 0.
void append_units(std::string & text, unsigned long long count, char letter) {
    if (count != 0) {
        text.append(to_string(count)) += letter;
    }
}

} // namespace

bool RelativeTime::parse(std::string_view text, RelativeTime & time) noexcept {
    TextScanner scanner(text);
    unsigned long long size = 0;
    bool const negative = scanner.take('-');
    if (!scanner.take('P') || !scan_span(scanner, size)) {
        return false;
    }
    // The smallest value has a size of `max + 1`, which only an unsigned number holds.
    constexpr unsigned long long max = std::numeric_limits<long long>::max();
    if (size > (negative ? max + 1 : max)) { // there is one more negative number than positive
        return false;
    }
    time = RelativeTime(static_cast<long long>(negative ? 0 - size : size));
    return true;
}

std::string RelativeTime::as_string() const {
    // Unsigned, because the smallest value has no positive counterpart.
    auto size = static_cast<unsigned long long>(ticks());
    std::string text = ticks() < 0 ? "-P" : "P";
    if (ticks() < 0) {
        size = 0 - size;
    }
    append_units(text, size / ticksPerDay, 'D');
    size %= ticksPerDay;
    if (size == 0 && ticks() != 0) { // whole days have no "T", but the span 0 needs a part
        return text;
    }
    text += 'T';
    append_units(text, size / ticksPerHour, 'H');
    append_units(text, size / ticksPerMinute % 60, 'M');
    if (size % ticksPerMinute != 0 || ticks() == 0) {
        text.append(to_string(size % ticksPerMinute / ticksPerSecond));
        append_fraction(text, static_cast<unsigned int>(size % ticksPerSecond));
        text += 'S';
    }
    return text;
}

std::ostream & operator<<(std::ostream & stream, RelativeTime const & time) {
    return stream << time.as_string();
}

} // namespace vxcore
