#pragma once

#include "vxcore/absolute_time.h"
#include "vxcore/relative_time.h"

#include <chrono>

/// Conversions between the time types and `std::chrono`, apart because <chrono> is a heavy header.
///
/// To `std::chrono` they are exact. From it they round down, that is towards the past, so that
/// moments keep their order.
///
/// Cost. One multiplication or division. Nothing is checked: a moment or span beyond the range of
/// 64-bit ticks, 29,227 years to either side of 0, overflows, which is undefined behaviour.
///
///     AbsoluteTime const modified = from_sys_time(std::chrono::system_clock::now());
///     std::this_thread::sleep_for(to_duration(pause));
namespace vxcore {

/// Ticks of 100 ns as a duration.
using Ticks = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;

/// The same moment: both types count from 1970-01-01T00:00:00Z without leap seconds.
inline std::chrono::sys_time<Ticks> to_sys_time(AbsoluteTime time) noexcept {
    return std::chrono::sys_time<Ticks>(Ticks(time.ticks()));
}

/// Rounds down to a tick. `Duration` may be finer or coarser than a tick.
template <typename Duration>
AbsoluteTime from_sys_time(std::chrono::sys_time<Duration> time) noexcept {
    return AbsoluteTime(std::chrono::floor<Ticks>(time).time_since_epoch().count());
}

/// The same span, exactly.
inline Ticks to_duration(RelativeTime time) noexcept {
    return Ticks(time.ticks());
}

/// Rounds down to a tick: -50 ns becomes one tick below 0.
template <typename Rep, typename Period>
RelativeTime from_duration(std::chrono::duration<Rep, Period> duration) noexcept {
    return RelativeTime(std::chrono::floor<Ticks>(duration).count());
}

} // namespace vxcore
