// Greetings, messages and requests of engines.
#include "engineserver.h"

#include <iostream>

#include "report/messages.h"
#include "viewer/link/greetings.h"

namespace mlds_viewer {

namespace {

constexpr std::size_t kMostGuests = 16;
constexpr std::chrono::seconds kPatience{10};
// An engine that never polls takes no requests: there is no use in piling them up.
constexpr std::size_t kMostUnsent = 1 << 20;

bool Acknowledge(Socket& socket) {
    static const std::string kAcknowledgement = NumberPacket(1);
    return socket.Send(kAcknowledgement) == kAcknowledgement.size();
}

}  // namespace

void EngineServer::AddTo(std::vector<pollfd>& descriptors) const {
    descriptors.push_back({m_listener.fd(), POLLIN, 0});
    if (m_messages.isOpen()) descriptors.push_back({m_messages.fd(), POLLIN, 0});
    if (m_requests.isOpen()) {
        const int events = m_unsent.empty() ? POLLIN : POLLIN | POLLOUT;
        descriptors.push_back({m_requests.fd(), static_cast<short>(events), 0});
    }
    for (const Guest& guest : m_guests)
        descriptors.push_back({guest.incoming.socket.fd(), POLLIN, 0});
}

void EngineServer::Serve() {
    // Who has gone makes room for who comes.
    ReceiveMessages();
    WatchRequests();
    AcceptGuests();
    HearGuests();
    SendRequests();
}

void EngineServer::ReceiveMessages() {
    while (m_messages.isOpen()) {
        const std::optional<std::string> bytes = m_messages.Receive();
        if (!bytes) return CloseEngine("it closed the connection");
        if (bytes->empty()) return;
        m_reader.Add(*bytes);
        TakeMessages();
    }
}

void EngineServer::TakeMessages() {
    try {
        while (std::optional<Message> message = m_reader.TakeMessage()) {
            const bool bGoodbye = message->code == mlds::msgGoodbye;
            m_viewer.Receive(std::move(*message));
            if (!Acknowledge(m_messages)) return CloseEngine("it takes no acknowledgements");
            if (bGoodbye) return CloseEngine("it said goodbye");
        }
    } catch (const ProtocolError& e) {
        CloseEngine(std::string("it sent what is no message: ") + e.what());
    }
}

// Nothing comes on this connection but its end.
void EngineServer::WatchRequests() {
    if (!m_requests.isOpen() || m_requests.Receive()) return;
    m_requests.Close();
    m_unsent.clear();
    m_viewer.EngineTakesRequests(false);
}

void EngineServer::AcceptGuests() {
    for (;;) {
        Incoming incoming = Accept(m_listener);
        if (!incoming.socket.isOpen()) return;
        if (m_guests.size() >= kMostGuests) m_guests.pop_front();
        m_guests.push_back({std::move(incoming), {}, std::chrono::steady_clock::now()});
    }
}

void EngineServer::HearGuests() {
    std::erase_if(m_guests, [this](Guest& guest) { return !Hear(guest); });
}

// False when the guest is none any more.
bool EngineServer::Hear(Guest& guest) {
    const std::optional<std::string> bytes = guest.incoming.socket.Receive();
    if (!bytes) return false;
    guest.reader.Add(*bytes);
    try {
        if (const std::optional<int> greeting = guest.reader.TakeGreeting()) {
            return Admit(guest, *greeting);
        }
    } catch (const ProtocolError& e) {
        return Refuse(guest, e.what());
    }
    return std::chrono::steady_clock::now() - guest.since < kPatience;
}

bool EngineServer::Admit(Guest& guest, int greeting) {
    Incoming& incoming = guest.incoming;
    if (greeting == mlds::greetNotifications) {
        if (m_messages.isOpen()) return Refuse(guest, "another engine is connected");
        m_viewer.EngineCame(incoming.host + ':' + std::to_string(incoming.port));
        m_messages = std::move(incoming.socket);
        m_reader = std::move(guest.reader);
        m_host = incoming.host;
        m_since = std::chrono::steady_clock::now();
        if (!Acknowledge(m_messages)) CloseEngine("it takes no acknowledgements");
        return false;
    }
    if (greeting != mlds::greetRequests) return Refuse(guest, "its greeting is unknown");
    // An engine opens both in one go: later it is somebody else, who was refused before.
    const bool bLate = std::chrono::steady_clock::now() - m_since > kPatience;
    if (!m_messages.isOpen() || m_requests.isOpen() || m_host != incoming.host || bLate) {
        return Refuse(guest, "it takes requests for an engine that is not connected");
    }
    if (!Acknowledge(incoming.socket)) return false;
    m_requests = std::move(incoming.socket);
    m_viewer.EngineTakesRequests(true);
    return false;
}

bool EngineServer::Refuse(const Guest& guest, const std::string& why) {
    std::cerr << "mlds-viewer: connection from " << guest.incoming.host << ':'
              << guest.incoming.port << " refused: " << why << std::endl;
    return false;
}

void EngineServer::SendRequests() {
    for (const std::string& packet : m_viewer.TakePackets()) {
        if (m_requests.isOpen() && m_unsent.size() < kMostUnsent) m_unsent += packet;
    }
    if (m_unsent.empty() || !m_requests.isOpen()) return;
    // A broken connection shows when it is watched next.
    m_unsent.erase(0, m_requests.Send(m_unsent).value_or(0));
}

void EngineServer::CloseEngine(const std::string& why) {
    if (!m_messages.isOpen()) return;
    m_messages.Close();
    m_requests.Close();
    m_reader = {};
    m_unsent.clear();
    m_viewer.EngineWent(why);
}

}  // namespace mlds_viewer
