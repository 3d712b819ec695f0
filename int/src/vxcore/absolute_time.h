#pragma once

#include "vxcore/export.h"
#include "vxcore/tick_count.h"

#include <iosfwd>
#include <string>
#include <string_view>

namespace vxcore {

/// A moment: ticks of 100 ns since 1970-01-01T00:00:00Z, without leap seconds. Default: that
/// moment.
///
/// The text is ISO 8601 in UTC, such as 2026-11-24T14:46:20.5Z, with as many digits of the second
/// as it needs, at most seven. Years outside 0 to 9999 carry a sign. Conversions from and to
/// `std::chrono` are in vxcore/chrono.h. The range is -27258-04-19T21:11:54.5224192Z to
/// +31197-09-14T02:48:05.4775807Z.
class VXCORE_API AbsoluteTime : public impl::TickCount<AbsoluteTime> {
  public:
    constexpr AbsoluteTime() noexcept = default;

    /// @param ticks  Ticks of 100 ns since 1970-01-01T00:00:00Z.
    constexpr explicit AbsoluteTime(long long ticks) noexcept : TickCount(ticks) {}

    /// The current time of the system clock, rounded down to a tick.
    static AbsoluteTime now() noexcept;

    /// Reads the text form; an offset such as +02:00 may replace the Z. A zone of either kind and
    /// the seconds are required.
    ///
    /// @return false if `text` is no such moment or is out of range; `time` is then unchanged.
    static bool parse(std::string_view text, AbsoluteTime & time) noexcept;

    /// Returns the text form. `parse` reads it back to an equal time.
    std::string as_string() const;
};

/// Writes the text form.
VXCORE_API std::ostream & operator<<(std::ostream & stream, AbsoluteTime const & time);

} // namespace vxcore
