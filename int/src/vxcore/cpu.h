#pragma once

#include "vxcore/export.h"

namespace vxcore::hardware {

class VXCORE_API Cpu {
  public:
    /// Returns the processor's time stamp counter, or a clock in nanoseconds where there is none.
    /// It never decreases: use it to tell moments apart, not to measure time.
    static unsigned long long read_timestamp() noexcept;
};

} // namespace vxcore::hardware
