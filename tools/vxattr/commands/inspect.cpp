#include "vxattr/commands/commands.h"
#include "vxattr/commands/stream_walk.h"
#include "vxattr/failure.h"
#include "vxattr/files/file_options.h"
#include "vxattr/files/input.h"
#include "vxattr/files/output.h"
#include "vxattribute/attribute_value_type.h"
#include "vxcore/text_conversion.h"
#include "vxserialize/element_kind.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>

namespace vxattr {

using namespace vxattribute;

namespace {

struct Options {
    std::string in;
    NamePackages packages;
    unsigned long long maxSize = 1ull << 30;
};

char const * kind_name(unsigned int kind) {
    constexpr char const * names[] = {
        "?",      "null",   "boolean",       "integer",       "unsigned",
        "double", "string", "absolute time", "relative time", "uuid",
        "binary", "list",   "record"};
    return kind < std::size(names) ? names[kind] : names[0];
}

std::string right_aligned(std::string text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string line_of(StreamElement const & element) {
    std::string const length =
        element.length == StreamElement::unknown ? "?" : vxcore::to_string(element.length);
    std::string line = right_aligned(vxcore::to_string(element.offset), 10) +
                       right_aligned(length, 11) + "  " + std::string(2 * element.depth, ' ') +
                       kind_name(element.kind);
    if (element.tag >= 0) {
        line += "  tag " + vxcore::to_string(static_cast<int>(element.tag)) + ' ' +
                ValueTypeId::from_id(static_cast<ValueTypeId::EId>(element.tag)).name();
    }
    if (!element.name.empty()) {
        line += "  " + quoted_name(element.name.value());
    }
    return line + '\n';
}

/// The offset in bytes at which the stream breaks. The broken element is the innermost one that was
/// not read to its end.
unsigned int offset_of_break(std::vector<StreamElement> const & elements) {
    auto const last = std::find_if(elements.rbegin(), elements.rend(), [](auto const & element) {
        return element.length == StreamElement::unknown;
    });
    bool const isInside = last != elements.rend() && last != elements.rbegin();
    if (isInside) { // the last whole element is good; what follows it is not
        return elements.back().offset + elements.back().length;
    }
    return elements.empty() ? 0 : elements.back().offset;
}

int inspect(Options const & options) {
    Input input(options.in, options.maxSize);
    StreamWalk walk{vxserialize::MemoryReader(input.read_all()), options.packages.set()};
    std::optional<std::string> failure;
    try {
        walk.walk();
    } catch (std::bad_alloc const &) {
        throw; // says nothing about the stream
    } catch (std::exception const & e) {
        failure = message_of(e);
    }
    Output output("-");
    output.write("    offset     length  kind, type and name\n");
    for (StreamElement const & element : walk.elements()) {
        output.write(line_of(element));
    }
    output.commit();
    if (failure) {
        throw Failure(input.place(), "breaks at byte " +
                                         vxcore::to_string(offset_of_break(walk.elements())) +
                                         ": " + *failure);
    }
    return eExit_Good;
}

} // namespace

void add_inspect(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand(
        "inspect", "List the elements of a binary stream, up to where it breaks");
    command.add_option("FILE", options->in, "Binary file, - for standard input")->required();
    add_package_option(command, options->packages);
    add_max_size_option(command, options->maxSize);
    command.footer("Offsets and lengths are bytes; an element that breaks off has the length ?.\n"
                   "Example:\n"
                   "  vxattr inspect records.bin --package records.names");
    command.callback([options, &run] { run = [options] { return inspect(*options); }; });
}

} // namespace vxattr
