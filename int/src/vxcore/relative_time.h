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
/// or -PT1.5S.
class VXCORE_API RelativeTime : public impl::TickCount<RelativeTime> {
  public:
    constexpr RelativeTime() noexcept = default;

    /// @param ticks  Ticks of 100 ns.
    constexpr explicit RelativeTime(long long ticks) noexcept : TickCount(ticks) {}

    /// Reads the text form; weeks (P2W) are accepted too.
    ///
    /// @return false if `text` is no such span or is out of range; `time` is then unchanged.
    static bool parse(std::string_view text, RelativeTime & time) noexcept;

    /// Returns the text form. `parse` reads it back to an equal span.
    std::string as_string() const;
};

/// Writes the text form.
VXCORE_API std::ostream & operator<<(std::ostream & stream, RelativeTime const & time);

} // namespace vxcore
