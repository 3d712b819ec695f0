#pragma once

#include <string>

/// Shared by the sources of make_seeds.
namespace vxfuzz {

/// Bytes 1 to 4 of an input: no repetition, and each read takes a value. See ReaderInput.
inline constexpr char values_only[] = "\x01\xAA\xAA\xAA";

/// Saves a seed in the folder of a target.
void save(char const * target, std::string const & name, std::string const & bytes);

/// Saves streams and texts with one fault each, and some correct ones that are only written by
/// hand.
void save_forms();

/// Saves the seeds of the target vxattr_files.
void save_program_files();

} // namespace vxfuzz
