#pragma once

#include "vxcore/absolute_time.h"
#include "vxcore/relative_time.h"

#include <chrono>

/// Conversions between the time types and `std::chrono`, apart because <chrono> is a heavy header.
namespace vxcore {

/// Ticks of 100 ns as a duration.
using Ticks = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;

inline std::chrono::sys_time<Ticks> to_sys_time(AbsoluteTime time) noexcept {
    return std::chrono::sys_time<Ticks>(Ticks(time.ticks()));
}

/// Rounds down to a tick.
template <typename Duration>
AbsoluteTime from_sys_time(std::chrono::sys_time<Duration> time) noexcept {
    return AbsoluteTime(std::chrono::floor<Ticks>(time).time_since_epoch().count());
}

inline Ticks to_duration(RelativeTime time) noexcept {
    return Ticks(time.ticks());
}

/// Rounds down to a tick.
template <typename Rep, typename Period>
RelativeTime from_duration(std::chrono::duration<Rep, Period> duration) noexcept {
    return RelativeTime(std::chrono::floor<Ticks>(duration).count());
}

} // namespace vxcore
