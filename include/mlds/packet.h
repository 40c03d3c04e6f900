// Packets: typed items as bytes, as they travel to the viewer and back.
#ifndef MLDS_PACKET_H
#define MLDS_PACKET_H

#include <cstdint>

#include "mlds/export.h"

/// A byte buffer of fixed capacity for typed items. Not available yet: nothing is written, and
/// everything reads as 0 or as the empty text.
class MLDS_API CPacket {
public:
    /// An empty packet of the given capacity in bytes.
    explicit CPacket(unsigned int capacity);
    /// A packet over a copy of n bytes.
    CPacket(void* bytes, unsigned int n);
    CPacket(const CPacket& other);
    CPacket& operator=(const CPacket& other);
    ~CPacket();

    void Reset();
    CPacket& operator<<(char value);
    CPacket& operator<<(short value);
    CPacket& operator<<(int value);
    CPacket& operator<<(unsigned long value);
    CPacket& operator<<(const char* text);
    void AddData(void* bytes, int n);
    CPacket& operator>>(char& value);
    CPacket& operator>>(short& value);
    CPacket& operator>>(int& value);
    CPacket& operator>>(long& value);
    CPacket& operator>>(unsigned long& value);
    /// Reads a text into the caller's buffer.
    CPacket& operator>>(char*& text);
    int GetItemType();
    int GetItemSize();
    unsigned char* GetData();
    int GetSize();

private:
    std::uint32_t m_nSize;
    std::uint32_t m_nCapacity;
    std::uint32_t m_nPosition;
    unsigned char* m_pData;
};

#endif
