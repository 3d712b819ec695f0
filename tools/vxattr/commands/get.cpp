#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/json_file.h"
#include "vxattr/files/value_file.h"
#include "vxattr/place.h"
#include "vxattr/trace_options.h"
#include "vxattribute/core_elements.h"
#include "vxattribute/element_types.h"
#include "vxattribute/elements.h"
#include "vxcore/streamers.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <memory>
#include <ostream>

namespace vxattr {

using namespace vxattribute;

namespace {

struct Options {
    std::string in;
    std::vector<std::string> names;
    std::string to = "plain";
    ReadOptions read;
    TraceOptions trace;
};

/// Writes an element in the form that scripts want: strings without quotes.
template <typename T>
void write_plain_element(std::ostream & stream, T const & element) {
    if constexpr (std::is_same_v<T, bool>) {
        stream << vxcore::streamers::Boolean(element);
    } else if constexpr (std::is_same_v<T, double>) {
        char text[32];
        auto const end = std::to_chars(std::begin(text), std::end(text), element).ptr;
        stream << std::string_view(text, static_cast<std::size_t>(end - text));
    } else {
        stream << element;
    }
    stream << '\n';
}

template <typename T>
constexpr bool has_plain_text =
    !std::is_same_v<T, AttributeMap> && !std::is_same_v<T, BinaryValue> &&
    !std::is_same_v<T, SerializedValue> && !std::is_same_v<T, impl::ErrorInfoPtr>;

/// Writes a line for each element. Types without plain text are rendered as in traces.
void write_plain(std::ostream & stream, AttributeValue const & value,
                 TraceFormatter const & formatter) {
    bool isWritten = false;
    visit_elements(value, [&](auto const elements) {
        using T = typename decltype(elements)::value_type;
        if constexpr (has_plain_text<T>) {
            for (T const & element : elements) {
                write_plain_element(stream, element);
            }
            isWritten = true;
        }
    });
    if (!isWritten) {
        value.write_trace(stream, formatter, 0);
        stream << '\n';
    }
}

int get(Options const & options) {
    AttributeValue const value = read_value(options.in, options.read);
    Output output("-");
    bool areAllThere = true;
    TraceFormatter const formatter = options.trace.formatter();
    OutputStream stream(output, options.trace.visible || output.is_terminal());
    for (std::string const & name : options.names) {
        Place const place(options.in, value, name);
        AttributeValue const * const found = place.find();
        if (found == nullptr) {
            std::fputs(
                ("vxattr: " + visible(options.in) + ": there is no '" + visible(name) + "'\n")
                    .c_str(),
                stderr);
            areAllThere = false;
        } else if (options.to == "json") {
            write_json(output, *found, {0, true, ""});
        } else if (options.to == "trace") {
            found->write_trace(stream, formatter, 0);
            stream << '\n';
        } else {
            write_plain(stream, *found, formatter);
        }
    }
    stream.finish();
    output.commit();
    return areAllThere ? eExit_Good : eExit_Data;
}

} // namespace

void add_get(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("get", "Print values by their names");
    command.add_option("FILE", options->in, "Input file, - for standard input")->required();
    command
        .add_option("NAME", options->names,
                    "Names, or paths of names with slashes; ~1 is a slash in a name, ~0 a tilde")
        ->required();
    command.add_option("--to", options->to, "plain (a line for each element), json or trace")
        ->check(CLI::IsMember({"plain", "json", "trace"}))
        ->capture_default_str();
    add_read_options(command, options->read);
    add_trace_options(command, options->trace);
    command.footer("Examples:\n"
                   "  vxattr get settings.json server/port\n"
                   "  vxattr get records.bin 3/name 4/name --to json");
    command.callback([options, &run] { run = [options] { return get(*options); }; });
}

} // namespace vxattr
