#pragma once

#include "vxcore/export.h"

#include <cfenv>
#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace vxcore::impl {

/// Sets the default floating-point environment for its thread while it lives: rounding to nearest,
/// subnormal numbers, no traps. Conversions between text and doubles need it: otherwise the
/// standard library reads 0.3 as another double if the thread rounds upward, and writes 5e-324 as
/// 0 if subnormal numbers are flushed to zero.
///
/// Cost. With SSE2 one read of the control register if the environment is the default one;
/// elsewhere the environment is saved and restored each time.
///
/// Threads. Make it a local variable: it must be destroyed in its own thread, and several of them
/// in the reverse order.
///
///     DefaultFloatingPoint const environment;
///     std::from_chars(first, last, value);
class VXCORE_API DefaultFloatingPoint {
  public:
    /// Switches to the default environment, unless the thread is in it.
    DefaultFloatingPoint() noexcept : m_isSwitched(!is_default()) {
        if (m_isSwitched) [[unlikely]] {
            switch_over();
        }
    }

    /// Not copied: each object restores what it found.
    DefaultFloatingPoint(DefaultFloatingPoint const &) = delete;
    DefaultFloatingPoint & operator=(DefaultFloatingPoint const &) = delete;

    /// Restores the previous environment if it was another. Floating-point exceptions that were
    /// flagged since then are lost.
    ~DefaultFloatingPoint() {
        if (m_isSwitched) [[unlikely]] {
            switch_back();
        }
    }

  private:
    /// True if rounding, masks and flush modes of the thread are the default ones. Always false
    /// where there is no register that is cheap to read.
    static bool is_default() noexcept {
#ifdef __SSE2__
        constexpr unsigned int raised = 0x003F;      // exceptions; they change nothing
        constexpr unsigned int defaultBits = 0x1F80; // each exception is masked, all else is off
        return (_mm_getcsr() & ~raised) == defaultBits;
#else
        return false;
#endif
    }

    /// Out of line: the rare case.
    void switch_over() noexcept;
    void switch_back() noexcept;

    bool m_isSwitched;

    /// The previous environment; uninitialised unless `m_isSwitched`.
    std::fenv_t m_before;
};

} // namespace vxcore::impl
