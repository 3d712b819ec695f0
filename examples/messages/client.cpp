#include "client.h"

#include "log.h"

#include "vxattribute/attribute_access.h"
#include "vxattribute/make_value.h"

#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace messages {

using namespace vxattribute;

Client::Client(std::string const & path, std::string const & name,
               AttributeNamePackageSet::Ptr packages)
    : m_connection(connect_to(path)) {
    std::vector<vxcore::Uuid> ids;
    for (auto const & package : *packages) {
        ids.push_back(package->id());
    }
    AttributeMap answer = ask(make_map({{name::kind, kind::hello},
                                        {name::client, name},
                                        {name::packages, make_list<vxcore::Uuid>(ids)}}));
    if (get<std::string>(answer, name::kind) == kind::want) {
        send_packages(answer, *packages);
        answer = receive();
    }
    if (get<std::string>(answer, name::kind) != kind::ready) {
        throw std::runtime_error("the server is not ready");
    }
    m_connection.use_packages(std::move(packages));
}

void Client::send_packages(AttributeMapBase const & wanted,
                           AttributeNamePackageSet const & packages) {
    for (vxcore::Uuid const & id : get_list<vxcore::Uuid>(wanted, name::packages)) {
        auto const package = packages.find(id);
        if (package == packages.end()) {
            throw std::runtime_error("the server asks for a foreign package");
        }
        std::vector<std::string> names;
        for (AttributeName const & name : **package) {
            names.push_back(name.value());
        }
        send(make_map({{name::kind, kind::package}, {name::names, make_list(names)}}));
        log("client",
            "sends package " + id.as_string() + " of " + std::to_string(names.size()) + " names");
    }
}

void Client::send(AttributeMapBase const & message) {
    m_connection.send(message);
    while (m_connection.output_size() >= limit::output) {
        flush();
        if (m_connection.output_size() >= limit::output) {
            wait();
        }
    }
}

AttributeMap Client::ask(AttributeMapBase const & message) {
    send(message);
    return receive();
}

AttributeMap Client::receive() {
    for (;;) {
        flush();
        if (auto message = next()) {
            return *std::move(message);
        }
        wait();
        if (!m_connection.receive()) {
            throw std::runtime_error("the server has closed the connection");
        }
    }
}

/// The next message that has arrived; raises if the server says why it closes the connection.
std::optional<AttributeMap> Client::next() {
    auto message = m_connection.next();
    if (message && get<std::string>(*message, name::kind) == kind::refused) {
        throw std::runtime_error("refused: " + get<std::string>(*message, name::reason));
    }
    return message;
}

void Client::flush() {
    try {
        m_connection.flush();
    } catch (std::system_error const &) {
        m_connection.receive(); // the reason may be in what it sent last
        next();
        throw;
    }
}

void Client::wait() {
    pollfd polled{m_connection.descriptor(), m_connection.events(), 0};
    while (::poll(&polled, 1, -1) < 0) {
        if (errno != EINTR) {
            throw_errno("poll");
        }
    }
}

} // namespace messages
