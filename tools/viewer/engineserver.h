// The connections of engines: messages in, acknowledgements and requests out.
//
// An engine opens two connections, one for its messages and one from which it takes requests. What
// each is for it says first. One engine is served at a time.
#ifndef MLDS_VIEWER_TOOL_ENGINESERVER_H
#define MLDS_VIEWER_TOOL_ENGINESERVER_H

#include <poll.h>

#include <chrono>
#include <list>

#include "sockets.h"
#include "viewer.h"

namespace mlds_viewer {

class EngineServer {
public:
    /// Refers to the viewer.
    EngineServer(Socket listener, Viewer& viewer)
        : m_listener(std::move(listener)), m_viewer(viewer) {}
    ~EngineServer() { Close(); }

    /// Adds what is to be polled.
    void AddTo(std::vector<pollfd>& descriptors) const;
    void Close() { CloseEngine("the viewer ends"); }
    /// Does what can be done without waiting: to be called when poll() has returned.
    void Serve();

private:
    // A connection that has not said yet what it is for.
    struct Guest {
        Incoming incoming;
        MessageReader reader;
        std::chrono::steady_clock::time_point since;
    };

    void AcceptGuests();
    void ReceiveMessages();
    void TakeMessages();
    void WatchRequests();
    void SendRequests();
    void HearGuests();
    bool Hear(Guest& guest);
    bool Admit(Guest& guest, int greeting);
    bool Refuse(const Guest& guest, const std::string& why);
    void CloseEngine(const std::string& why);

    Socket m_listener;
    Viewer& m_viewer;
    std::list<Guest> m_guests;

    Socket m_messages;
    MessageReader m_reader;
    std::string m_host;                             // of the engine
    std::chrono::steady_clock::time_point m_since;  // when it came
    Socket m_requests;
    std::string m_unsent;
};

}  // namespace mlds_viewer

#endif
