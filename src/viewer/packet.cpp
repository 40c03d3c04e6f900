// Packets. They hold nothing yet.
#include "mlds/packet.h"

CPacket::CPacket(unsigned int) : m_nSize(0), m_nCapacity(0), m_nPosition(0), m_pData(nullptr) {}

CPacket::CPacket(void*, unsigned int) : CPacket(0) {}

CPacket::CPacket(const CPacket&) : CPacket(0) {}

CPacket& CPacket::operator=(const CPacket& other) {
    m_nSize = other.m_nSize;
    m_nCapacity = other.m_nCapacity;
    m_nPosition = 0;
    return *this;
}

CPacket::~CPacket() {
    m_pData = nullptr;
}

void CPacket::Reset() {
    m_nSize = 0;
    m_nPosition = 0;
}

CPacket& CPacket::operator<<(char) {
    return *this;
}

CPacket& CPacket::operator<<(short) {
    return *this;
}

CPacket& CPacket::operator<<(int) {
    return *this;
}

CPacket& CPacket::operator<<(unsigned long) {
    return *this;
}

CPacket& CPacket::operator<<(const char*) {
    return *this;
}

void CPacket::AddData(void*, int) {}

CPacket& CPacket::operator>>(char& value) {
    value = 0;
    return *this;
}

CPacket& CPacket::operator>>(short& value) {
    value = 0;
    return *this;
}

CPacket& CPacket::operator>>(int& value) {
    value = 0;
    return *this;
}

CPacket& CPacket::operator>>(long& value) {
    value = 0;
    return *this;
}

CPacket& CPacket::operator>>(unsigned long& value) {
    value = 0;
    return *this;
}

CPacket& CPacket::operator>>(char*& text) {
    if (text != nullptr) *text = '\0';
    return *this;
}

int CPacket::GetItemType() {
    return 0;
}

int CPacket::GetItemSize() {
    return 0;
}

unsigned char* CPacket::GetData() {
    return m_pData;
}

int CPacket::GetSize() {
    return static_cast<int>(m_nSize);
}
