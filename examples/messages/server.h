#pragma once

#include "session.h"

#include <list>
#include <poll.h>
#include <string>
#include <vector>

namespace messages {

/// Serves any number of peers in one thread, until SIGTERM or SIGINT arrives.
class Server {
  public:
    /// Listens at `path` and blocks the two signals, which `run` waits for.
    Server(std::string const & path, ServerState state);

    Server(Server const &) = delete;
    Server & operator=(Server const &) = delete;

    /// Ends when one of the signals arrives.
    void run();

  private:
    void wait();
    int timeout() const;
    void accept_peers();
    void serve_peers();

    /// Returns false when the session is over.
    bool serve(Session & session, short happened);

    ServerState m_state;
    Descriptor m_signals;
    Descriptor m_listener;
    std::list<Session> m_sessions;
    unsigned int m_peers = 0;
    std::vector<pollfd> m_polled; // the signals, the listener, the sessions in order
};

} // namespace messages
