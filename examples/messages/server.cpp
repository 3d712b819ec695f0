#include "server.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <iterator>
#include <sys/resource.h>
#include <sys/signalfd.h>

namespace messages {

namespace {

/// A descriptor that is readable when the process is to end.
Descriptor catch_signals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    Descriptor result(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (result.get() < 0) {
        throw_errno("signalfd");
    }
    return result;
}

long peak_memory_in_kib() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

Server::Server(std::string const & path, ServerState state)
    : m_state(std::move(state)), m_signals(catch_signals()), m_listener(listen_at(path)) {
    log("server", "knows " + std::to_string(m_state.packages.size()) + " packages");
    log("server", "listens at " + path);
}

void Server::run() {
    do {
        wait();
        serve_peers();
        if (m_polled[1].revents != 0) {
            accept_peers();
        }
    } while (m_polled[0].revents == 0);
    log("server", "took " + std::to_string(m_state.reports) + " reports of " +
                      std::to_string(m_peers) + " peers");
    log("server", "peak memory " + std::to_string(peak_memory_in_kib()) + " KiB");
}

void Server::wait() {
    // While all places are taken, more peers wait outside.
    short const accepts = m_sessions.size() < limit::connections ? POLLIN : 0;
    m_polled.assign({{m_signals.get(), POLLIN, 0}, {m_listener.get(), accepts, 0}});
    for (Session const & session : m_sessions) {
        m_polled.push_back({session.descriptor(), session.events(), 0});
    }
    if (::poll(m_polled.data(), m_polled.size(), timeout()) < 0 && errno != EINTR) {
        throw_errno("poll");
    }
}

/// Milliseconds to the first deadline, for `poll`; -1 if there is none.
int Server::timeout() const {
    std::optional<Clock::time_point> first;
    for (Session const & session : m_sessions) {
        if (session.deadline() && (!first || *session.deadline() < *first)) {
            first = session.deadline();
        }
    }
    if (!first) {
        return -1;
    }
    auto const rest = std::chrono::ceil<std::chrono::milliseconds>(*first - Clock::now()).count();
    return static_cast<int>(std::max<long long>(rest, 0));
}

void Server::accept_peers() {
    while (m_sessions.size() < limit::connections) {
        Descriptor socket = accept_from(m_listener);
        if (socket.get() < 0) {
            return;
        }
        m_sessions.emplace_back(std::move(socket), ++m_peers, m_state);
    }
}

void Server::serve_peers() {
    auto polled = std::next(m_polled.begin(), 2);
    std::erase_if(m_sessions,
                  [&](Session & session) { return !serve(session, (polled++)->revents); });
}

bool Server::serve(Session & session, short happened) {
    try {
        if (happened != 0 && !session.serve()) {
            session.log("has left");
            return false;
        }
        if (session.deadline() && *session.deadline() <= Clock::now()) {
            session.refuse("lets the server wait for too long");
            return false;
        }
        return true;
    } catch (std::exception const & e) {
        session.refuse(explain(e)); // this peer only: the others go on
        return false;
    }
}

} // namespace messages
