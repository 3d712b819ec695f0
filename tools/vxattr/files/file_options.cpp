#include "vxattr/files/file_options.h"

#include <CLI/CLI.hpp>

namespace vxattr {

void add_package_option(CLI::App & command, NamePackages & packages) {
    command
        .add_option("--package", packages.files,
                    "File of a name package that the streams use; may be given again")
        ->take_all()
        ->expected(1)
        ->allow_extra_args(false); // which would also take the "--" after the file
}

void add_max_size_option(CLI::App & command, unsigned long long & maxSize) {
    constexpr unsigned long long limit = 0xFFFFFFFF; // bytes of one binary stream
    command.add_option("--max-size", maxSize, "Most bytes of an input")
        ->check(CLI::Range(1ull, limit))
        ->capture_default_str();
}

void add_read_options(CLI::App & command, ReadOptions & options) {
    command
        .add_option("--from", options.from, "Form of the input: json, binary or text; else guessed")
        ->check(CLI::IsMember({"json", "binary", "text"}));
    add_package_option(command, options.packages);
    add_max_size_option(command, options.maxSize);
    command.add_flag("--strict", options.strict,
                     "What reading JSON would lose is a failure, not a notice");
}

void add_write_options(CLI::App & command, WriteOptions & options) {
    command
        .add_option("--to", options.to,
                    "Form of the output: json, binary, text or trace; else by its name's ending "
                    "(.json, .bin, .txt)")
        ->check(CLI::IsMember({"json", "binary", "text", "trace"}));
    command
        .add_option("--indent", options.indent, "Blanks per level of JSON and text; 0: one line")
        ->check(CLI::Range(0u, 64u));
    command.add_flag("--sorted", options.sorted, "Names in the order of their bytes");
    command.add_flag("--plain-names", options.plainNames, "Do not code names on output");
    command.add_option("--wrap", options.wrap,
                       "Put a value that JSON shows as a scalar into an object, under that name");
}

} // namespace vxattr
