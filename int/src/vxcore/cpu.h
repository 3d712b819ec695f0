#pragma once

#include "vxcore/export.h"

namespace vxcore::hardware {

/// Access to the processor.
class VXCORE_API Cpu {
  public:
    /// Returns the processor's time stamp counter, or a clock in nanoseconds where there is none.
    /// It never decreases: use it to tell moments apart, not to measure time.
    ///
    /// @cost  One instruction on x86, which is not ordered with those around it.
    static unsigned long long read_timestamp() noexcept;
};

} // namespace vxcore::hardware
