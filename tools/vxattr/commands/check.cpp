#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/name_packages.h"
#include "vxattr/files/value_file.h"
#include "vxattribute/unknown_names.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <vector>

namespace vxattr {

using namespace vxattribute;

namespace {

struct Options {
    std::string in;
    std::string names;
    std::string optionalNames;
    ReadOptions read;
};

void add_queries(std::string const & file, unsigned short minCount, std::vector<Query> & queries) {
    AttributeNamePackage::Ptr const package = read_package(file);
    for (AttributeName const & name : *package) {
        queries.emplace_back(name, minCount);
    }
}

int check(Options const & options) {
    AttributeMap const config = read_map(options.in, options.read);
    std::vector<Query> queries;
    add_queries(options.names, 1, queries);
    if (!options.optionalNames.empty()) {
        add_queries(options.optionalNames, 0, queries);
    }
    Output output("-");
    bool isGood = true;
    auto const report = [&](char const * what, AttributeName const & name) {
        isGood = false;
        output.write(visible(options.in) + ": " + what + " setting '" + visible(name.value()) +
                     "'\n");
    };
    for (AttributeName const & name : unknown_names(config, queries)) {
        report("unknown", name);
    }
    for (Query const & query : queries) {
        if (query.min_count() != 0 && !config.exists(query.names().front())) {
            report("missing", query.names().front());
        }
    }
    output.commit();
    return isGood ? eExit_Good : eExit_Data;
}

} // namespace

void add_check(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command =
        *app.add_subcommand("check", "Find unknown and missing settings of a configuration");
    command.add_option("FILE", options->in, "Configuration, one map; - for standard input")
        ->required();
    command
        .add_option("--names", options->names,
                    "File of the names that must be there, one on a line; or of a package")
        ->required();
    command.add_option("--optional", options->optionalNames,
                       "File of further names that may be there");
    add_read_options(command, options->read);
    command.footer("Exit code 1 when a setting is unknown or missing. Names inside nested maps are "
                   "not looked at.\n"
                   "Example:\n"
                   "  vxattr check server.json --names required.names --optional optional.names");
    command.callback([options, &run] { run = [options] { return check(*options); }; });
}

} // namespace vxattr
