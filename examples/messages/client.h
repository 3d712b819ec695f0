#pragma once

#include "connection.h"

#include <string>

namespace messages {

/// The client's side of a connection. It waits where there is nothing else to do.
///
///     Client client("/run/messages", "ada", AttributeNamePackageSet::create(package));
///     client.send(report);
///     AttributeMap const total = client.ask(question);
class Client {
  public:
    /// Connects, greets the server and sends it the packages that it lacks.
    ///
    /// @param packages  Those that messages may be coded with.
    /// @raises std::system_error: no server there, or it is gone. std::runtime_error: it has
    ///         refused something, also in the other functions.
    Client(std::string const & path, std::string const & name,
           AttributeNamePackageSet::Ptr packages);

    /// Sends a message some time: several go out together. Waits while the server does not take
    /// them.
    void send(vxattribute::AttributeMapBase const & message);

    /// Sends a message, and all before it, and waits for the answer.
    vxattribute::AttributeMap ask(vxattribute::AttributeMapBase const & message);

  private:
    vxattribute::AttributeMap receive();
    std::optional<vxattribute::AttributeMap> next();
    void flush();
    void wait();
    void send_packages(vxattribute::AttributeMapBase const & wanted,
                       AttributeNamePackageSet const & packages);

    Connection m_connection;
};

} // namespace messages
