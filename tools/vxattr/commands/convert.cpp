#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <memory>

namespace vxattr {

namespace {

struct Options {
    std::string in;
    std::string out;
    bool isTimed = false;
    ReadOptions read;
    WriteOptions write;
};

using Clock = std::chrono::steady_clock;

/// Reports the speed of a step on standard error.
void report_time(char const * step, unsigned long long bytes, Clock::time_point start) {
    std::chrono::duration<double, std::micro> const time = Clock::now() - start;
    auto const micros = static_cast<unsigned long long>(time.count()) + 1;
    std::fprintf(stderr, "vxattr: %s %llu bytes, %llu us, %llu MB/s\n", step, bytes, micros,
                 bytes / micros);
}

int convert(Options const & options) {
    check_output_form(options.out, options.write);
    FileFacts facts;
    Clock::time_point start = Clock::now();
    vxattribute::AttributeValue const value = read_value(options.in, options.read, &facts);
    if (options.isTimed) {
        report_time("read", facts.bytes, start);
    }
    start = Clock::now();
    Output output(options.out);
    write_value(output, options.out, value, options.write, options.read.packages);
    output.commit();
    if (options.isTimed) {
        report_time("wrote", output.written(), start);
    }
    return eExit_Good;
}

} // namespace

void add_convert(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("convert", "Convert a value from one form to another");
    command.add_option("IN", options->in, "Input file, - for standard input")->required();
    command.add_option("OUT", options->out, "Output file, - for standard output")->required();
    command.add_flag("--time", options->isTimed, "Report sizes and rates on standard error");
    add_read_options(command, options->read);
    add_write_options(command, options->write);
    command.footer("Examples:\n"
                   "  vxattr convert settings.json settings.bin\n"
                   "  vxattr convert settings.bin - --to json --indent 2 --sorted\n"
                   "  vxattr convert records.json records.bin --package records.names");
    command.callback([options, &run] { run = [options] { return convert(*options); }; });
}

} // namespace vxattr
