#pragma once

#include <compare>

namespace vxcore::impl {

/// Base of the three time types: a signed 64-bit number of ticks of 100 nanoseconds.
///
/// `Time` is the derived class (CRTP), so that different kinds of time do not compare. The range is
/// about 29,227 years to either side of 0. A derived class says what 0 means and reads and writes
/// the text form.
///
/// There is no arithmetic on times. Subtract the ticks, which may overflow near the ends of the
/// range:
///
///     double seconds = static_cast<double>(end.ticks() - begin.ticks()) / end.ticks_per_second;
///
/// Cost. 8 bytes. No function allocates or throws.
template <typename Time>
class TickCount {
  public:
    /// The resolution of all three types.
    static constexpr long long ticks_per_second = 10'000'000;

    /// The number itself: ticks of 100 nanoseconds, negative before the moment or span 0.
    constexpr long long ticks() const noexcept { return m_ticks; }

    /// The lower half of the ticks, xor the upper half. Equal times have equal hashes, in every
    /// process.
    constexpr unsigned int hash() const noexcept {
        auto const bits = static_cast<unsigned long long>(m_ticks);
        return static_cast<unsigned int>(bits) ^ static_cast<unsigned int>(bits >> 32);
    }

    /// Sets the ticks to 0, the default.
    void clear() noexcept { m_ticks = 0; }

    /// Both compare the ticks: earlier moments and smaller spans are less.
    friend constexpr bool operator==(Time const & a, Time const & b) noexcept {
        return a.ticks() == b.ticks();
    }

    friend constexpr std::strong_ordering operator<=>(Time const & a, Time const & b) noexcept {
        return a.ticks() <=> b.ticks();
    }

  protected:
    /// Only derived classes are made: a bare count has no meaning.
    constexpr TickCount() noexcept = default;

    constexpr explicit TickCount(long long ticks) noexcept : m_ticks(ticks) {}

  private:
    long long m_ticks = 0;
};

} // namespace vxcore::impl
