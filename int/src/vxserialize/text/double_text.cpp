#include "vxcore/default_floating_point.h"
#include "vxserialize/text/double_text_internal.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace vxserialize::impl::text {

namespace {

/// Writes a double that is a decimal of at most 15 digits, six of them after the point, as most
/// doubles that people deal with are. Takes a third of the time of std::to_chars. Returns null for
/// any other double.
///
/// The text is the shortest one: no two decimals of 15 digits read as the same double.
char * write_short(char * to, double value) noexcept {
    constexpr std::uint64_t unit = 1'000'000;
    double const size = std::fabs(value);
    // From 0.001 on, a number with a fraction is never shorter with an exponent.
    if (!(size >= 0.001 && size < 1e9)) {
        return nullptr;
    }
    double const scaled = size * unit;
    auto const digits = static_cast<std::uint64_t>(scaled + 0.5);
    auto const whole = static_cast<double>(digits);
    // The first test saves most numbers of more digits the division. The second one is exact: both
    // operands are, and the quotient is rounded once, as a reader rounds.
    if (std::fabs(whole - scaled) > scaled * 0x1p-51 || whole / unit != size) {
        return nullptr;
    }
    std::uint64_t fraction = digits % unit;
    if (fraction == 0 && digits >= 100'000 * unit) {
        return nullptr; // 100000 is 1e+05
    }
    if (value < 0) {
        *to++ = '-';
    }
    to = std::to_chars(to, to + 9, digits / unit).ptr;
    if (fraction != 0) {
        *to++ = '.';
        do {
            fraction *= 10;
            *to++ = static_cast<char>('0' + fraction / unit);
            fraction %= unit;
        } while (fraction != 0);
    }
    return to;
}

} // namespace

char * write_double(char * to, double value) noexcept {
    vxcore::impl::DefaultFloatingPoint const environment;
    char * const end = write_short(to, value);
    return end != nullptr ? end : std::to_chars(to, to + double_size, value).ptr;
}

} // namespace vxserialize::impl::text
