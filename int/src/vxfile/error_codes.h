#pragma once

#include "vxcore/error_code.h"
#include "vxfile/export.h"

/// The error codes of vxfile. The name of a code has dots where its variable has underscores:
/// "error.vxfile.open.notFound".
///
/// Each message starts with the name of the file, which is the parameter `path`. Where the system
/// reported the failure, its text is the parameter `reason`.
///
///     } catch (vxcore::ErrorException const & e) {
///         if (e.info()->matches(vxfile::error::vxfile_open_notFound)) { // use the defaults
namespace vxfile::error {

/// The parent of all others.
extern VXFILE_API vxcore::ErrorCode const vxfile;

/// The file cannot be opened; the second one: because there is none.
extern VXFILE_API vxcore::ErrorCode const vxfile_open;
extern VXFILE_API vxcore::ErrorCode const vxfile_open_notFound;

/// The file was opened and cannot be read. A folder is one case.
extern VXFILE_API vxcore::ErrorCode const vxfile_read;

/// The file has more bytes than the caller allows: the parameter `limit`.
extern VXFILE_API vxcore::ErrorCode const vxfile_size;

/// The file was read, but does not hold what it should. The parameter `reason` says why. The error
/// that says so is nested, if there is one.
extern VXFILE_API vxcore::ErrorCode const vxfile_content;

/// No form was given for a file to be written, and the ending of its name does not tell.
extern VXFILE_API vxcore::ErrorCode const vxfile_form;

/// The file cannot be written. `exists`: there is one, which is not to be replaced. `folder`: the
/// new file is in place, but a power failure may lose its name, since its folder could not be
/// written to the disk.
extern VXFILE_API vxcore::ErrorCode const vxfile_write;
extern VXFILE_API vxcore::ErrorCode const vxfile_write_exists;
extern VXFILE_API vxcore::ErrorCode const vxfile_write_folder;

/// The file is not used as that of a key: the group or others may read it; it is not in hexadecimal
/// digits; it has too many bytes.
extern VXFILE_API vxcore::ErrorCode const vxfile_key;
extern VXFILE_API vxcore::ErrorCode const vxfile_key_access;
extern VXFILE_API vxcore::ErrorCode const vxfile_key_form;
extern VXFILE_API vxcore::ErrorCode const vxfile_key_size;

} // namespace vxfile::error
