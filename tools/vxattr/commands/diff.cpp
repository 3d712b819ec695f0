#include "vxattr/commands/commands.h"
#include "vxattr/commands/difference.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxattribute/trace_formatter.h"

#include <CLI/CLI.hpp>
#include <limits>
#include <locale>
#include <memory>
#include <sstream>

namespace vxattr {

using vxattribute::AttributeValue;
using vxattribute::TraceFormatter;

namespace {

struct Options {
    std::string a;
    std::string b;
    bool quiet = false;
    ReadOptions read;
};

TraceFormatter one_line_formatter(unsigned int elements, unsigned int textBytes,
                                  unsigned int dumpBytes) {
    return TraceFormatter::Composer()
        .sorted_names(true)
        .line_prefix({})
        .indent({})
        .multiline_string_newline({"\\n", true})
        .max_multivalue_count(elements)
        .max_string_len(textBytes)
        .max_binary_value_dump_bytes(dumpBytes)
        .compose();
}

/// The value on one line.
///
/// @param isWhole  Long lists, texts and binary values are shown to their end.
std::string one_line_trace(AttributeValue const & value, bool isWhole) {
    constexpr unsigned int all = std::numeric_limits<unsigned int>::max();
    static TraceFormatter const brief = one_line_formatter(32, 256, 32);
    static TraceFormatter const whole = one_line_formatter(all, all, all);
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    value.write_trace(stream, isWhole ? whole : brief, 0);
    return std::move(stream).str();
}

/// The value on one line; empty for a null pointer.
std::string text_of(AttributeValue const * value, bool isWhole) {
    return value != nullptr ? one_line_trace(*value, isWhole) : "";
}

int diff(Options const & options) {
    AttributeValue const a = read_value(options.a, options.read);
    AttributeValue const b = read_value(options.b, options.read);
    Output output("-");
    OutputStream stream(output, true); // line feeds in names and strings add no lines
    auto const print = [&](char mark, std::string const & path, std::string const & text) {
        if (!text.empty()) {
            stream << mark << ' ' << shown_path(path) << (path.empty() ? "" : ": ") << text << '\n';
        }
    };
    bool const areSame = find_differences(
        a, b,
        [&](std::string const & path, AttributeValue const * left, AttributeValue const * right) {
            if (options.quiet) {
                return;
            }
            std::string leftText = text_of(left, false);
            std::string rightText = text_of(right, false);
            if (leftText == rightText) { // they differ in what was left out
                leftText = text_of(left, true);
                rightText = text_of(right, true);
            }
            print('-', path, leftText);
            print('+', path, rightText);
        });
    stream.finish();
    output.commit();
    return areSame ? eExit_Good : eExit_Data;
}

} // namespace

void add_diff(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("diff", "Compare two values by name and path");
    command.add_option("A", options->a, "The one file")->required();
    command.add_option("B", options->b, "The other, in any form")->required();
    command.add_flag("--quiet,-q", options->quiet, "Print nothing; the exit code is the answer");
    add_read_options(command, options->read);
    command.footer("Prints \"- PATH: VALUE\" for what A has and \"+ PATH: VALUE\" for what B has.\n"
                   "Exit code 1 when they differ.\n"
                   "Example:\n"
                   "  vxattr diff old.json new.bin");
    command.callback([options, &run] { run = [options] { return diff(*options); }; });
}

} // namespace vxattr
