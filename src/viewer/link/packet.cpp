// Packets: typed items written to and read from a buffer of fixed capacity.
#include "mlds/packet.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "viewer/link/wire.h"

using namespace mlds::wire;

namespace {

// Zeros: writing into a packet that has been read from leaves gaps that count as filled.
unsigned char* NewBuffer(std::uint32_t capacity) {
    return static_cast<unsigned char*>(std::calloc(capacity != 0 ? capacity : 1, 1));
}

}  // namespace

CPacket::CPacket(unsigned int capacity)
    : m_nSize(0), m_nCapacity(capacity), m_nPosition(0), m_pData(NewBuffer(capacity)) {
    if (m_pData == nullptr) m_nCapacity = 0;
}

CPacket::CPacket(void* bytes, unsigned int n) : CPacket(bytes != nullptr ? n : 0) {
    m_nSize = m_nCapacity;
    if (m_nSize > 0) std::memcpy(m_pData, bytes, m_nSize);
}

CPacket::CPacket(const CPacket& other) : CPacket(other.m_nCapacity) {
    CopyFrom(other);
}

CPacket& CPacket::operator=(const CPacket& other) {
    if (this == &other) return *this;
    if (m_nCapacity != other.m_nCapacity) {
        unsigned char* pData = NewBuffer(other.m_nCapacity);
        std::free(m_pData);
        m_pData = pData;
        m_nCapacity = pData != nullptr ? other.m_nCapacity : 0;
    }
    CopyFrom(other);
    return *this;
}

CPacket::~CPacket() {
    std::free(m_pData);
}

void CPacket::CopyFrom(const CPacket& other) {
    m_nPosition = 0;
    m_nSize = m_nCapacity == other.m_nCapacity ? other.m_nSize : 0;
    // Writing into a packet that has been read from counts its items twice.
    if (const std::uint32_t n = Filled(); n > 0) std::memcpy(m_pData, other.m_pData, n);
}

void CPacket::Reset() {
    m_nSize = 0;
    m_nPosition = 0;
}

std::uint32_t CPacket::Filled() const {
    return std::min(m_nSize, m_nCapacity);
}

void CPacket::AppendPacket(std::uint32_t type, const void* value, std::int64_t n) {
    const std::uint64_t size = ItemSize(type, value, n);
    if (size == 0 || size > m_nCapacity - std::min(m_nPosition, m_nCapacity)) return;
    PutItem(m_pData + m_nPosition, type, value, static_cast<std::uint32_t>(n));
    m_nPosition += static_cast<std::uint32_t>(size);
    m_nSize += static_cast<std::uint32_t>(size);
}

// Of a char or short the high-order bytes go out, those that its sign fills.
CPacket& CPacket::operator<<(char value) {
    // NOLINTNEXTLINE(bugprone-signed-char-misuse): its sign is what goes out
    const std::int32_t word = static_cast<signed char>(value);
    AppendPacket(itemChar, &word, 1);
    return *this;
}

CPacket& CPacket::operator<<(short value) {
    const std::int32_t word = value;
    AppendPacket(itemShort, &word, 2);
    return *this;
}

CPacket& CPacket::operator<<(int value) {
    AppendPacket(itemInt, &value, 4);
    return *this;
}

CPacket& CPacket::operator<<(unsigned long value) {
    return *this << static_cast<int>(value);
}

CPacket& CPacket::operator<<(const char* text) {
    if (text == nullptr) text = "";
    AppendPacket(itemString, text, static_cast<std::int64_t>(std::strlen(text)));
    return *this;
}

void CPacket::AddData(void* bytes, int n) {
    AppendPacket(itemData, bytes, n);
}

CPacket& CPacket::operator>>(char& value) {
    value = static_cast<char>(ItemReader(m_pData, Filled(), m_nPosition).TakeNumber(itemChar, 1));
    return *this;
}

CPacket& CPacket::operator>>(short& value) {
    value = static_cast<short>(ItemReader(m_pData, Filled(), m_nPosition).TakeNumber(itemShort, 2));
    return *this;
}

CPacket& CPacket::operator>>(int& value) {
    value = static_cast<int>(ItemReader(m_pData, Filled(), m_nPosition).TakeNumber(itemInt, 4));
    return *this;
}

CPacket& CPacket::operator>>(long& value) {
    int word = 0;
    *this >> word;
    value = word;
    return *this;
}

CPacket& CPacket::operator>>(unsigned long& value) {
    value = ItemReader(m_pData, Filled(), m_nPosition).TakeNumber(itemInt, 4);
    return *this;
}

CPacket& CPacket::operator>>(char*& text) {
    if (text != nullptr) ItemReader(m_pData, Filled(), m_nPosition).TakeText(text);
    return *this;
}

int CPacket::GetItemType() {
    return static_cast<int>(ItemReader(m_pData, Filled(), m_nPosition).Type());
}

int CPacket::GetItemSize() {
    return static_cast<int>(ItemReader(m_pData, Filled(), m_nPosition).Length());
}

unsigned char* CPacket::GetData() {
    return m_pData;
}

int CPacket::GetSize() {
    return static_cast<int>(m_nSize);
}
