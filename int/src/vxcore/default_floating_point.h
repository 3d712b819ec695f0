#pragma once

#include "vxcore/export.h"

#include <cfenv>
#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace vxcore::impl {

/// While one lives, its thread calculates as a new program does: it rounds to nearest, takes
/// subnormal numbers for what they are and traps nothing. What turns texts into doubles and doubles
/// into texts needs that: the standard library reads 0.3 as another double where a thread rounds
/// upward, and writes 5e-324 as 0 where subnormal numbers count as zero.
///
/// Cost. With SSE2 one look at the control register, unless there is something to switch; elsewhere
/// the environment is saved and restored each time.
class VXCORE_API DefaultFloatingPoint {
  public:
    DefaultFloatingPoint() noexcept : m_isSwitched(!is_default()) {
        if (m_isSwitched) [[unlikely]] {
            switch_over();
        }
    }

    DefaultFloatingPoint(DefaultFloatingPoint const &) = delete;
    DefaultFloatingPoint & operator=(DefaultFloatingPoint const &) = delete;

    ~DefaultFloatingPoint() {
        if (m_isSwitched) [[unlikely]] {
            switch_back();
        }
    }

  private:
    /// False where that takes longer to find out than to switch.
    static bool is_default() noexcept {
#ifdef __SSE2__
        constexpr unsigned int raised = 0x003F;      // exceptions; they change nothing
        constexpr unsigned int defaultBits = 0x1F80; // each exception is masked, all else is off
        return (_mm_getcsr() & ~raised) == defaultBits;
#else
        return false;
#endif
    }

    void switch_over() noexcept;
    void switch_back() noexcept;

    bool m_isSwitched;
    std::fenv_t m_before; // when switched
};

} // namespace vxcore::impl
