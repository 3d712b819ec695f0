#include "connection.h"

#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>

namespace messages {

namespace {

using namespace vxattribute;

constexpr std::size_t readSize = 64 * 1024;

/// True when a call on a non-blocking socket may be tried again later.
bool is_for_later() noexcept {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

} // namespace

Connection::Connection(Descriptor socket)
    : m_socket(std::move(socket)), m_messages(nullptr, {.max_size = limit::message}) {}

void Connection::use_packages(AttributeNamePackageSet::Ptr packages) {
    m_messages.set_packages(packages);
    m_packages = std::move(packages);
}

void Connection::send(AttributeMapBase const & message) {
    vxcore::StringSink sink(m_output);
    write_message(sink, message, m_packages);
}

void Connection::flush() {
    if (m_output.empty()) {
        return;
    }
    ssize_t const size =
        ::send(m_socket.get(), m_output.data(), m_output.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (size < 0 && !is_for_later()) {
        throw_errno("send");
    }
    if (size > 0) {
        m_output.erase(0, static_cast<std::size_t>(size));
    }
}

bool Connection::receive() {
    char buffer[readSize];
    ssize_t const size = ::recv(m_socket.get(), buffer, sizeof buffer, MSG_DONTWAIT);
    if (size < 0 && !is_for_later()) {
        throw_errno("receive");
    }
    if (size > 0) {
        m_messages.feed({buffer, static_cast<std::size_t>(size)});
    }
    if (size == 0) {
        m_messages.finish();
    }
    return size != 0;
}

std::optional<AttributeMap> Connection::next() {
    auto message = m_messages.next();
    // Many names take memory only until the map is dropped: they are not kept, but it is no
    // message.
    if (message && message->size() > limit::attributes) {
        throw std::runtime_error("a message of " + std::to_string(message->size()) + " attributes");
    }
    return message;
}

short Connection::events() const noexcept {
    int const input = m_output.size() < limit::output ? POLLIN : 0;
    int const output = m_output.empty() ? 0 : POLLOUT;
    return static_cast<short>(input | output);
}

} // namespace messages
