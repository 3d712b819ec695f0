#pragma once

#include "vxcore/error_code.h"
#include "vxcore/export.h"

/// The kinds of failure that vxcore itself raises.
namespace vxcore::error {

/// "error.vxcore", the parent of all others.
extern VXCORE_API ErrorCode const vxcore;

/// "error.vxcore.conversion": a text is not of the type it is converted to. Its child
/// "error.vxcore.conversion.truncated": a number does not fit the type.
extern VXCORE_API ErrorCode const vxcore_conversion;
extern VXCORE_API ErrorCode const vxcore_conversion_truncated;

/// "error.vxcore.destroyed": a StaticInstance was used after its end.
extern VXCORE_API ErrorCode const vxcore_destroyed;

/// "error.vxcore.exception": the code of an ErrorInfo that was made of a foreign exception.
extern VXCORE_API ErrorCode const vxcore_exception;

/// "error.vxcore.output": a sink cannot take bytes. Its child "error.vxcore.output.full": a buffer
/// has no room for them.
extern VXCORE_API ErrorCode const vxcore_output;
extern VXCORE_API ErrorCode const vxcore_output_full;

} // namespace vxcore::error
