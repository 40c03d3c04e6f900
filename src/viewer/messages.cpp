// Messages to the viewer: what was reported, or asked for by its code, in words and on its way.
#include <exception>

#include "report/report.h"
#include "viewer/messagetext.h"

using mlds::ConversationAccess;
using mlds::Internals;
using mlds::MessageText;
using mlds::Payload;

namespace {

void SendPacket(CPlexa* pPlexa, int code, const char* text) {
    CMessageSocket& socket = ConversationAccess::Socket(pPlexa);
    socket.ResetBuff();
    socket << static_cast<unsigned long>(code);
    if (text != nullptr) socket << text;
    socket.Send();
}

// Sends a message with the text that `write` makes of a MessageText.
template <typename Write>
void SendText(CPlexa* pPlexa, int code, Write write) {
    const char* text = nullptr;
    try {
        text = write(MessageText(pPlexa, *ConversationAccess::Current(pPlexa)));
    } catch (const std::exception&) {
        // A viewer that misses a message shows what is not so.
        ConversationAccess::Socket(pPlexa).Disconnect();
        return;
    }
    SendPacket(pPlexa, code, text);
}

void SendObject(CPlexa* pPlexa, int code, Payload payload, CStreamObj* p) {
    if (p == nullptr || Internals::StreamOf(p) == nullptr) return;
    SendText(pPlexa, code, [=](MessageText text) {
        switch (payload) {
            case Payload::inserted: return text.Inserted(p);
            case Payload::changed: return text.Changed(p);
            default: return text.Removed(p);
        }
    });
}

void SendList(CPlexa* pPlexa, int code, const CVarList* pList) {
    if (pList == nullptr) return;
    SendText(pPlexa, code, [=](MessageText text) { return text.List(pList); });
}

}  // namespace

namespace mlds {

void ViewerReports::Inserted(CPlexa* pPlexa, CStreamObj* p) {
    SendObject(pPlexa, msgInserted, Payload::inserted, p);
}

void ViewerReports::TokenChanged(CPlexa* pPlexa, CToken* p) {
    SendObject(pPlexa, msgTokenChanged, Payload::changed, p);
}

void ViewerReports::Removed(CPlexa* pPlexa, CStreamObj* p) {
    SendObject(pPlexa, msgRemoved, Payload::removed, p);
}

void ViewerReports::Stream(CPlexa* pPlexa, CStream* pStream) {
    SendText(pPlexa, msgStream, [=](MessageText text) { return text.Stream(pStream); });
}

void ViewerReports::ListMade(CPlexa* pPlexa, CVarList* pList) {
    SendList(pPlexa, msgListMade, pList);
}

void ViewerReports::ListGone(CPlexa* pPlexa, CVarList* pList) {
    SendList(pPlexa, msgListGone, pList);
}

void ViewerReports::Variable(CPlexa* pPlexa, int code, CVarList* pList, int i) {
    const MessageKind* pKind = FindMessage(code);
    if (pKind == nullptr || !IsTextOfSender(pKind->payload)) {
        pPlexa->sendMessage(code, 0);
        return;
    }
    SendText(pPlexa, code, [=](MessageText text) { return text.Variable(pList, i); });
}

}  // namespace mlds

// The one place where the host's integers become what they stand for.
// NOLINTBEGIN(performance-no-int-to-ptr)
void CPlexa::sendMessage(int code, std::intptr_t argument) {
    const mlds::MessageKind* pKind = mlds::FindMessage(code);
    if (pKind == nullptr || !Internals::HasViewer(this)) return;
    switch (pKind->payload) {
        case Payload::none: SendPacket(this, code, nullptr); break;
        case Payload::language:
            SendText(this, code, [](MessageText text) { return text.Language(); });
            break;
        case Payload::inserted:
        case Payload::changed:
        case Payload::removed:
            SendObject(this, code, pKind->payload, reinterpret_cast<CStreamObj*>(argument));
            break;
        case Payload::list: SendList(this, code, reinterpret_cast<CVarList*>(argument)); break;
        case Payload::stream:
        case Payload::variable:
        case Payload::text:
            if (argument != 0) SendPacket(this, code, reinterpret_cast<const char*>(argument));
            break;
    }
}
// NOLINTEND(performance-no-int-to-ptr)

void CPlexa::sendMessage(const char* text) {
    if (text != nullptr && Internals::HasViewer(this)) SendPacket(this, mlds::msgText, text);
}
