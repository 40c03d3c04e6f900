// The beginning and the end of a container's link to its viewer, and the report of everything.
#include <new>

#include "report/report.h"
#include "viewer/conversation.h"

using mlds::ConversationAccess;
using mlds::Internals;

bool mlds::ConversationAccess::Begin(CPlexa* p) {
    auto* pNew = new (std::nothrow) Conversation;
    p->m_socket.m_pLink = pNew;
    return pNew != nullptr;
}

bool CPlexa::StartMessageEngine() {
    // A copy's objects would not tell its link when they go.
    if (m_pHome != this || !m_socket.Connect()) return false;
    if (ConversationAccess::Current(this) == nullptr && !ConversationAccess::Begin(this)) {
        m_socket.Disconnect();
        return false;
    }
    sendEntirePlexaObj(true);
    return true;
}

void CPlexa::SetViewerPatience(int milliseconds) {
    m_socket.SetPatience(milliseconds);
}

bool CPlexa::HasViewer() {
    return m_socket.HasViewer();
}

void CPlexa::StopMessageEngine() {
    if (!Internals::HasViewer(this)) return;
    sendMessage(mlds::msgGoodbye, 0);
    m_socket.Disconnect();
    DropMessageBuffer();
}

void CPlexa::DelayMessageDisplay(bool bDelay) {
    m_bDelayDisplay = bDelay;
    if (!bDelay) sendMessage(mlds::msgDisplayNow, 0);
}

namespace {

void SendStream(CPlexa* pPlexa, CStream* pStream, bool bFull) {
    if (bFull) mlds::ReportStream(pPlexa, pStream);
    CStreamObj* pEnd = bFull ? nullptr : Internals::Last(pStream);
    CStreamObj* p = Internals::First(pStream);
    if (!bFull) p = Internals::Next(p);
    for (; p != pEnd && Internals::HasViewer(pPlexa); p = Internals::Next(p)) {
        mlds::ReportInserted(pPlexa, p);
    }
}

}  // namespace

void CPlexa::sendEntirePlexaObj(bool bFull) {
    if (!Internals::HasViewer(this)) return;
    DelayMessageDisplay(true);
    if (bFull) sendMessage(mlds::msgLanguage, 0);
    sendMessage(bFull ? mlds::msgFullDump : mlds::msgContentsDump, 0);
    for (int i = 0; i < m_nStreams && Internals::HasViewer(this); ++i) {
        SendStream(this, m_pStreams[i], bFull);
    }
    for (int i = 0; bFull && i < m_nVarLists; ++i) {
        if (m_pVarLists[i] == nullptr) continue;
        mlds::ReportListMade(this, m_pVarLists[i]);
        m_pVarLists[i]->SendOutThisVarList(mlds::msgVarAdded);
    }
    DelayMessageDisplay(false);
}
