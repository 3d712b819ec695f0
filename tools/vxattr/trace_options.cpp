#include "vxattr/trace_options.h"

#include <CLI/CLI.hpp>

namespace vxattr {

using vxattribute::TraceFormatter;
using vxcore::SourceString;

TraceFormatter TraceOptions::formatter() const {
    TraceFormatter const base;
    TraceFormatter::Composer composer(base);
    composer.sorted_names(true)
        .show_type(!noTypes)
        .max_multivalue_count(maxElements)
        .max_string_len(maxString)
        .multiline_length_threshold(multilineFrom)
        .max_binary_value_dump_bytes(maxDump)
        .binary_value_dump_line_size(dumpLine)
        .line_prefix(SourceString(std::string_view(linePrefix)))
        .indent(SourceString(std::string_view(indent)))
        .error_info_null(SourceString(std::string_view(nullError)));
    if (bareScalars) {
        composer
            .list_default(TraceFormatter::ListParams(base.list_default()).show_for_scalar(false))
            .list_string_simple(
                TraceFormatter::ListParams(base.list_string_simple()).show_for_scalar(false));
    }
    return composer.compose();
}

void add_trace_options(CLI::App & command, TraceOptions & options) {
    command.add_flag("--no-types", options.noTypes, "Values without the names of their types");
    command.add_flag("--bare-scalars", options.bareScalars, "No braces around a single element");
    command.add_flag("--visible", options.visible,
                     "Control bytes as \\xNN, as on a terminal, also elsewhere");
    auto const add = [&command](char const * name, auto & value, char const * what) {
        command.add_option(name, value, what)->capture_default_str();
    };
    add("--max-elements", options.maxElements, "Most elements shown of one value");
    add("--max-string", options.maxString, "Most bytes shown of one string");
    add("--multiline-from", options.multilineFrom,
        "Bytes from which on strings of a list have lines of their own");
    add("--max-dump", options.maxDump, "Most bytes shown of one binary value; 0: its size alone");
    add("--dump-line", options.dumpLine, "Bytes on a line of a dump");
    command.add_option("--line-prefix", options.linePrefix, "Begins each new line");
    command.add_option("--indent-text", options.indent, "Text of one level of indentation");
    command.add_option("--null-error", options.nullError, "Stands for an error that is null");
}

} // namespace vxattr
