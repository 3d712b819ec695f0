#pragma once

namespace vxattr {

/// Runs the program once.
///
/// It reads and writes the files that the command line names, and the standard streams. It may be
/// called again, and keeps nothing from one call to the next.
///
/// @param argv  The name of the program, then its arguments.
/// @return the exit code. Failures are reported on standard error; none is raised.
int run(int argc, char const * const * argv);

} // namespace vxattr
