// Reads a struct of ten fields from a map and writes it as one: with a binding, and by hand with
// names that are made once.

#include "measure.h"

#include "vxattribute/attribute_access.h"
#include "vxattribute/bind.h"

namespace vxbench {

namespace {

using namespace vxattribute;

struct Server {
    std::string host = "localhost";
    std::string user;
    long long port = 8080;
    long long retries = 3;
    long long connections = 100;
    double timeout = 30;
    double rate = 0.5;
    bool isVerbose = false;
    bool isOpen = true;
    std::vector<std::string> paths = {"/"};
};

Server const sample = {.host = "host.of.some.length.example.org",
                       .user = "nobody",
                       .port = 443,
                       .retries = 70,
                       .connections = 5000,
                       .timeout = 7.5,
                       .rate = 2,
                       .isVerbose = true,
                       .isOpen = false,
                       .paths = {"/", "/status", "/a/longer/path/than/fits/inside"}};

Binding<Server> make_binding() {
    return bind<Server>(field("host", &Server::host).required(), field("user", &Server::user),
                        field("port", &Server::port), field("retries", &Server::retries),
                        field("connections", &Server::connections),
                        field("timeout", &Server::timeout), field("rate", &Server::rate),
                        field("verbose", &Server::isVerbose), field("open", &Server::isOpen),
                        field("paths", &Server::paths));
}

struct Names {
    AttributeName host{"host"}, user{"user"}, port{"port"}, retries{"retries"},
        connections{"connections"}, timeout{"timeout"}, rate{"rate"}, verbose{"verbose"},
        open{"open"}, paths{"paths"};
};

Server read_by_hand(Names const & names, AttributeMap const & map) {
    Server server;
    server.host = get<std::string>(map, names.host);
    server.user = get_or<std::string>(map, names.user, server.user);
    server.port = get_or<long long>(map, names.port, server.port);
    server.retries = get_or<long long>(map, names.retries, server.retries);
    server.connections = get_or<long long>(map, names.connections, server.connections);
    server.timeout = get_or<double>(map, names.timeout, server.timeout);
    server.rate = get_or<double>(map, names.rate, server.rate);
    server.isVerbose = get_or<bool>(map, names.verbose, server.isVerbose);
    server.isOpen = get_or<bool>(map, names.open, server.isOpen);
    if (map.exists(names.paths)) {
        auto const paths = get_list<std::string>(map, names.paths);
        server.paths.assign(paths.begin(), paths.end());
    }
    return server;
}

AttributeMap write_by_hand(Names const & names, Server const & server) {
    return make_map({{names.host, server.host},
                     {names.user, server.user},
                     {names.port, server.port},
                     {names.retries, server.retries},
                     {names.connections, server.connections},
                     {names.timeout, server.timeout},
                     {names.rate, server.rate},
                     {names.verbose, server.isVerbose},
                     {names.open, server.isOpen},
                     {names.paths, make_list(std::span<std::string const>(server.paths))}});
}

/// Registers `work` in both ways. Each action is called with what knows the names, and the map.
template <typename Bound, typename ByHand>
void add_pair(char const * work, Bound bound, ByHand by_hand) {
    add(work, "vxattribute", [bound](benchmark::State & state) {
        Binding<Server> const binding = make_binding();
        AttributeMap const map = binding.write(sample);
        measure(state, 10, [&] { benchmark::DoNotOptimize(bound(binding, map)); });
    });
    add(work, "by_hand", [by_hand](benchmark::State & state) {
        Names const names;
        AttributeMap const map = write_by_hand(names, sample);
        measure(state, 10, [&] { benchmark::DoNotOptimize(by_hand(names, map)); });
    });
}

} // namespace

void add_bind_benchmarks() {
    add_pair(
        "bind_read",
        [](Binding<Server> const & binding, AttributeMap const & map) { return binding.read(map); },
        read_by_hand);
    add_pair(
        "bind_write",
        [](Binding<Server> const & binding, AttributeMap const &) { return binding.write(sample); },
        [](Names const & names, AttributeMap const &) { return write_by_hand(names, sample); });
}

} // namespace vxbench
