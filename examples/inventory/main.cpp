// Reads a package database into a map of maps, sends the map through both stream forms and back,
// and renders one package. With --package, sends it with names as numbers too. This is the worked
// example: it has every step of a program that uses attributes.

#include "coded_names.h"
#include "package_map.h"
#include "step_timer.h"

#include "vxattribute/attribute_access.h"
#include "vxattribute/bytes.h"
#include "vxattribute/sorted_by_name.h"
#include "vxattribute/text_form.h"
#include "vxattribute/trace_formatter.h"

#include <exception>
#include <iostream>
#include <string>
#include <string_view>

namespace {

using namespace vxattribute;

struct Options {
    std::string database = "/var/lib/dpkg/status";
    std::string package; // empty: none named
    bool isCoded = false;
};

bool parse_options(int argc, char ** argv, Options & options) {
    for (int i = 1; i < argc; ++i) {
        std::string_view const argument = argv[i];
        if (argument == "--database" && i + 1 < argc) {
            options.database = argv[++i];
        } else if (argument == "--package") {
            options.isCoded = true;
        } else if (!argument.empty() && argument[0] != '-' && options.package.empty()) {
            options.package = argument;
        } else {
            return false;
        }
    }
    return true;
}

/// Counts the attributes of the map and of all maps in it.
unsigned int count_attributes(AttributeMapBase const & map) {
    unsigned int count = map.size();
    for (auto const & [name, value] : map) {
        if (value.type() == ValueTypeId::typeAttributeMap) {
            for (AttributeMap const & inner : elements<AttributeMap>(value)) {
                count += count_attributes(inner);
            }
        }
    }
    return count;
}

/// Returns the package named in the options, with or without its architecture. When none is named,
/// returns the first package in alphabetical order that has a homepage. Returns null when there is
/// none.
AttributeMap const * choose_package(AttributeMap const & packages, std::string const & wanted) {
    for (auto const & element : sorted_by_name(packages)) {
        auto const & package = element->second.get<AttributeMap>();
        if (wanted.empty() ? package.exists(inventory::names::homepage)
                           : element->first.value() == wanted ||
                                 get<std::string>(package, inventory::names::name) == wanted) {
            return &package;
        }
    }
    return nullptr;
}

void run(Options const & options) {
    inventory::StepTimer timer;
    inventory::ControlFile file(options.database);
    AttributeMap const packages = inventory::read_inventory(file);
    unsigned int const attributes = count_attributes(packages);
    timer.print("read source", file.size(), attributes);

    std::string const binary = to_bytes(packages);
    timer.print("write binary", binary.size(), attributes);

    AttributeMap const fromBinary = map_from_bytes(binary);
    timer.print("read binary", binary.size(), attributes);

    std::string const text = to_text_form(packages);
    timer.print("write text", text.size(), attributes);

    AttributeMap const fromText = map_from_text_form(text);
    timer.print("read text", text.size(), attributes);

    if (fromBinary != packages || fromText != packages) {
        inventory::fail(options.database, "what was read back differs");
    }
    if (options.isCoded) {
        inventory::show_coded(packages, binary.size(), attributes, timer);
    }
    if (AttributeMap const * const package = choose_package(packages, options.package)) {
        package->write_trace(std::cout, defaultTraceFormatter, 0);
        std::cout << "\n\n";
    } else if (!options.package.empty()) {
        inventory::fail(options.database, "there is no package " + options.package);
    }
    std::cout << "inventory: " << packages.size() << " packages, " << attributes
              << " attributes, source " << file.size() << " bytes, binary " << binary.size()
              << " bytes, text " << text.size() << " bytes, read back equal\n";
}

} // namespace

int main(int argc, char ** argv) {
    Options options;
    if (!parse_options(argc, argv, options)) {
        std::cerr << "usage: inventory [--database FILE] [--package] [PACKAGE]\n";
        return 2;
    }
    try {
        run(options);
    } catch (std::exception const & e) { // what() of an ErrorException is its complete message
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
