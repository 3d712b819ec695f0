#pragma once

#include "protocol.h"
#include "socket.h"

#include "vxattribute/message.h"

#include <optional>
#include <string>

namespace messages {

/// One end of a connection: messages in and out of a non-blocking socket.
///
/// Nothing here waits. `poll` says when there is something to do:
///
///     connection.send(message);
///     connection.flush();
///     while (connection.receive()) {            // false: the peer has ended the connection
///         while (auto message = connection.next()) { ... }
///         poll(...);                            // for connection.events()
///     }
///
/// Memory. What was received is at most one message and one read; `limit::message` bounds the
/// former. Output grows with what is sent: a caller that answers should do so only below
/// `limit::output`.
class Connection {
  public:
    explicit Connection(Descriptor socket);

    int descriptor() const noexcept { return m_socket.get(); }

    /// The packages of the messages that follow. Without any, names are plain.
    void use_packages(AttributeNamePackageSet::Ptr packages);

    /// Adds a message to the output. Nothing is written before `flush`.
    void send(vxattribute::AttributeMapBase const & message);

    /// Writes as much of the output as the socket takes.
    ///
    /// @raises std::system_error: the peer is gone.
    void flush();

    /// Bytes of output that wait to be written.
    std::size_t output_size() const noexcept { return m_output.size(); }

    /// Reads once what has arrived. Returns false when the peer has ended the connection.
    ///
    /// @raises error.vxserialize.data: it ended it inside a message.
    bool receive();

    /// The next message that has arrived as a whole.
    ///
    /// @raises As MessageReader: the bytes are no message, or too many, or coded with a package
    /// that
    ///         is not in use. std::runtime_error: more than `limit::attributes`.
    std::optional<vxattribute::AttributeMap> next();

    /// True if a part of a message has arrived.
    bool is_inside_message() const noexcept { return m_messages.buffered() != 0; }

    /// What to wait for with `poll`: output that can be written, and input while there is not too
    /// much output.
    short events() const noexcept;

  private:
    Descriptor m_socket;
    AttributeNamePackageSet::Ptr m_packages;
    vxattribute::MessageReader m_messages;
    std::string m_output;
};

} // namespace messages
