#pragma once

#include "vxcore/error_code.h"
#include "vxcore/export.h"

/// The kinds of failure that vxcore itself raises.
namespace vxcore::error {

extern VXCORE_API ErrorCode const vxcore;
extern VXCORE_API ErrorCode const vxcore_conversion;
extern VXCORE_API ErrorCode const vxcore_conversion_truncated;
extern VXCORE_API ErrorCode const vxcore_destroyed;
extern VXCORE_API ErrorCode const vxcore_exception;

} // namespace vxcore::error
