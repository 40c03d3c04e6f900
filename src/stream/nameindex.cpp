// The hash table behind a field's possible values.
#include "stream/nameindex.h"

#include <cstring>
#include <new>

namespace mlds {

namespace {

std::size_t Hash(const char* text) {
    std::size_t h = 5381;
    for (; *text != '\0'; ++text) h = h * 33 + static_cast<unsigned char>(*text);
    return h ^ (h >> 7);
}

}  // namespace

NameIndex* NameIndex::Make(char* const* texts, int n) noexcept {
    std::size_t nCells = 8;
    while (nCells < 2 * static_cast<std::size_t>(n)) nCells *= 2;
    auto* pCells = new (std::nothrow) std::int32_t[nCells];
    if (pCells == nullptr) return nullptr;
    auto* pIndex = new (std::nothrow) NameIndex(texts, pCells, nCells - 1);
    if (pIndex == nullptr) {
        delete[] pCells;
        return nullptr;
    }
    for (std::size_t i = 0; i < nCells; ++i) pCells[i] = -1;
    for (int i = 0; i < n; ++i) {
        if (pIndex->Find(texts[i]) >= 0) continue;
        std::size_t cell = Hash(texts[i]) & pIndex->m_nMask;
        while (pCells[cell] >= 0) cell = (cell + 1) & pIndex->m_nMask;
        pCells[cell] = i;
    }
    return pIndex;
}

NameIndex::~NameIndex() {
    delete[] m_pCells;
}

int NameIndex::Find(const char* text) const noexcept {
    for (std::size_t cell = Hash(text) & m_nMask; m_pCells[cell] >= 0;
         cell = (cell + 1) & m_nMask) {
        if (std::strcmp(m_ppTexts[m_pCells[cell]], text) == 0) return m_pCells[cell];
    }
    return -1;
}

}  // namespace mlds
