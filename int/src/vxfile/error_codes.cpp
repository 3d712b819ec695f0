#include "vxfile/error_codes.h"

namespace vxfile::error {

using vxcore::ErrorCode;

constinit ErrorCode const vxfile("error.vxfile", true);
constinit ErrorCode const vxfile_open("error.vxfile.open", true);
constinit ErrorCode const vxfile_open_notFound("error.vxfile.open.notFound", true);
constinit ErrorCode const vxfile_read("error.vxfile.read", true);
constinit ErrorCode const vxfile_size("error.vxfile.size", true);
constinit ErrorCode const vxfile_content("error.vxfile.content", true);
constinit ErrorCode const vxfile_form("error.vxfile.form", true);
constinit ErrorCode const vxfile_write("error.vxfile.write", true);
constinit ErrorCode const vxfile_write_exists("error.vxfile.write.exists", true);
constinit ErrorCode const vxfile_write_folder("error.vxfile.write.folder", true);
constinit ErrorCode const vxfile_key("error.vxfile.key", true);
constinit ErrorCode const vxfile_key_access("error.vxfile.key.access", true);
constinit ErrorCode const vxfile_key_form("error.vxfile.key.form", true);
constinit ErrorCode const vxfile_key_size("error.vxfile.key.size", true);

} // namespace vxfile::error
