#include "session.h"

#include "report.h"

#include "vxattribute/attribute_access.h"
#include "vxattribute/make_value.h"
#include "vxattribute/seal.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace messages {

using namespace vxattribute;

Session::Session(Descriptor socket, unsigned int number, ServerState & state)
    : m_connection(std::move(socket)), m_subject("peer " + std::to_string(number)), m_state(state) {
    set_deadline();
}

bool Session::serve() {
    m_connection.flush();
    bool isOpen = true;
    if (handle_messages()) {
        isOpen = m_connection.receive();
        handle_messages();
        m_connection.flush();
    }
    set_deadline();
    return isOpen;
}

/// Returns false if the peer has to read its answers first: messages are left unread meanwhile.
bool Session::handle_messages() {
    while (m_connection.output_size() < limit::output) {
        auto const message = m_connection.next();
        if (!message) {
            return true;
        }
        handle(*message);
        m_hasProgress = true;
    }
    return false;
}

/// A message of several parts has until the deadline as a whole, so that a peer cannot keep a
/// connection busy with a byte now and then.
void Session::set_deadline() {
    bool const isWaiting = m_phase != EPhase::eReady || m_connection.is_inside_message() ||
                           m_connection.output_size() > 0;
    if (!isWaiting) {
        m_deadline.reset();
    } else if (!m_deadline || m_hasProgress) {
        m_deadline = Clock::now() + m_state.patience;
    }
    m_hasProgress = false;
}

void Session::refuse(std::string const & reason) noexcept {
    try {
        log("refused: " + reason);
        m_connection.send(make_map({{name::kind, kind::refused}, {name::reason, reason}}));
        m_connection.flush();
    } catch (std::exception const &) {
        // The peer may be gone already; its session ends in any case.
    }
}

void Session::handle(Message const & message) {
    std::string const & what = get<std::string>(message, name::kind);
    if (m_phase == EPhase::eHello && what == kind::hello) {
        take_hello(message);
    } else if (m_phase == EPhase::ePackages && what == kind::package) {
        take_package(message);
    } else if (m_phase == EPhase::eReady && what == kind::report) {
        take_report(message);
    } else if (m_phase == EPhase::eReady && what == kind::secret) {
        take_secret(message);
    } else if (m_phase == EPhase::eReady && what == kind::total) {
        answer_total();
    } else {
        throw std::runtime_error("a message of kind \"" + what + "\" is not expected here");
    }
}

void Session::take_hello(Message const & message) {
    m_subject += " (" + get<std::string>(message, name::client).substr(0, 32) + ")";
    auto const ids = get_list<vxcore::Uuid>(message, name::packages);
    if (ids.size() > limit::packages) {
        throw std::runtime_error("too many packages");
    }
    for (vxcore::Uuid const & id : ids) {
        if (auto const package = m_state.packages.find(id)) {
            m_packages.add(package);
        } else {
            m_wanted.push_back(id);
            log("asks for package " + id.as_string());
        }
    }
    if (m_wanted.empty()) {
        answer_ready();
        return;
    }
    m_phase = EPhase::ePackages;
    m_connection.send(make_map({{name::kind, kind::want}, {name::packages, make_list(m_wanted)}}));
}

void Session::take_package(Message const & message) {
    auto const names = get_list<std::string>(message, name::names);
    if (names.size() > limit::package_names) {
        throw std::runtime_error("a package of " + std::to_string(names.size()) + " names");
    }
    auto const package =
        AttributeNamePackage::create(std::vector<AttributeName>(names.begin(), names.end()));
    // The id is computed from the names, so these are the right ones if it was asked for.
    if (std::erase(m_wanted, package->id()) == 0) {
        throw std::runtime_error("package " + package->id().as_string() + " was not asked for");
    }
    if (!m_state.packages.find(package->id())) { // another peer may have brought it meanwhile
        m_state.packages.add(package);
        log("brings package " + package->id().as_string() + " of " +
            std::to_string(package->size()) + " names");
    }
    m_packages.add(package);
    if (m_wanted.empty()) {
        answer_ready();
    }
}

void Session::answer_ready() {
    m_phase = EPhase::eReady;
    m_connection.send(make_map({{name::kind, kind::ready}}));
    m_connection.use_packages(m_packages.compose());
}

/// A wrong report is dropped: the bytes of the next message are not in doubt.
void Session::take_report(Message const & message) {
    if (!m_pace) {
        m_pace.emplace();
    }
    try {
        m_highestLoad = std::max(m_highestLoad, read_report(message).load);
        ++m_burst;
        ++m_reports;
        ++m_state.reports;
    } catch (std::exception const & e) {
        if (++m_dropped > limit::dropped_reports) {
            throw std::runtime_error("too many wrong reports");
        }
        log("drops a report: " + explain(e));
    }
}

void Session::take_secret(Message const & message) {
    std::string const & about = get<std::string>(message, name::about);
    SecuredValue const & sealed = get<SecuredValue>(message, name::value);
    if (sealed.annotation() != about) { // only the annotation is sealed along with the value
        throw std::runtime_error("a secret about something else");
    }
    AttributeValue const opened = open(sealed, m_state.key);
    log("opened the secret \"" + about + "\" of " +
        std::to_string(opened.get<std::string>().size()) + " bytes");
}

void Session::answer_total() {
    if (m_pace) { // no line for each question: nobody may fill the log
        log("sent " + m_pace->text(std::exchange(m_burst, 0)));
        m_pace.reset();
    }
    m_connection.send(make_map({{name::kind, kind::total},
                                {name::reports, static_cast<long long>(m_reports)},
                                {name::dropped, m_dropped},
                                {name::highest_load, m_highestLoad}}));
}

} // namespace messages
