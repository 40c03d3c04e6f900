// The possible values of a field by text: a hash table from texts to their positions.
#ifndef MLDS_STREAM_NAMEINDEX_H
#define MLDS_STREAM_NAMEINDEX_H

#include <cstddef>
#include <cstdint>

namespace mlds {

/// Finds the first of equal texts, as a scan from the front would. Holds pointers to the texts;
/// they must live as long as the index.
class NameIndex {
public:
    /// An index over n texts; null when memory runs out.
    static NameIndex* Make(char* const* texts, int n) noexcept;
    ~NameIndex();

    /// The position of the first text equal to this one, or -1.
    int Find(const char* text) const noexcept;

private:
    NameIndex(char* const* texts, std::int32_t* cells, std::size_t mask)
        : m_ppTexts(texts), m_pCells(cells), m_nMask(mask) {}
    NameIndex(const NameIndex&) = delete;
    NameIndex& operator=(const NameIndex&) = delete;

    char* const* m_ppTexts;
    std::int32_t* m_pCells;  // positions, -1 where empty; at most half are used
    std::size_t m_nMask;
};

}  // namespace mlds

#endif
