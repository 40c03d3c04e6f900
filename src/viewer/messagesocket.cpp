// The connections to the viewer. Nothing connects yet.
#include "mlds/messagesocket.h"

#include <cstring>

CMessageSocket::CMessageSocket()
    : m_sendSocket(0),
      m_receiveSocket(0),
      m_address{},
      m_bConnected(false),
      m_bStartNeeded(true),
      m_pBuffer(nullptr),
      m_nPosition(0),
      m_nLength(0),
      m_bOwner(true) {}

CMessageSocket::CMessageSocket(const CMessageSocket& other) : CMessageSocket() {
    *this = other;
}

CMessageSocket& CMessageSocket::operator=(const CMessageSocket& other) {
    if (this == &other) return *this;
    m_sendSocket = other.m_sendSocket;
    m_receiveSocket = other.m_receiveSocket;
    std::memcpy(m_address, other.m_address, sizeof m_address);
    m_bConnected = other.m_bConnected;
    m_bStartNeeded = other.m_bStartNeeded;
    m_pBuffer = other.m_pBuffer;
    m_nPosition = other.m_nPosition;
    m_nLength = other.m_nLength;
    m_bOwner = false;
    return *this;
}

CMessageSocket::~CMessageSocket() {
    if (m_bOwner) Disconnect();
}

bool CMessageSocket::Connect() {
    return false;
}

bool CMessageSocket::ConnectForRcv() {
    return false;
}

void CMessageSocket::Disconnect() {
    m_sendSocket = 0;
    m_receiveSocket = 0;
    m_bConnected = false;
}

void CMessageSocket::Send() {}

void CMessageSocket::ResetBuff() {
    m_nPosition = 0;
    m_nLength = 0;
}

CMessageSocket& CMessageSocket::operator<<(unsigned long) {
    return *this;
}

CMessageSocket& CMessageSocket::operator<<(const char*) {
    return *this;
}

void CMessageSocket::AddData(void*, int) {}

void CMessageSocket::AppendPacket(long, void*, int) {}

CMessageSocket& CMessageSocket::operator>>(unsigned long& value) {
    value = 0;
    return *this;
}

CMessageSocket& CMessageSocket::operator>>(char* text) {
    if (text != nullptr) *text = '\0';
    return *this;
}

int CMessageSocket::InitSockets_1_1() {
    return 0;
}

void CMessageSocket::RemoveSockets() {}

char* CMessageSocket::GetHostName(char*, int) {
    return nullptr;
}

int CMessageSocket::GetNumAddresses() {
    return 0;
}

unsigned int CMessageSocket::uGetLocalIP() {
    return 0;
}

unsigned int CMessageSocket::uGetIPFromSockAddr_In(sockaddr_in*) {
    return 0;
}

char* CMessageSocket::GetHostName(unsigned int) {
    return nullptr;
}

char* CMessageSocket::IPString(unsigned int, char*, int) {
    return nullptr;
}
