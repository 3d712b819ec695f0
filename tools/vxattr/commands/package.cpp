#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/name_packages.h"
#include "vxattr/files/value_file.h"
#include "vxattribute/collect_names.h"
#include "vxattribute/name_list.h"
#include "vxattribute/to_text.h"
#include "vxserialize/memory_writer.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace vxattr {

using namespace vxattribute;

namespace {

struct MakeOptions {
    std::string out;
    std::vector<std::string> ins;
    bool isStream = false;
    ReadOptions read;
};

int make(MakeOptions const & options) {
    AttributeNamePackage::Composer composer;
    for (std::string const & in : options.ins) {
        collect_names(read_value(in, options.read), composer);
    }
    AttributeNamePackage::Ptr const package = composer.compose();
    Output output(options.out);
    if (options.isStream) {
        vxserialize::MemoryWriter writer;
        package->write(writer);
        output.write(*writer.close_and_detach_memory_list());
    } else {
        output.write(name_list_to_text(*package, options.out));
    }
    output.commit();
    return eExit_Good;
}

int show(std::vector<std::string> const & files) {
    Output output("-");
    OutputStream stream(output, output.is_terminal());
    for (std::string const & file : files) {
        stream << to_text(*read_package(file)) << '\n';
    }
    stream.finish();
    output.commit();
    return eExit_Good;
}

void add_make(CLI::App & package, Run & run) {
    auto const options = std::make_shared<MakeOptions>();
    CLI::App & command =
        *package.add_subcommand("make", "Make a package of the names in sample files");
    command.add_option("OUT", options->out, "File of the package")->required();
    command.add_option("IN", options->ins, "Files whose names go into it")->required();
    command.add_flag("--stream", options->isStream,
                     "Write the package's binary stream, not a list of names");
    add_read_options(command, options->read);
    command.footer("Example:\n"
                   "  vxattr package make records.names monday.json tuesday.json");
    command.callback([options, &run] { run = [options] { return make(*options); }; });
}

void add_package_show(CLI::App & package, Run & run) {
    auto const files = std::make_shared<std::vector<std::string>>();
    CLI::App & command =
        *package.add_subcommand("show", "Show a package: id, size, names with their positions");
    command.add_option("FILE", *files, "Files of packages")->required();
    command.footer("Example:\n"
                   "  vxattr package show records.names");
    command.callback([files, &run] { run = [files] { return show(*files); }; });
}

} // namespace

void add_package(CLI::App & app, Run & run) {
    CLI::App & command =
        *app.add_subcommand("package", "Make and show packages of names, which shorten streams");
    command.require_subcommand(1);
    add_make(command, run);
    add_package_show(command, run);
}

} // namespace vxattr
