// A container's conversation with its viewer: what is kept for it, and the way to it.
#ifndef MLDS_VIEWER_CONVERSATION_H
#define MLDS_VIEWER_CONVERSATION_H

#include <string>

#include "internals.h"
#include "viewer/handles.h"
#include "viewer/link/viewerlink.h"

namespace mlds {

struct Conversation final : ViewerLink {
    HandleTable handles;
    std::string text;     // of the message that is being built
    std::string pending;  // the beginning of a request whose end has not come yet
};

/// The door to a container's connections. Only the viewer's side goes through it: the others report
/// (report/report.h) and ask for no more than Internals::HasViewer.
struct ConversationAccess {
    static CMessageSocket& Socket(CPlexa* p) { return p->m_socket; }
    /// What was begun with the viewer that is connected; null while none is.
    static Conversation* Current(const CPlexa* p) {
        return static_cast<Conversation*>(p->m_socket.m_pLink);
    }
    /// Begins a conversation over a connection that has none. False when memory runs out.
    static bool Begin(CPlexa* p);
    static std::intptr_t RequestSocket(const CPlexa* p) { return p->m_socket.m_receiveSocket; }
    static void CloseRequests(CPlexa* p) { p->m_socket.CloseRequests(); }
};

}  // namespace mlds

#endif
