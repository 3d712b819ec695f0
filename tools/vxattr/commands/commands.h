#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vxattr {

/// Does what the command line asks for and returns the exit code.
using Run = std::function<int()>;

/// Each function adds one command to the program. When the command line names that command, `run`
/// is set to do its work.
void add_convert(CLI::App & app, Run & run);
void add_show(CLI::App & app, Run & run);
void add_inspect(CLI::App & app, Run & run);
void add_get(CLI::App & app, Run & run);
void add_diff(CLI::App & app, Run & run);
void add_stat(CLI::App & app, Run & run);
void add_package(CLI::App & app, Run & run);
void add_seal(CLI::App & app, Run & run);
void add_open(CLI::App & app, Run & run);
void add_verify(CLI::App & app, Run & run);
void add_rekey(CLI::App & app, Run & run);
void add_check(CLI::App & app, Run & run);

} // namespace vxattr
