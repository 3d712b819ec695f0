// Sends reports to a message_server:
//
//     message_client SOCKET KEYFILE NAME VERSION COUNT
//
// VERSION, 1 or 2, is that of the reports and of the package that has their names. One sealed value
// goes first; KEYFILE has the key of the server. Prints what the server has counted, and the rate.

#include "client.h"
#include "log.h"
#include "report.h"

#include "vxattribute/attribute_access.h"
#include "vxattribute/make_value.h"
#include "vxattribute/number_access.h"
#include "vxattribute/seal.h"
#include "vxfile/key_file.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace messages {

using namespace vxattribute;

void send_secret(Client & client, vxcrypto::Key const & key) {
    std::string const about = "backup password";
    client.send(make_map({{name::kind, kind::secret},
                          {name::about, about},
                          {name::value, seal("correct horse", key, {.annotation = about})}}));
}

/// Sends the reports, asks what the server made of them, and returns how many it has taken.
unsigned long long send_reports(Client & client, int version, unsigned long long count) {
    Report report;
    report.host = "db3.example.org";
    report.process = "indexer";
    report.pid = ::getpid();
    report.run = vxcore::Uuid::random();
    report.tags = {"storage", "night"};
    Pace const pace;
    for (unsigned long long i = 0; i < count; ++i) {
        report.sequence = static_cast<long long>(i);
        report.load = static_cast<double>(i % 128) / 128;
        report.memory = 200'000'000 + i;
        report.time = vxcore::AbsoluteTime::now();
        client.send(to_message(report, version));
    }
    AttributeMap const total = client.ask(make_map({{name::kind, kind::total}}));
    log("client", "sent " + pace.text(count));
    auto const taken = get_number<unsigned long long>(total, name::reports);
    log("client", "the server has taken " + std::to_string(taken) + ", the highest load is " +
                      std::to_string(get_number_or<double>(total, name::highest_load, 0)));
    return taken;
}

void run(char ** arguments) {
    std::string const name = arguments[3];
    int const version = std::atoi(arguments[4]);
    unsigned long long const count = std::strtoull(arguments[5], nullptr, 10);
    auto const packages = AttributeNamePackageSet::create(report_package(version));

    Client client(arguments[1], name, packages);
    send_secret(client, vxfile::read_key_file(arguments[2]));
    if (send_reports(client, version, count) != count) {
        throw std::runtime_error("reports are lost");
    }
}

} // namespace messages

int main(int argc, char ** argv) {
    if (argc != 6) {
        std::cerr << "usage: message_client SOCKET KEYFILE NAME VERSION COUNT\n";
        return 2;
    }
    try {
        messages::run(argv);
        return 0;
    } catch (std::exception const & e) {
        std::cerr << "message_client: " << messages::explain(e) << '\n';
        return 1;
    }
}
