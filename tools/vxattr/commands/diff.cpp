#include "vxattr/commands/commands.h"
#include "vxattr/commands/json_patch.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxattribute/difference.h"
#include "vxattribute/trace_formatter.h"

#include <CLI/CLI.hpp>
#include <iomanip>
#include <limits>
#include <locale>
#include <map>
#include <memory>
#include <sstream>

namespace vxattr {

using vxattribute::AttributeValue;
using vxattribute::Difference;
using vxattribute::TraceFormatter;

namespace {

struct Options {
    std::string a;
    std::string b;
    bool quiet = false;
    bool brief = false;
    bool stat = false;
    std::string to; // empty: lines for people
    ReadOptions read;
};

TraceFormatter one_line_formatter(unsigned int elements, unsigned int textBytes,
                                  unsigned int dumpBytes) {
    return TraceFormatter::Composer()
        .sorted_names(true)
        .line_prefix({" ", true}) // between the attributes of a map
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

/// The value on one line; empty if there is none.
std::string text_of(std::optional<AttributeValue> const & value, bool isWhole) {
    return value ? one_line_trace(*value, isWhole) : "";
}

void print_line(std::ostream & stream, char mark, std::string const & path,
                std::string const & text) {
    if (!text.empty()) {
        stream << mark << ' ' << shown_path(path) << (path.empty() ? "" : ": ") << text << '\n';
    }
}

bool print_differences(std::ostream & stream, AttributeValue const & a, AttributeValue const & b) {
    bool areSame = true;
    visit_differences(a, b, [&](Difference const & difference) {
        areSame = false;
        std::string oldText = text_of(difference.old_value, false);
        std::string newText = text_of(difference.new_value, false);
        if (oldText == newText) { // they differ in what was left out
            oldText = text_of(difference.old_value, true);
            newText = text_of(difference.new_value, true);
        }
        print_line(stream, '-', difference.old_path, oldText);
        print_line(stream, '+', difference.path, newText);
    });
    return areSame;
}

/// Numbers of differences.
struct Counts {
    unsigned long long added = 0;
    unsigned long long removed = 0;
    unsigned long long changed = 0;

    void add(Difference const & difference) noexcept {
        ++(difference.is_added() ? added : difference.is_removed() ? removed : changed);
    }
};

void print_counts(std::ostream & stream, Counts const & counts, std::string const & path) {
    stream << std::setw(10) << counts.added << ' ' << std::setw(10) << counts.removed << ' '
           << std::setw(10) << counts.changed << "  " << path << '\n';
}

bool print_statistics(std::ostream & stream, AttributeValue const & a, AttributeValue const & b) {
    std::map<std::string, Counts> byFirstStep;
    Counts all;
    visit_differences(a, b, [&](Difference const & difference) {
        std::string const & path = difference.is_added() ? difference.path : difference.old_path;
        byFirstStep[path.substr(0, path.find('/'))].add(difference);
        all.add(difference);
    });
    stream << "     added    removed    changed  path\n";
    for (auto const & [step, counts] : byFirstStep) {
        print_counts(stream, counts, shown_path(step));
    }
    print_counts(stream, all, "in all");
    return byFirstStep.empty();
}

/// Prints what the options ask for. Returns whether the values are the same.
bool print(std::ostream & stream, Options const & options, AttributeValue const & a,
           AttributeValue const & b) {
    if (options.quiet || options.brief) {
        bool const areSame = is_identical(a, b);
        if (options.brief && !areSame) {
            stream << options.a << " and " << options.b << " differ\n";
        }
        return areSame;
    }
    return options.stat ? print_statistics(stream, a, b) : print_differences(stream, a, b);
}

int diff(Options const & options) {
    AttributeValue const a = read_value(options.a, options.read);
    AttributeValue const b = read_value(options.b, options.read);
    Output output("-");
    bool areSame = true;
    if (!options.to.empty()) {
        output.write(json_patch(a, b, options.b));
        areSame = is_identical(a, b);
    } else {
        OutputStream stream(output, true); // line feeds in names and strings add no lines
        areSame = print(stream, options, a, b);
        stream.finish();
    }
    output.commit();
    return areSame ? eExit_Good : eExit_Data;
}

} // namespace

void add_diff(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("diff", "Compare two values by name and path");
    command.add_option("A", options->a, "The one file")->required();
    command.add_option("B", options->b, "The other, in any form")->required();
    CLI::Option * const kinds[] = {
        command.add_flag("--quiet,-q", options->quiet,
                         "Print nothing; the exit code is the answer"),
        command.add_flag("--brief", options->brief, "Print one line if they differ"),
        command.add_flag("--stat", options->stat, "Print how many values differ, by first name"),
        command.add_option("--to", options->to, "Print a JSON Patch (RFC 6902) from A to B")
            ->check(CLI::IsMember({"json-patch"}))};
    for (CLI::Option * const kind : kinds) {
        for (CLI::Option * const other : kinds) {
            if (kind != other) {
                kind->excludes(other);
            }
        }
    }
    add_read_options(command, options->read);
    command.footer(
        "Prints \"- PATH: VALUE\" for what A has and \"+ PATH: VALUE\" for what B has. Lists "
        "are\naligned, so that one new element is one line. Exit code 1 when they differ.\n"
        "Examples:\n"
        "  vxattr diff old.json new.bin\n"
        "  vxattr diff old.json new.json --to json-patch");
    command.callback([options, &run] { run = [options] { return diff(*options); }; });
}

} // namespace vxattr
