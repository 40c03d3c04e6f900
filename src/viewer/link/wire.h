// Items as bytes: a type code, a length for texts and data, and the value, all numbers big-endian.
#ifndef MLDS_VIEWER_LINK_WIRE_H
#define MLDS_VIEWER_LINK_WIRE_H

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace mlds::wire {

enum ItemType : std::uint32_t {
    itemShort = 2,
    itemInt = 3,
    itemString = 8,
    itemChar = 17,
    itemData = 24
};

constexpr std::uint32_t kIntItemSize = 8;

inline bool IsCounted(std::uint32_t type) {
    return type == itemString || type == itemData;
}

inline void PutWord(unsigned char* p, std::uint32_t word) {
    for (int shift = 24; shift >= 0; shift -= 8) *p++ = static_cast<unsigned char>(word >> shift);
}

inline std::uint32_t GetWord(const unsigned char* p) {
    return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | p[3];
}

/// The bytes that an item takes whose value has n bytes. Other values than texts and data are the
/// first bytes of a word; 0 for those that have more or fewer than there can be.
inline std::uint64_t ItemSize(std::uint32_t type, const void* pValue, std::int64_t n) {
    if (n < 0 || (pValue == nullptr && n > 0) || (!IsCounted(type) && n > 4)) return 0;
    return static_cast<std::uint64_t>(n) + (IsCounted(type) ? 8 : 4);
}

/// Writes an item where there is room for ItemSize() bytes. Values that are no texts or data are
/// read as a word of 32 bits, of which the high-order bytes go out.
inline void PutItem(unsigned char* p, std::uint32_t type, const void* pValue, std::uint32_t n) {
    PutWord(p, type);
    p += 4;
    if (IsCounted(type)) {
        PutWord(p, n);
        if (n > 0) std::memcpy(p + 4, pValue, n);
        return;
    }
    if (n == 0) return;
    std::uint32_t word = 0;
    std::memcpy(&word, pValue, sizeof word);
    unsigned char image[4];
    PutWord(image, word);
    std::memcpy(p, image, n);
}

/// Reads items in order from received bytes and never beyond them: an item that is not whole, or
/// not of the type asked for, stays where it is.
class ItemReader {
public:
    ItemReader(const void* pBytes, std::uint32_t n, std::uint32_t& position)
        : m_p(static_cast<const unsigned char*>(pBytes)),
          m_nSize(m_p != nullptr ? n : 0),
          m_nPosition(position) {}

    /// The type code of the next item; 0 at the end.
    std::uint32_t Type() const { return Has(4) ? GetWord(m_p + m_nPosition) : 0; }
    /// The length of the next item; 0 if it is no whole text or data.
    std::uint32_t Length() const {
        if (!IsCounted(Type()) || !Has(8)) return 0;
        const std::uint32_t n = GetWord(m_p + m_nPosition + 4);
        return Has(std::uint64_t{8} + n) ? n : 0;
    }
    /// The big-endian value, of 1, 2 or 4 bytes; 0 if there is none.
    std::uint32_t TakeNumber(ItemType type, std::uint32_t nBytes) {
        if (Type() != type || !Has(std::uint64_t{4} + nBytes)) return 0;
        std::uint32_t value = 0;
        const unsigned char* p = m_p + m_nPosition + 4;
        for (std::uint32_t i = 0; i < nBytes; ++i) value = value << 8 | p[i];
        m_nPosition += 4 + nBytes;
        return value;
    }
    /// Copies a text with its terminator; an empty one if there is none. `out` must have room for
    /// Length() + 1 characters.
    void TakeText(char* out) {
        std::uint32_t n = 0;
        if (Type() == itemString && Has(8)) {
            n = Length();
            const bool bWhole = n == GetWord(m_p + m_nPosition + 4);
            if (n > 0) std::memcpy(out, m_p + m_nPosition + 8, n);
            if (bWhole) m_nPosition += 8 + n;
        }
        out[n] = '\0';
    }

private:
    bool Has(std::uint64_t n) const { return m_nPosition < m_nSize && m_nSize - m_nPosition >= n; }

    const unsigned char* m_p;
    std::uint32_t m_nSize;
    std::uint32_t& m_nPosition;
};

}  // namespace mlds::wire

#endif
