// Packets: typed items as bytes, as they travel to the viewer and back.
#ifndef MLDS_PACKET_H
#define MLDS_PACKET_H

#include <cstdint>

#include "mlds/export.h"

/// A byte buffer of fixed capacity: items are appended at its cursor, and read from it in order.
///
/// Nothing fails aloud. An item that does not fit is dropped. Reading an item of another type, one
/// that is not whole, or behind the end gives 0 or the empty text, and the cursor stays; so look at
/// GetItemType() first where that matters.
class MLDS_API CPacket {
public:
    /// An empty packet of the given capacity in bytes; of none when memory runs out.
    explicit CPacket(unsigned int capacity);
    /// A packet over a copy of n bytes, to be read.
    CPacket(void* bytes, unsigned int n);
    /// A deep copy, with its cursor at the start.
    CPacket(const CPacket& other);
    CPacket& operator=(const CPacket& other);
    ~CPacket();

    /// Forgets all items.
    void Reset();

    /// Append an item. Of a char or short it is the high-order byte or bytes of the value as a
    /// 32-bit number that go out, which is its sign. A null text becomes an empty one.
    CPacket& operator<<(char value);
    CPacket& operator<<(short value);
    CPacket& operator<<(int value);
    /// The low 32 bits, as an int item.
    CPacket& operator<<(unsigned long value);
    CPacket& operator<<(const char* text);
    /// Appends n bytes of any kind; nothing if n is negative, or the bytes null and n not 0. They
    /// cannot be read back by an operator, only with GetData().
    void AddData(void* bytes, int n);

    CPacket& operator>>(char& value);
    CPacket& operator>>(short& value);
    CPacket& operator>>(int& value);
    /// An int item, with its sign.
    CPacket& operator>>(long& value);
    /// An int item, without a sign.
    CPacket& operator>>(unsigned long& value);
    /// Copies a text to where `text` points, which must have room for GetItemSize() + 1 characters.
    CPacket& operator>>(char*& text);

    /// The type code of the item at the cursor, 0 at the end: 2 short, 3 int, 8 text, 17 char, 24
    /// data.
    int GetItemType();
    /// The length of the text or data at the cursor; 0 if there is no whole one.
    int GetItemSize();
    /// The bytes, owned by the packet, and their number.
    unsigned char* GetData();
    int GetSize();

private:
    MLDS_LOCAL void AppendPacket(std::uint32_t type, const void* value, std::int64_t n);
    MLDS_LOCAL void CopyFrom(const CPacket& other);
    MLDS_LOCAL std::uint32_t Filled() const;

    std::uint32_t m_nSize;
    std::uint32_t m_nCapacity;
    std::uint32_t m_nPosition;
    unsigned char* m_pData;
};

#endif
