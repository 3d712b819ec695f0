#pragma once

#include "vxcore/error_code.h"
#include "vxserialize/export.h"

/// The error codes that vxserialize itself raises.
namespace vxserialize::error {

/// The parent of all others.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize;

/// Serialized data is ill-formed. Its children say how: a list with another number of elements than
/// announced, data that ends in the middle, another kind of element than the one to be read, an
/// unknown version of the form.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data;
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_count;
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_truncated;
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_type;
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_version;

/// Too many lists and records are open, or a chain of errors is too long: see limits.h.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_depth;

/// The program calls a reader or writer in a wrong order.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_usage;

} // namespace vxserialize::error
