// Takes messages from any number of peers over a Unix-domain socket:
//
//     message_server SOCKET FOLDER [PATIENCE]
//
// FOLDER keeps the packages of names that peers have brought, and the key that opens sealed values:
// both are there at the next start. A peer that lets the server wait for more than PATIENCE seconds
// is refused. protocol.h describes the messages, server.h how they are taken.

#include "server.h"

#include "vxfile/key_file.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace messages {

/// The key in the file; makes one at the first start.
vxcrypto::Key key_of(std::string const & path) {
    if (!std::filesystem::exists(path)) {
        vxfile::write_key_file(path, vxcrypto::Key::random());
    }
    return vxfile::read_key_file(path);
}

void run(std::string const & socket, std::string const & folder, double patience) {
    PackageStore packages(folder);
    std::chrono::duration<double> const seconds(patience);
    Server server(socket, {std::move(packages), key_of(folder + "/key"),
                           std::chrono::duration_cast<Clock::duration>(seconds)});
    server.run();
}

} // namespace messages

int main(int argc, char ** argv) {
    double const patience = argc == 4 ? std::atof(argv[3]) : 10;
    if (argc < 3 || argc > 4 || !(patience > 0 && patience < 1000)) {
        std::cerr << "usage: message_server SOCKET FOLDER [PATIENCE]\n";
        return 2;
    }
    try {
        messages::run(argv[1], argv[2], patience);
        return 0;
    } catch (std::exception const & e) {
        std::cerr << "message_server: " << messages::explain(e) << '\n';
        return 1;
    }
}
