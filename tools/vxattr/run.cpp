#include "run.h"

#include "commands.h"
#include "failure.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
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
            return app.exit(e); // prints what was asked for
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

int set_up_and_run(int argc, char const * const * argv) {
    CLI::App app("Values in files: converts, shows, queries, compares and seals them.", "vxattr");
    app.set_version_flag("--version", "vxattr " VXATTR_VERSION);
    app.require_subcommand(1);
    app.footer(
        "'vxattr COMMAND --help' tells more. Exit codes: 0 good, 1 bad data, a difference or "
        "a failed check,\n2 a command line that makes no sense.");
    Run run;
    for (auto const add : {add_convert, add_show, add_inspect, add_get, add_diff, add_stat,
                           add_package, add_seal, add_open, add_verify, add_rekey, add_check}) {
        add(app, run);
    }
    return parse_and_run(app, run, argc, argv);
}

} // namespace

int run(int argc, char const * const * argv) {
    try {
        return set_up_and_run(argc, argv);
    } catch (std::bad_alloc const &) { // also from telling another failure
        std::fputs("vxattr: out of memory\n", stderr);
        return eExit_Data;
    }
}

} // namespace vxattr
