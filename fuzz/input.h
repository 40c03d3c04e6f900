// What the fuzz targets share: reading an input, and stopping at what must not be.
#ifndef MLDS_FUZZ_INPUT_H
#define MLDS_FUZZ_INPUT_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unordered_set>

#include "mlds/mlds.h"

namespace mlds_fuzz {

/// The bytes of an input, one after the other; zeros after the last. Targets read them as arguments
/// of calls: clang, which libFuzzer needs, evaluates arguments from left to right.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_p(data), m_pEnd(data + size) {}

    bool IsOver() const { return m_p == m_pEnd; }
    unsigned Byte() { return IsOver() ? 0 : *m_p++; }
    unsigned Below(std::size_t n) { return Byte() % static_cast<unsigned>(n); }
    bool Flag() { return (Byte() & 1) != 0; }

private:
    const std::uint8_t* m_p;
    const std::uint8_t* m_pEnd;
};

inline void Require(bool bHolds, const std::string& what) {
    if (bHolds) return;
    std::fprintf(stderr, "FAILED: %s\n", what.c_str());
    std::abort();
}

/// Adds all objects of a container to `linked`. Requires what holds whatever a caller does: links
/// agree both ways, and no object is linked twice or lies in another container than its own. Order
/// indices grow, if wanted: reading them settles a numbering that was put off.
inline void CollectLinked(CPlexa& plexa, std::unordered_set<CStreamObj*>& linked, bool bIndices) {
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        CStreamObj* pPrev = nullptr;
        CStreamObj* p = plexa.pStream(i)->pGetFirstStreamObj();
        for (; p != nullptr; pPrev = p, p = p->GetNextStreamObj()) {
            Require(linked.insert(p).second, "an object is linked twice");
            Require(p->GetPrevStreamObj() == pPrev, "a left link is not the left neighbour");
            Require(p->GetStream()->pGetStreamPlexa() == &plexa, "linked in another container");
            Require(!bIndices || pPrev == nullptr || pPrev->GetOrderIndex() < p->GetOrderIndex(),
                    "an order index does not grow");
        }
        Require(pPrev == plexa.pStream(i)->pGetLastStreamObj(), "the end sentinel is not the end");
    }
}

}  // namespace mlds_fuzz

#endif
