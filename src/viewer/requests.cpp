// Requests of the viewer: polled, read, and carried out.
#include <cmath>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include "platform/numbertext.h"
#include "platform/sockets.h"
#include "viewer/conversation.h"
#include "viewer/link/requestreader.h"

using mlds::ConversationAccess;
using mlds::Internals;

namespace {

constexpr int kGrowth = 1024;
// What comes on top of this waits for the next poll.
constexpr int kMostPerPoll = 1 << 20;

// The token in one of the container's streams that has the handle, or null. Only those are
// compared, so nothing is followed that may be gone.
CToken* LinkedToken(CPlexa* pPlexa, const void* address) {
    for (int i = 0; address != nullptr && i < Internals::NumStreams(pPlexa); ++i) {
        CStreamObj* p = Internals::First(Internals::Stream(pPlexa, i));
        for (; p != nullptr; p = Internals::Next(p)) {
            if (p == address) return Internals::IsToken(p) ? static_cast<CToken*>(p) : nullptr;
        }
    }
    return nullptr;
}

void SetField(CToken* pToken, int i, const char* text) {
    CField* pField = Internals::StreamOf(pToken)->GetField(i);
    if (pField == nullptr) return;
    double number = 0;
    switch (pField->GetFieldType()) {
        case fvInt:
            pToken->SetFieldValue(pField->GetFieldName(), mlds::platform::TextToInt(text));
            break;
        case fvFloat:
            // The number without its fraction, stored as an integer.
            mlds::platform::ScanDouble(text, number);
            number = std::trunc(number);
            if (number >= INT32_MIN && number <= INT32_MAX) {
                pToken->SetFieldValue(pField->GetFieldName(), static_cast<int>(number));
            }
            break;
        case fvEnum:
        case fvType3:
        case fvBool:
        case fvType5: pToken->SetFieldValue(i, text); break;
        default: break;
    }
}

void Edit(CPlexa* pPlexa, const char* text) {
    mlds::FieldEdit edit;
    if (!mlds::ReadFieldEdit(text, edit) || edit.kind != otToken) return;
    const void* address = ConversationAccess::Current(pPlexa)->handles.Find(edit.handle);
    CToken* pToken = LinkedToken(pPlexa, address);
    if (pToken != nullptr) SetField(pToken, edit.field, edit.value.c_str());
}

}  // namespace

bool CPlexa::GrowMessageBuffer(int capacity) {
    auto* pBuffer =
        static_cast<char*>(std::realloc(m_pMessageBuffer, static_cast<std::size_t>(capacity)));
    if (pBuffer == nullptr) return false;
    m_pMessageBuffer = pBuffer;
    m_nMessageCapacity = capacity;
    return true;
}

// Fills the message buffer with what can be had without waiting; the number of bytes. `bClosed` if
// the viewer has closed behind them.
int CPlexa::ReceiveRequests(bool& bClosed) {
    if (m_pMessageBuffer == nullptr && !GrowMessageBuffer(m_nMessageCapacity)) return 0;
    const std::intptr_t s = ConversationAccess::RequestSocket(this);
    int n = 0;
    while (n < kMostPerPoll && mlds::platform::IsReadable(s)) {
        if (n == m_nMessageCapacity && !GrowMessageBuffer(n + kGrowth)) break;
        const int room = m_nMessageCapacity - n;
        const int nRead = mlds::platform::recv(s, m_pMessageBuffer + n, room);
        bClosed = nRead <= 0;
        if (bClosed) break;
        n += nRead;
        if (nRead < room) break;
    }
    return n;
}

void CPlexa::HandleRequests(int nBytes) {
    mlds::Conversation* pWith = ConversationAccess::Current(this);
    const std::string_view received(m_pMessageBuffer, static_cast<std::size_t>(nBytes));
    const std::string all = pWith->pending + std::string(received);
    mlds::RequestBatch batch = mlds::ReadRequests(all);
    if (!pWith->pending.empty() && (batch.bMalformed || batch.requests.empty())) {
        // A request whose end never came must not swallow those behind it.
        mlds::RequestBatch behind = mlds::ReadRequests(received);
        const bool bLost = batch.bMalformed && batch.requests.empty();
        if (bLost || !behind.requests.empty()) batch = std::move(behind);
    }
    pWith->pending = batch.rest;
    for (const mlds::Request& request : batch.requests) {
        // An edit is reported, which may end the link like a goodbye.
        if (request.code == mlds::reqDisconnect) m_socket.Disconnect();
        if (!Internals::HasViewer(this)) return;
        if (request.code == mlds::reqSetField) Edit(this, request.text.c_str());
    }
}

void CPlexa::ProcessRecvMsg() {
    if (!m_bMessageEngine || ConversationAccess::RequestSocket(this) == 0) return;
    bool bClosed = false;
    const int n = ReceiveRequests(bClosed);
    try {
        if (n > 0) HandleRequests(n);
    } catch (const std::bad_alloc&) {
        // Requests are lost, nothing else is.
    }
    if (bClosed) ConversationAccess::CloseRequests(this);
    m_bMessageEngine = true;
}

void CPlexa::DropMessageBuffer() {
    std::free(m_pMessageBuffer);
    m_pMessageBuffer = nullptr;
}
