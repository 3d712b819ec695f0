#pragma once

#include "vxcore/export.h"

namespace vxcore::hardware {

class VXCORE_API Cpu {
  public:
    /// The processor's time stamp counter; where it has none, a clock in nanoseconds. It only grows
    /// and is good for telling moments apart, not for measuring time.
    static unsigned long long read_timestamp() noexcept;
};

} // namespace vxcore::hardware
