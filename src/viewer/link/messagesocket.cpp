// The connections to the viewer: opening them, and packets that are acknowledged.
#include "mlds/messagesocket.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/sockets.h"
#include "viewer/link/greetings.h"
#include "viewer/link/viewerconfig.h"
#include "viewer/link/viewerlink.h"
#include "viewer/link/wire.h"

using namespace mlds::platform;
using namespace mlds::wire;

namespace {

constexpr std::uint32_t kBufferSize = 16384;
constexpr std::uint64_t kLargestPacket = 1 << 30;
constexpr std::uint16_t kVersion_1_1 = 0x0101;

// Stands before the number that tells the viewer which connection is which.
constexpr unsigned long kGreeting = 1;

bool StartSockets() {
    WSADATA data;
    if (WSAStartup(kVersion_1_1, &data) != 0) return false;
    if (data.wVersion == kVersion_1_1) return true;
    WSACleanup();
    return false;
}

}  // namespace

CMessageSocket::CMessageSocket()
    : m_sendSocket(0),
      m_receiveSocket(0),
      m_address{},
      m_bConnected(false),
      m_bStartNeeded(true),
      m_pBuffer(static_cast<char*>(std::malloc(kBufferSize))),
      m_nPosition(0),
      m_nLength(0),
      m_bOwner(true),
      m_bAckOdd(false),
      m_pLarge(nullptr),
      m_nLarge(0),
      m_pLink(nullptr),
      m_nPatience(0) {}

CMessageSocket::CMessageSocket(const CMessageSocket& other) : CMessageSocket() {
    *this = other;
}

CMessageSocket& CMessageSocket::operator=(const CMessageSocket& other) {
    if (this == &other) return *this;
    if (m_bOwner && other.m_pBuffer == m_pBuffer) return *this;  // a copy of this one
    Release();
    m_sendSocket = other.m_sendSocket;
    m_receiveSocket = other.m_receiveSocket;
    std::memcpy(m_address, other.m_address, sizeof m_address);
    m_bConnected = other.m_bConnected;
    m_bStartNeeded = other.m_bStartNeeded;
    m_pBuffer = other.m_pBuffer;
    // A packet that outgrew the buffer is the original's alone.
    m_nPosition = other.m_pLarge == nullptr ? other.m_nPosition : 0;
    m_nLength = other.m_pLarge == nullptr ? other.m_nLength : 0;
    m_bOwner = false;
    m_bAckOdd = false;
    m_nPatience = other.m_nPatience;
    return *this;
}

CMessageSocket::~CMessageSocket() {
    Release();
}

void CMessageSocket::Release() {
    if (!m_bOwner) return;
    Disconnect();
    if (!m_bStartNeeded) WSACleanup();
    std::free(m_pBuffer);
    std::free(m_pLarge);
    m_pLarge = nullptr;
    m_nLarge = 0;
}

int CMessageSocket::InitSockets_1_1() {
    return StartSockets() ? 1 : 0;
}

void CMessageSocket::RemoveSockets() {
    WSACleanup();
}

bool CMessageSocket::Start() {
    if (m_bStartNeeded && StartSockets()) m_bStartNeeded = false;
    return !m_bStartNeeded;
}

// A new connection to the viewer's address; 0 if there is none.
std::intptr_t CMessageSocket::Open(const Deadline& deadline) {
    const SOCKET s = StreamSocket();
    if (s == INVALID_SOCKET) return 0;
    if (connect(s, m_address, deadline) == 0) return s;
    closesocket(s);
    return 0;
}

bool CMessageSocket::Connect() {
    if (HasViewer()) return true;
    if (!m_bOwner || m_pBuffer == nullptr || !Start()) return false;
    const mlds::ViewerConfig config = mlds::ReadViewerConfig();
    if (!MakeAddress(m_address, config.host, config.port)) return false;
    const Deadline deadline = Deadline::In(m_nPatience);
    m_sendSocket = Open(deadline);
    Greet(mlds::greetNotifications);
    if (m_sendSocket == 0 || !Exchange(deadline)) {
        Disconnect();
        return false;
    }
    m_bConnected = ConnectForRcv();
    // A viewer that is silent there is not waited for a second time.
    return m_sendSocket != 0;
}

bool CMessageSocket::HasViewer() {
    if (m_sendSocket == 0) return false;
    if (!m_bOwner) return true;
    DropLateBytes();
    if (!HasEnded(m_sendSocket)) return true;
    Disconnect();
    return false;
}

void CMessageSocket::SetPatience(int milliseconds) {
    m_nPatience = milliseconds;
}

bool CMessageSocket::ConnectForRcv() {
    if (m_receiveSocket != 0) return true;
    if (!m_bOwner || m_pBuffer == nullptr || !Start()) return false;
    const Deadline deadline = Deadline::In(m_nPatience);
    m_receiveSocket = Open(deadline);
    if (m_receiveSocket != 0) {
        Greet(mlds::greetRequests);
        const int n = m_nLength;
        ResetBuff();
        const bool bSent = send(m_receiveSocket, Buffer(), n, deadline) == n;
        // Whatever the reply is; but a viewer that closes does not want this connection.
        if (bSent && recv(m_receiveSocket, Buffer(), kBufferSize, deadline) > 0) return true;
        CloseRequests();
    }
    if (deadline.HasPassed()) Disconnect();
    return false;
}

void CMessageSocket::Greet(unsigned long kind) {
    ResetBuff();
    *this << kGreeting << kind;
}

void CMessageSocket::Disconnect() {
    if (m_bOwner && m_sendSocket != 0) closesocket(m_sendSocket);
    m_sendSocket = 0;
    CloseRequests();
    delete m_pLink;
    m_pLink = nullptr;
    m_bAckOdd = false;
}

void CMessageSocket::CloseRequests() {
    if (m_bOwner && m_receiveSocket != 0) closesocket(m_receiveSocket);
    m_receiveSocket = 0;
    m_bConnected = false;
}

void CMessageSocket::Send() {
    if (m_nLength == 0) return;
    if (m_sendSocket == 0) {
        ResetBuff();
    } else if (!Exchange(Deadline::In(m_nPatience))) {
        Disconnect();
    }
}

// Sends the buffer and takes the acknowledgement. False if the viewer has gone or is silent.
bool CMessageSocket::Exchange(const Deadline& deadline) {
    const int n = m_nLength;
    ResetBuff();
    if (m_bAckOdd) DropLateBytes();
    if (send(m_sendSocket, Buffer(), n, deadline) != n) return false;
    const int nAck = recv(m_sendSocket, Buffer(), kBufferSize, deadline);
    // Once is enough: pieces of two acknowledgements may come together and look like a whole one.
    if (nAck != static_cast<int>(kIntItemSize)) m_bAckOdd = true;
    return nAck > 0;
}

// What is left of the latest acknowledgement would pass for that of the next packet.
void CMessageSocket::DropLateBytes() {
    constexpr int kMostReads = 64;  // a viewer may send faster than this reads
    char late[1024];
    for (int i = 0; i < kMostReads && IsReadable(m_sendSocket); ++i) {
        if (recv(m_sendSocket, late, sizeof late) <= 0) return;
    }
}

char* CMessageSocket::Buffer() const {
    return m_pLarge != nullptr ? m_pLarge : m_pBuffer;
}

void CMessageSocket::ResetBuff() {
    m_nPosition = 0;
    m_nLength = 0;
}

// Room for that many more bytes; null if there is none. Packets that outgrow the buffer go whole
// into a larger one, which stays for the next.
unsigned char* CMessageSocket::Reserve(std::uint64_t size) {
    const std::uint64_t needed = static_cast<std::uint64_t>(m_nPosition) + size;
    if (needed > (m_pLarge != nullptr ? m_nLarge : kBufferSize)) {
        if (!m_bOwner || needed > kLargestPacket) return nullptr;
        const std::uint64_t capacity = std::min<std::uint64_t>(needed * 2, kLargestPacket);
        auto* pLarge = static_cast<char*>(std::malloc(capacity));
        if (pLarge == nullptr || m_pBuffer == nullptr) {
            std::free(pLarge);
            return nullptr;
        }
        std::memcpy(pLarge, Buffer(), static_cast<std::size_t>(m_nPosition));
        std::free(m_pLarge);
        m_pLarge = pLarge;
        m_nLarge = static_cast<std::uint32_t>(capacity);
    }
    char* pBuffer = Buffer();
    return pBuffer != nullptr ? reinterpret_cast<unsigned char*>(pBuffer) + m_nPosition : nullptr;
}

void CMessageSocket::Append(std::uint32_t type, const void* value, std::int64_t n) {
    const std::uint64_t size = ItemSize(type, value, n);
    unsigned char* p = size != 0 ? Reserve(size) : nullptr;
    if (p == nullptr) return;
    PutItem(p, type, value, static_cast<std::uint32_t>(n));
    m_nPosition += static_cast<int>(size);
    m_nLength += static_cast<int>(size);
}

void CMessageSocket::AppendPacket(long type, void* value, int n) {
    Append(static_cast<std::uint32_t>(type), value, n);
}

CMessageSocket& CMessageSocket::operator<<(unsigned long value) {
    const auto word = static_cast<std::uint32_t>(value);
    Append(itemInt, &word, sizeof word);
    return *this;
}

CMessageSocket& CMessageSocket::operator<<(const char* text) {
    if (text == nullptr) text = "";
    Append(itemString, text, static_cast<std::int64_t>(std::strlen(text)));
    return *this;
}

void CMessageSocket::AddData(void* bytes, int n) {
    Append(itemData, bytes, n);
}

CMessageSocket& CMessageSocket::operator>>(unsigned long& value) {
    auto position = static_cast<std::uint32_t>(m_nPosition);
    ItemReader reader(Buffer(), static_cast<std::uint32_t>(m_nLength), position);
    value = reader.TakeNumber(itemInt, 4);
    m_nPosition = static_cast<int>(position);
    return *this;
}

CMessageSocket& CMessageSocket::operator>>(char* text) {
    if (text == nullptr) return *this;
    auto position = static_cast<std::uint32_t>(m_nPosition);
    ItemReader(Buffer(), static_cast<std::uint32_t>(m_nLength), position).TakeText(text);
    m_nPosition = static_cast<int>(position);
    return *this;
}
