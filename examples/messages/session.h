#pragma once

#include "connection.h"
#include "log.h"
#include "package_store.h"

#include "vxcrypto/key.h"

#include <optional>
#include <vector>

namespace messages {

/// What the sessions of a server share.
struct ServerState {
    PackageStore packages;
    vxcrypto::Key key;
    Clock::duration patience; // how long a peer may let the server wait
    unsigned long long reports = 0;
};

/// The server's side of one connection: greets the peer, learns its packages, takes its messages.
///
/// A peer that breaks the rules makes an operation raise. The caller then calls `refuse` and ends
/// the session. No peer can make a session wait, or keep more than `limit` allows.
class Session {
  public:
    /// @param state  Must outlive the session.
    Session(Descriptor socket, unsigned int number, ServerState & state);

    /// For `poll`.
    int descriptor() const noexcept { return m_connection.descriptor(); }

    short events() const noexcept { return m_connection.events(); }

    /// Does what can be done without waiting. Returns false when the peer has ended the connection.
    ///
    /// @raises What the peer did wrong.
    bool serve();

    /// When the peer must have done what the server waits for: ended its greeting, the rest of a
    /// message, or read an answer. None while it owes nothing.
    std::optional<Clock::time_point> const & deadline() const noexcept { return m_deadline; }

    /// Logs the reason, and sends it if the socket takes it at once.
    void refuse(std::string const & reason) noexcept;

    /// Logs a line about this peer.
    void log(std::string_view text) const { messages::log(m_subject, text); }

  private:
    using Message = vxattribute::AttributeMap;

    bool handle_messages();
    void set_deadline();

    void handle(Message const & message);
    void take_hello(Message const & message);
    void take_package(Message const & message);
    void answer_ready();
    void take_report(Message const & message);
    void take_secret(Message const & message);
    void answer_total();

    enum class EPhase { eHello, ePackages, eReady };

    Connection m_connection;
    std::string m_subject; // of its lines in the log
    ServerState & m_state;

    EPhase m_phase = EPhase::eHello;
    std::vector<vxcore::Uuid> m_wanted;           // asked for, and not there yet
    AttributeNamePackageSet::Composer m_packages; // of the hello, as far as they are there

    bool m_hasProgress = false; // since the last `set_deadline`
    std::optional<Clock::time_point> m_deadline;

    std::optional<Pace> m_pace;     // since the first report after the last total
    unsigned long long m_burst = 0; // reports in that time
    unsigned long long m_reports = 0;
    unsigned int m_dropped = 0;
    double m_highestLoad = 0;
};

} // namespace messages
