#pragma once

namespace vxattr {

/// Runs the program once.
///
/// Reads and writes the files that the command line names, and the standard streams. May be called
/// several times; no state remains between calls.
///
/// @param argv  The name of the program, then its arguments.
/// @return the exit code. Failures are reported on standard error, and nothing is raised.
int run(int argc, char const * const * argv);

} // namespace vxattr
