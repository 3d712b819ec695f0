#pragma once

#include <compare>

namespace vxcore::impl {

/// Base of the three time types: a signed 64-bit number of ticks of 100 nanoseconds.
///
/// `Time` is the derived class (CRTP), so that different kinds of time do not compare.
template <typename Time>
class TickCount {
  public:
    /// The resolution of all three types.
    static constexpr long long ticks_per_second = 10'000'000;

    constexpr long long ticks() const noexcept { return m_ticks; }

    /// The lower half of the ticks, xor the upper half.
    constexpr unsigned int hash() const noexcept {
        auto const bits = static_cast<unsigned long long>(m_ticks);
        return static_cast<unsigned int>(bits) ^ static_cast<unsigned int>(bits >> 32);
    }

    void clear() noexcept { m_ticks = 0; }

    friend constexpr bool operator==(Time const & a, Time const & b) noexcept {
        return a.ticks() == b.ticks();
    }

    friend constexpr std::strong_ordering operator<=>(Time const & a, Time const & b) noexcept {
        return a.ticks() <=> b.ticks();
    }

  protected:
    constexpr TickCount() noexcept = default;

    constexpr explicit TickCount(long long ticks) noexcept : m_ticks(ticks) {}

  private:
    long long m_ticks = 0;
};

} // namespace vxcore::impl
