// Messages to the viewer: the link's beginning and end, reports, and the report of everything.
#include <exception>

#include "viewer/messagetext.h"
#include "viewer/report.h"

using mlds::Internals;
using mlds::MessageText;
using mlds::ViewerLink;

namespace {

// The text that goes with a message; null for none.
const char* TextOf(MessageText text, int code, std::intptr_t argument) {
    switch (code) {
        case mlds::msgInserted: return text.Inserted(reinterpret_cast<CStreamObj*>(argument));
        case mlds::msgTokenChanged: return text.Changed(reinterpret_cast<CStreamObj*>(argument));
        case mlds::msgRemoved: return text.Removed(reinterpret_cast<CStreamObj*>(argument));
        case mlds::msgLanguage: return text.Language();
        case mlds::msgListMade:
        case mlds::msgListGone: return text.List(reinterpret_cast<const CVarList*>(argument));
        case mlds::msgStream:
        case mlds::msgVarAdded:
        case mlds::msgVarUsed:
        case mlds::msgText: return reinterpret_cast<const char*>(argument);
        default: return nullptr;
    }
}

enum class Argument { none, object, any, unknownCode };

Argument ArgumentOf(int code) {
    switch (code) {
        case mlds::msgGoodbye:
        case mlds::msgFullDump:
        case mlds::msgContentsDump:
        case mlds::msgDisplayNow:
        case mlds::msgReserved:
        case mlds::msgLanguage: return Argument::none;
        case mlds::msgInserted:
        case mlds::msgTokenChanged:
        case mlds::msgRemoved: return Argument::object;
        case mlds::msgStream:
        case mlds::msgListMade:
        case mlds::msgVarAdded:
        case mlds::msgVarUsed:
        case mlds::msgListGone:
        case mlds::msgText: return Argument::any;
        default: return Argument::unknownCode;
    }
}

bool IsSendable(int code, std::intptr_t argument) {
    switch (ArgumentOf(code)) {
        case Argument::none: return true;
        case Argument::any: return argument != 0;
        case Argument::object:
            return argument != 0 &&
                   Internals::StreamOf(reinterpret_cast<CStreamObj*>(argument)) != nullptr;
        default: return false;
    }
}

}  // namespace

void CPlexa::sendMessage(int code, std::intptr_t argument) {
    if (!Internals::HasViewer(this) || !IsSendable(code, argument)) return;
    try {
        const char* text = TextOf({this, *Internals::Link(this)}, code, argument);
        m_socket.ResetBuff();
        m_socket << static_cast<unsigned long>(code);
        if (text != nullptr) m_socket << text;
    } catch (const std::exception&) {
        // A viewer that misses a message shows what is not so.
        m_socket.Disconnect();
        return;
    }
    m_socket.Send();
}

void CPlexa::sendMessage(const char* text) {
    sendMessage(mlds::msgText, reinterpret_cast<std::intptr_t>(text));
}

void mlds::ReportVariable(CPlexa* pPlexa, int code, CVarList* pList, int i, const char* name) {
    try {
        MessageText text(pPlexa, *Internals::Link(pPlexa));
        pPlexa->sendMessage(code, reinterpret_cast<std::intptr_t>(text.Variable(pList, i, name)));
    } catch (const std::exception&) {
        Internals::CloseLink(pPlexa);
    }
}

bool CPlexa::StartMessageEngine() {
    // A copy's objects would not tell its link when they go.
    if (m_pHome != this || !m_socket.Connect()) return false;
    sendEntirePlexaObj(true);
    return true;
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

void Describe(CPlexa* pPlexa, CStream* pStream) {
    try {
        const std::string text = mlds::StreamDescription(pStream);
        pPlexa->sendMessage(mlds::msgStream, reinterpret_cast<std::intptr_t>(text.c_str()));
    } catch (const std::exception&) {
        // As with every message that cannot be made.
        Internals::CloseLink(pPlexa);
    }
}

void SendStream(CPlexa* pPlexa, CStream* pStream, bool bFull) {
    if (bFull) Describe(pPlexa, pStream);
    CStreamObj* pEnd = bFull ? nullptr : Internals::Last(pStream);
    CStreamObj* p = Internals::First(pStream);
    if (!bFull) p = Internals::Next(p);
    for (; p != pEnd && Internals::HasViewer(pPlexa); p = Internals::Next(p)) {
        mlds::Report(pPlexa, mlds::msgInserted, p);
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
        mlds::Report(this, mlds::msgListMade, m_pVarLists[i]);
        m_pVarLists[i]->SendOutThisVarList(mlds::msgVarAdded);
    }
    DelayMessageDisplay(false);
}
