// Reads a server's settings from a JSON file into a struct, and says all that is wrong with them:
//
//     settings FILE
//     settings --help

#include "vxattribute/bind.h"
#include "vxattribute/json_text.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

namespace settings {

using namespace vxattribute;

enum class TraceLevel { never, note, verbose };

/// The settings, with their defaults.
struct Server {
    std::string host;
    unsigned short port = 8080;
    std::vector<std::string> paths = {"/"};
    double timeout = 30;
    bool isVerbose = false;
    TraceLevel traceLevel = TraceLevel::note;
    std::optional<std::string> password;
};

/// How they are called in the file, and what they may be. Made once, since it has all the names.
Binding<Server> const & binding() {
    static Binding<Server> const result = bind<Server>(
        field("host", &Server::host, "Where it listens").alternate("server").required(),
        field("port", &Server::port, "The TCP port").alternate("listen").at_least(1),
        field("paths", &Server::paths, "What it serves").count(1, 4),
        field("limits/timeout", &Server::timeout, "Seconds to wait for a client").range(0, 3600),
        field("verbose", &Server::isVerbose, "Log each request"),
        field("trace_level", &Server::traceLevel,
              {{"never", TraceLevel::never},
               {"note", TraceLevel::note},
               {"verbose", TraceLevel::verbose}},
              "How much to trace"),
        field("password", &Server::password, "Demanded from clients").secret());
    return result;
}

AttributeMap read_config(char const * path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot be opened");
    }
    std::string const text((std::istreambuf_iterator<char>(file)), {});
    return value_from_json(text).get<AttributeMap>();
}

void show(Server const & server) {
    std::cout << "host " << server.host << '\n' << "port " << server.port << '\n';
    for (std::string const & path : server.paths) {
        std::cout << "path " << path << '\n';
    }
    std::cout << "timeout " << server.timeout << " s\n"
              << "verbose " << (server.isVerbose ? "yes" : "no") << '\n'
              << "trace level " << static_cast<int>(server.traceLevel) << '\n';
}

} // namespace settings

int main(int argc, char ** argv) {
    if (argc != 2) {
        std::cerr << "usage: settings FILE\n";
        return 2;
    }
    if (argv[1] == std::string_view("--help")) {
        std::cout << settings::binding().settings().describe();
        return 0;
    }
    try {
        settings::show(settings::binding().read(settings::read_config(argv[1])));
        return 0;
    } catch (std::exception const & e) {
        std::cerr << "settings: " << argv[1] << ": " << e.what() << '\n';
    }
    return 1;
}
