#pragma once

#include <string>

/// Shared by the sources of make_seeds.
namespace vxfuzz {

/// Follows the byte for the pieces: no repetition, and all is read as values; see ReaderInput.
inline constexpr char values_only[] = "\x01\xAA\xAA\xAA";

/// Puts a seed into the folder of a target.
void save(char const * target, std::string const & name, std::string const & bytes);

/// Streams and texts with one fault each, and some without that are written by hand only.
void save_forms();

/// The seeds of the target vxattr_files.
void save_program_files();

} // namespace vxfuzz
