#pragma once

#include "vxcore/export.h"
#include "vxcore/tick_count.h"

#include <iosfwd>
#include <string>
#include <string_view>

namespace vxcore {

/// A date and time as a calendar and a clock on the wall show them, without a zone.
///
/// Held as ticks of 100 ns since the civil time 1970-01-01T00:00:00 (proleptic Gregorian calendar),
/// which is the default. The text is ISO 8601 without a zone, such as 2026-11-24T14:46:20.5, with
/// as many digits of the second as it needs, at most seven. Years outside 0 to 9999 carry a sign.
/// The range is -27258-04-19T21:11:54.5224192 to +31197-09-14T02:48:05.4775807.
///
/// Equality, order and hash are those of the ticks. Times that clocks in different zones show
/// cannot be ordered this way: use AbsoluteTime for moments.
///
///     SimpleDateTime const meeting({.year = 2026, .month = 11, .day = 24, .hour = 14});
///     meeting.as_string();       // 2026-11-24T14:00:00
///     meeting.fields().minute;   // 0
class VXCORE_API SimpleDateTime : public impl::TickCount<SimpleDateTime> {
  public:
    /// The parts of a date and time, at first those of the default. Months and days count from 1,
    /// hours, minutes and seconds from 0; there is no leap second. `year` may be 0 (1 BC) or
    /// negative. `fraction` counts ticks within the second, 0 to 9,999,999.
    struct Fields {
        int year = 1970;
        unsigned int month = 1;
        unsigned int day = 1;
        unsigned int hour = 0;
        unsigned int minute = 0;
        unsigned int second = 0;
        unsigned int fraction = 0;

        bool operator==(Fields const &) const = default;
    };

    constexpr SimpleDateTime() noexcept = default;

    /// @param ticks  Ticks of 100 ns since 1970-01-01T00:00:00; every number is valid.
    constexpr explicit SimpleDateTime(long long ticks) noexcept : TickCount(ticks) {}

    /// @raises std::out_of_range: a field is outside its range, the day is not in the month, or the
    ///         moment does not fit into the ticks.
    explicit SimpleDateTime(Fields const & fields);

    /// Returns the parts, from which the constructor makes an equal time again.
    ///
    /// @cost  A few divisions; no allocation.
    Fields fields() const noexcept;

    /// Reads the text form; a date alone is its midnight. A zone is refused, "Z" too, and digits of
    /// the second beyond seven.
    ///
    /// @return false if `text` is no such date and time or is out of range; `time` is then
    ///         unchanged.
    static bool parse(std::string_view text, SimpleDateTime & time) noexcept;

    /// Returns the text form. `parse` reads it back to an equal time.
    std::string as_string() const;
};

/// Writes the text form.
VXCORE_API std::ostream & operator<<(std::ostream & stream, SimpleDateTime const & time);

} // namespace vxcore
