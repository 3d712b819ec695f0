#include "socket.h"

#include <cerrno>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace messages {

namespace {

sockaddr_un address_of(std::string const & path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        throw std::runtime_error(path + ": too long for a socket");
    }
    path.copy(address.sun_path, path.size());
    return address;
}

/// Calls `bind` or `connect`, and returns whether that succeeded.
template <typename Call>
bool with_address(Call call, Descriptor const & socket, std::string const & path) {
    sockaddr_un const address = address_of(path);
    return call(socket.get(), reinterpret_cast<sockaddr const *>(&address), sizeof address) == 0;
}

Descriptor make_socket() {
    Descriptor result(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (result.get() < 0) {
        throw_errno("socket");
    }
    return result;
}

} // namespace

Descriptor::~Descriptor() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

Descriptor listen_at(std::string const & path) {
    if (with_address(::connect, make_socket(), path)) {
        throw std::runtime_error(path + ": another server listens here");
    }
    if (errno == ECONNREFUSED) {
        ::unlink(path.c_str());
    }
    Descriptor listener = make_socket();
    ::fchmod(listener.get(), S_IRUSR | S_IWUSR); // the file of the socket gets these permissions
    if (!with_address(::bind, listener, path) || ::listen(listener.get(), SOMAXCONN) != 0) {
        throw_errno(path);
    }
    return listener;
}

Descriptor accept_from(Descriptor const & listener) {
    return Descriptor(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}

Descriptor connect_to(std::string const & path) {
    Descriptor result = make_socket();
    if (!with_address(::connect, result, path)) {
        throw_errno(path);
    }
    return result;
}

void throw_errno(std::string const & what) {
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace messages
