#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxattr/trace_options.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace vxattr {

namespace {

struct Options {
    std::string in;
    ReadOptions read;
    TraceOptions trace;
};

int show(Options const & options) {
    vxattribute::AttributeValue const value = read_value(options.in, options.read);
    Output output("-");
    OutputStream stream(output, options.trace.visible || output.is_terminal());
    value.write_trace(stream, options.trace.formatter(), 0);
    stream << '\n';
    stream.finish();
    output.commit();
    return eExit_Good;
}

} // namespace

void add_show(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("show", "Show a value to people, names sorted");
    command.add_option("IN", options->in, "Input file, - for standard input")->required();
    add_read_options(command, options->read);
    add_trace_options(command, options->trace);
    command.footer("Examples:\n"
                   "  vxattr show settings.bin\n"
                   "  vxattr show settings.bin --no-types --bare-scalars --max-string 80");
    command.callback([options, &run] { run = [options] { return show(*options); }; });
}

} // namespace vxattr
