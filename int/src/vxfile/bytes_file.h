#pragma once

#include "vxfile/atomic_file.h"

#include <string>

/// Whole files as bytes, in one call.
///
///     std::string const text = read_bytes_file("notes.txt");
///     write_bytes_file_atomically("notes.txt", text + "more\n");
namespace vxfile {

/// Returns the bytes of a file.
///
/// @param max_size  Bytes. A larger file is refused, a plain one before it is read.
/// @raises error.vxfile.open, error.vxfile.read, error.vxfile.size
VXFILE_API std::string read_bytes_file(std::string const & path,
                                       unsigned long long max_size = 1ull << 30);

/// Writes a file as AtomicFile does: a reader sees the old file or the whole new one.
///
/// @raises As AtomicFile.
VXFILE_API void write_bytes_file_atomically(std::string const & path, vxcore::ByteView bytes,
                                            AtomicFileOptions const & options = {});

} // namespace vxfile
