#pragma once

#include "vxcore/error_code.h"
#include "vxserialize/export.h"

/// The kinds of failure that vxserialize itself raises.
namespace vxserialize::error {

extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize;

/// Serialized data is ill-formed; below it what is wrong: a list with another number of elements
/// than announced, an end in the middle, another element than the one asked for, a version of the
/// form that is not known.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data;
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_count;
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_truncated;
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_type;
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_version;

/// Too many lists and records are open, or a chain of errors is too long.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_depth;

/// The program calls a reader or writer in an order that makes no stream.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_usage;

} // namespace vxserialize::error
