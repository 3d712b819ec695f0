#include "commands.h"
#include "failure.h"
#include "value_file.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace vxattr {

namespace {

struct Options {
    std::string in;
    std::string out;
    ReadOptions read;
    WriteOptions write;
};

int convert(Options const & options) {
    vxattribute::AttributeValue const value = read_value(options.in, options.read);
    Output output(options.out);
    write_value(output, options.out, value, options.write, options.read.packages);
    output.commit();
    return eExit_Good;
}

} // namespace

void add_convert(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("convert", "Convert a value from one form to another");
    command.add_option("IN", options->in, "Input file, - for standard input")->required();
    command.add_option("OUT", options->out, "Output file, - for standard output")->required();
    add_read_options(command, options->read);
    add_write_options(command, options->write);
    command.footer("Examples:\n"
                   "  vxattr convert settings.json settings.bin\n"
                   "  vxattr convert settings.bin - --to json --indent 2 --sorted\n"
                   "  vxattr convert records.json records.bin --package records.names");
    command.callback([options, &run] { run = [options] { return convert(*options); }; });
}

} // namespace vxattr
