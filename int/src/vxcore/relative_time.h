#pragma once

#include "vxcore/export.h"
#include "vxcore/tick_count.h"

#include <iosfwd>
#include <string>
#include <string_view>

namespace vxcore {

/// A span of time in ticks of 100 ns, of either sign. Default: 0.
///
/// The text is an ISO 8601 duration of days, hours, minutes and seconds, such as P1DT2H3M4.5S, PT0S
/// or -PT1.5S. A day has 24 hours. Parts that are 0 are left out, and the fraction has at most
/// seven digits. The range is -P10675199DT2H48M5.4775808S to P10675199DT2H48M5.4775807S.
/// Conversions from and to `std::chrono` are in vxcore/chrono.h.
///
///     RelativeTime pause;
///     if (RelativeTime::parse("PT1.5S", pause)) {
///         pause.ticks(); // 15,000,000
///     }
class VXCORE_API RelativeTime : public impl::TickCount<RelativeTime> {
  public:
    constexpr RelativeTime() noexcept = default;

    /// @param ticks  Ticks of 100 ns.
    constexpr explicit RelativeTime(long long ticks) noexcept : TickCount(ticks) {}

    /// Reads the text form; weeks alone (P2W) and numbers above that of the next unit (PT90M) are
    /// accepted too. Years, months, a plus sign and lower-case letters are refused.
    ///
    /// @return false if `text` is no such span or is out of range; `time` is then unchanged.
    static bool parse(std::string_view text, RelativeTime & time) noexcept;

    /// Returns the text form. `parse` reads it back to an equal span.
    std::string as_string() const;
};

/// Writes the text form.
VXCORE_API std::ostream & operator<<(std::ostream & stream, RelativeTime const & time);

} // namespace vxcore
