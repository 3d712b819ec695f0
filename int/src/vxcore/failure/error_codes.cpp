#include "vxcore/error_codes.h"

namespace vxcore::error {

constinit ErrorCode const vxcore("error.vxcore", true);
constinit ErrorCode const vxcore_conversion("error.vxcore.conversion", true);
constinit ErrorCode const vxcore_conversion_truncated("error.vxcore.conversion.truncated", true);
constinit ErrorCode const vxcore_destroyed("error.vxcore.destroyed", true);
constinit ErrorCode const vxcore_exception("error.vxcore.exception", true);
constinit ErrorCode const vxcore_output("error.vxcore.output", true);
constinit ErrorCode const vxcore_output_full("error.vxcore.output.full", true);

} // namespace vxcore::error
