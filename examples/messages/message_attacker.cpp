// Breaks the rules of a message_server, to show that this harms nobody else:
//
//     message_attacker SOCKET ATTACK
//
// Prints the reason that the server returns. Fails if the server does not end the connection.

#include "log.h"
#include "protocol.h"
#include "report.h"
#include "socket.h"

#include "vxattribute/attribute_access.h"
#include "vxattribute/make_value.h"
#include "vxattribute/message.h"
#include "vxattribute/seal.h"
#include "vxserialize/frame.h"

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <map>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>

namespace messages {

using namespace vxattribute;
using namespace std::string_literals;

std::string bytes_of(AttributeMapBase const & message, AttributeNamePackage::Ptr const & package) {
    std::string bytes;
    vxcore::StringSink sink(bytes);
    write_message(sink, message, AttributeNamePackageSet::create(package));
    return bytes;
}

std::string frame_of(std::string_view content) {
    std::string bytes;
    vxcore::StringSink sink(bytes);
    vxserialize::write_frame(sink, content);
    return bytes;
}

std::string hello(AttributeValue const & packages) {
    return bytes_of(make_map({{name::kind, kind::hello},
                              {name::client, "mallory\npeer 1: has left"},
                              {name::packages, packages}}),
                    nullptr);
}

/// The greeting of a peer without packages, which may send messages right away.
std::string hello() {
    return hello(make_list<vxcore::Uuid>({}));
}

std::string repeat(std::string_view text, unsigned int count) {
    std::string result;
    while (count-- > 0) {
        result += text;
    }
    return result;
}

std::string many_names() {
    MutableAttributeMap map;
    for (int i = 0; i < 10'000; ++i) {
        map.add("name" + std::to_string(i), i);
    }
    return bytes_of(map, nullptr);
}

/// An answer to the question for a package, with other names.
std::string wrong_package() {
    return bytes_of(make_map({{name::kind, kind::package},
                              {name::names, make_list<std::string>({"host", "port"})}}),
                    nullptr);
}

std::string wrong_reports() {
    MutableAttributeMap report = to_message(Report(), 2);
    report.add("load", "high");
    return repeat(bytes_of(report, nullptr), limit::dropped_reports + 1);
}

std::string forged_secret() {
    return bytes_of(make_map({{name::kind, kind::secret},
                              {name::about, "backup password"},
                              {name::value, seal("guess", vxcrypto::Key::random(),
                                                 {.annotation = "backup password"})}}),
                    nullptr);
}

/// What the attacker sends, one after the other. It reads no answer meanwhile.
std::string attack_of(std::string const & name) {
    std::string const total = bytes_of(make_map({{name::kind, kind::total}}), nullptr);
    std::string const unknown = hello(vxcore::Uuid::random());
    std::map<std::string, std::string> const attacks = {
        {"oversized", "\x40\0\0\0"s + repeat("x", 1000)},
        {"noise", frame_of(repeat("\xFF\x80\xC3", 50))},
        {"cut", "\0\0\0\x64"s + "cut"},
        {"stalled", "\0\0\0\x64"s + "stalled"},
        {"mute", ""},
        {"silent_package", unknown},
        {"wrong_package", unknown + wrong_package()},
        {"foreign_package", hello() + bytes_of(to_message(Report(), 1), report_package(1))},
        {"many_names", hello() + many_names()},
        {"deep", hello() + frame_of(repeat("\xA1\x01\x61\x8C\xA1", 20'000))},
        {"wrong_reports", hello() + wrong_reports()},
        {"forged_secret", hello() + forged_secret()},
        {"deaf", hello() + repeat(total, 200'000)},
    };
    auto const found = attacks.find(name);
    if (found == attacks.end()) {
        throw std::runtime_error("there is no attack " + name);
    }
    return found->second;
}

void wait_for(Descriptor const & socket, short events) {
    constexpr int longest = 60'000; // milliseconds
    pollfd polled{socket.get(), events, 0};
    if (::poll(&polled, 1, longest) <= 0) {
        throw std::runtime_error("the server does not end the connection");
    }
}

/// Sends as much as the server takes until it ends the connection.
void send_all(Descriptor const & socket, std::string_view bytes) {
    while (!bytes.empty()) {
        wait_for(socket, POLLOUT);
        ssize_t const size = ::send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (size < 0 && errno != EAGAIN) {
            return;
        }
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    }
}

/// Reads answers until the server ends the connection, and prints its reason.
void read_all(Descriptor const & socket) {
    MessageReader reader;
    char buffer[4096];
    for (;;) {
        wait_for(socket, POLLIN);
        ssize_t const size = ::recv(socket.get(), buffer, sizeof buffer, 0);
        if (size == 0 || (size < 0 && errno != EAGAIN)) {
            return;
        }
        reader.feed({buffer, static_cast<std::size_t>(std::max<ssize_t>(size, 0))});
        while (auto const message = reader.next()) {
            if (auto const * const reason = find<std::string>(*message, name::reason)) {
                log("attacker", "is refused: " + *reason);
            }
        }
    }
}

void run(std::string const & path, std::string const & attack) {
    std::string const bytes = attack_of(attack);
    Descriptor const socket = connect_to(path);
    send_all(socket, bytes);
    if (attack == "cut") {
        ::shutdown(socket.get(), SHUT_WR);
    }
    read_all(socket);
}

} // namespace messages

int main(int argc, char ** argv) {
    if (argc != 3) {
        std::cerr << "usage: message_attacker SOCKET ATTACK\n";
        return 2;
    }
    try {
        messages::run(argv[1], argv[2]);
        return 0;
    } catch (std::exception const & e) {
        std::cerr << "message_attacker: " << messages::explain(e) << '\n';
        return 1;
    }
}
