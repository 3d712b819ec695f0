#pragma once

#include <string>

/// What the parts of make_seeds share.
namespace vxfuzz {

/// After the byte for the pieces: no repetition, and everything read as values; see ReaderInput.
inline constexpr char values_only[] = "\x01\xAA\xAA\xAA";

/// Puts a seed into the folder of a target.
void save(char const * target, std::string const & name, std::string const & bytes);

/// Streams and texts with one fault each, and some without that are written by hand only.
void save_forms();

/// The seeds of the target vxattr_files.
void save_program_files();

} // namespace vxfuzz
