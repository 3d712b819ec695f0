#include "vxcore/default_floating_point.h"

namespace vxcore::impl {

void DefaultFloatingPoint::switch_over() noexcept {
    std::fegetenv(&m_before); // holds the flush modes of SSE too
    std::fesetenv(FE_DFL_ENV);
}

void DefaultFloatingPoint::switch_back() noexcept {
    std::fesetenv(&m_before);
}

} // namespace vxcore::impl
