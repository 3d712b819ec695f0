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
/// which is the default. The text is ISO 8601 without a zone, such as 2026-11-24T14:46:20.5.
class VXCORE_API SimpleDateTime : public impl::TickCount<SimpleDateTime> {
  public:
    /// The parts of a date and time. `fraction` counts ticks within the second, 0 to 9,999,999.
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

    constexpr explicit SimpleDateTime(long long ticks) noexcept : TickCount(ticks) {}

    /// @raises std::out_of_range: a field is outside its range, the day is not in the month, or the
    ///         moment does not fit into the ticks.
    explicit SimpleDateTime(Fields const & fields);

    Fields fields() const noexcept;

    /// Reads the text form; a date alone is its midnight.
    ///
    /// @return false when `text` is no such date and time or out of range; `time` is unchanged
    /// then.
    static bool parse(std::string_view text, SimpleDateTime & time) noexcept;

    std::string as_string() const;
};

VXCORE_API std::ostream & operator<<(std::ostream & stream, SimpleDateTime const & time);

} // namespace vxcore
