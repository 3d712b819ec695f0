// Reads a server's settings from a JSON file, with alternative names and limits, and explains what
// is wrong with them: settings FILE.

#include "server_settings.h"

#include "vxattribute/json_text.h"
#include "vxcore/error_exception.h"

#include <fstream>
#include <iostream>
#include <iterator>

namespace settings {

using namespace vxattribute;

AttributeMap read_config(char const * path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot be opened");
    }
    std::string const text((std::istreambuf_iterator<char>(file)), {});
    return value_from_json(text).get<AttributeMap>();
}

void show(ServerSettings const & server) {
    std::cout << "host " << server.host << '\n' << "port " << server.port << '\n';
    for (std::string const & path : server.paths) {
        std::cout << "path " << path << '\n';
    }
    std::cout << "timeout " << server.timeout << " s\n"
              << "verbose " << (server.isVerbose ? "yes" : "no") << '\n'
              << "trace level " << int{static_cast<signed char>(server.traceLevel)} << '\n';
}

void run(char const * path) {
    AttributeMap const config = read_config(path);
    for (AttributeName const & name : unknown_settings(config)) {
        std::cerr << "settings: " << path << ": nothing asks for \"" << name << "\"\n";
    }
    show(read_settings(config));
}

} // namespace settings

int main(int argc, char ** argv) {
    if (argc != 2) {
        std::cerr << "usage: settings FILE\n";
        return 2;
    }
    try {
        settings::run(argv[1]);
        return 0;
    } catch (vxcore::ErrorException const & e) {
        std::cerr << "settings: " << argv[1] << ": " << settings::explain(e.info()) << '\n';
    } catch (std::exception const & e) {
        std::cerr << "settings: " << argv[1] << ": " << e.what() << '\n';
    }
    return 1;
}
