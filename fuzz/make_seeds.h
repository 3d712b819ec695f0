#pragma once

#include <string>

/// What the parts of make_seeds share.
namespace vxfuzz {

/// Puts a seed into the folder of a target.
void save(char const * target, std::string const & name, std::string const & bytes);

/// The seeds of the target vxattr_files.
void save_program_files();

} // namespace vxfuzz
