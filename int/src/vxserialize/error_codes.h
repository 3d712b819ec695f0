#pragma once

#include "vxcore/error_code.h"
#include "vxserialize/export.h"

/// The error codes that vxserialize itself raises. The name of a code has dots where its variable
/// has underscores: "error.vxserialize.data.count".
namespace vxserialize::error {

/// The parent of all others.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize;

/// Serialized data is ill-formed; the parent of the five below. The messages of readers contain the
/// byte offset.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data;

/// A list has another number of elements than it announces, or announces more than the data holds.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_count;

/// A frame has more bytes than its reader allows. See FrameReader.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_size;

/// The data ends in the middle.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_truncated;

/// The next element is of another kind than the one to be read.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_type;

/// The version of the form is not known to this library.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_data_version;

/// Too many lists and records are open, or a chain of errors is too long: see limits.h.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_depth;

/// The program calls a reader or writer in a wrong order: a fault of the program, not of the data.
extern VXSERIALIZE_API vxcore::ErrorCode const vxserialize_usage;

} // namespace vxserialize::error
