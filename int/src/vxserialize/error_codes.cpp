#include "vxserialize/error_codes.h"

namespace vxserialize::error {

using vxcore::ErrorCode;

constinit ErrorCode const vxserialize("error.vxserialize", true);
constinit ErrorCode const vxserialize_data("error.vxserialize.data", true);
constinit ErrorCode const vxserialize_data_count("error.vxserialize.data.count", true);
constinit ErrorCode const vxserialize_data_size("error.vxserialize.data.size", true);
constinit ErrorCode const vxserialize_data_truncated("error.vxserialize.data.truncated", true);
constinit ErrorCode const vxserialize_data_type("error.vxserialize.data.type", true);
constinit ErrorCode const vxserialize_data_version("error.vxserialize.data.version", true);
constinit ErrorCode const vxserialize_depth("error.vxserialize.depth", true);
constinit ErrorCode const vxserialize_usage("error.vxserialize.usage", true);

} // namespace vxserialize::error
