#include "vxattr/run.h"

#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace vxattr {

namespace {

int complain(EExit exit, std::string const & text) {
    std::fputs(("vxattr: " + text + '\n').c_str(), stderr);
    return exit;
}

int parse_and_run(CLI::App & app, Run const & run, int argc, char const * const * argv) {
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const & e) {
        if (e.get_exit_code() == 0) {
            return app.exit(e); // prints the help or the version
        }
        std::vector<std::string> const rest = app.remaining();
        if (app.get_subcommands().empty() && !rest.empty() && rest.front()[0] != '-') {
            return complain(eExit_Usage, "there is no command \"" + rest.front() + '"');
        }
        return complain(eExit_Usage, message_of(e));
    }
    try {
        return run();
    } catch (std::bad_alloc const &) {
        throw;
    } catch (UsageFailure const & e) {
        return complain(eExit_Usage, message_of(e));
    } catch (std::exception const & e) {
        return complain(eExit_Data, message_of(e));
    }
}

struct Command {
    std::string_view name;
    void (*add)(CLI::App & app, Run & run);
};

constexpr Command commands[] = {
    {"convert", add_convert}, {"show", add_show},   {"inspect", add_inspect},
    {"get", add_get},         {"diff", add_diff},   {"stat", add_stat},
    {"package", add_package}, {"seal", add_seal},   {"open", add_open},
    {"verify", add_verify},   {"rekey", add_rekey}, {"check", add_check},
};

/// Adds the command that `first` names, or all commands when it names none. Adding all of them
/// takes longer than most runs.
void add_commands(CLI::App & app, Run & run, std::string_view first) {
    bool const isKnown = std::any_of(std::begin(commands), std::end(commands),
                                     [&](Command const & known) { return known.name == first; });
    for (Command const & command : commands) {
        if (!isKnown || command.name == first) {
            command.add(app, run);
        }
    }
}

int set_up_and_run(int argc, char const * const * argv) {
    CLI::App app("Values in files: converts, shows, queries, compares and seals them.", "vxattr");
    app.set_version_flag("--version", "vxattr " VXATTR_VERSION);
    app.require_subcommand(1);
    app.footer("'vxattr COMMAND --help' shows its options. Exit codes: 0 good, 1 bad data, a "
               "difference or a\nfailed check, 2 a command line that makes no sense.");
    Run run;
    add_commands(app, run, argc > 1 ? argv[1] : "");
    return parse_and_run(app, run, argc, argv);
}

} // namespace

int run(int argc, char const * const * argv) {
    try {
        return set_up_and_run(argc, argv);
    } catch (std::bad_alloc const &) { // perhaps while reporting another failure
        std::fputs("vxattr: out of memory\n", stderr);
        return eExit_Data;
    }
}

} // namespace vxattr
