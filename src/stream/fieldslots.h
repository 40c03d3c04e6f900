// A token's field values: one slot per field, in one block that copies of the token can share.
#ifndef MLDS_STREAM_FIELDSLOTS_H
#define MLDS_STREAM_FIELDSLOTS_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>

#include "internals.h"
#include "stream/memory.h"

namespace mlds {

struct FieldSlot {
    FieldValType type;
    std::int32_t value;
};

struct FieldSlots {
    std::uint32_t nTokens;  // how many tokens use the block
    std::uint32_t nSlots;

    FieldSlot* slots() { return reinterpret_cast<FieldSlot*>(this + 1); }

    static std::size_t SizeFor(std::uint32_t nSlots) {
        return sizeof(FieldSlots) + nSlots * sizeof(FieldSlot);
    }
    /// Slots whose contents are still to be written; null when memory runs out.
    static FieldSlots* Make(std::uint32_t nSlots) noexcept {
        void* p = AllocateBlock(SizeFor(nSlots));
        if (p == nullptr) return nullptr;
        auto* pSlots = new (p) FieldSlots{1, nSlots};
        for (std::uint32_t i = 0; i < nSlots; ++i) new (pSlots->slots() + i) FieldSlot;
        return pSlots;
    }
    static void LetGo(FieldSlots* p) noexcept {
        if (p != nullptr && --p->nTokens == 0) FreeBlock(p, SizeFor(p->nSlots));
    }
};

static_assert(sizeof(FieldSlots) == 8 && sizeof(FieldSlot) == 8);

/// The slot of a field; null if the token has no such field.
inline FieldSlot* SlotAt(CToken* pToken, int i) {
    FieldSlots* pSlots = Internals::Slots(pToken);
    if (pSlots == nullptr || i < 0 || static_cast<std::uint32_t>(i) >= pSlots->nSlots) {
        return nullptr;
    }
    return pSlots->slots() + i;
}

inline int NumSlots(CToken* pToken) {
    FieldSlots* pSlots = Internals::Slots(pToken);
    return pSlots != nullptr ? static_cast<int>(pSlots->nSlots) : 0;
}

/// A copy of a token with all its values, in no stream; null when memory runs out.
inline CToken* CopyOf(CToken* pToken) {
    CToken* pCopy = new CToken(pToken);
    if (pCopy != nullptr && NumSlots(pCopy) != NumSlots(pToken)) {
        delete pCopy;
        return nullptr;
    }
    return pCopy;
}

/// True if the token got all the slots that its stream asked for.
inline bool HasAllSlots(CToken* pToken, const CStream* pStream) {
    return Internals::Slots(pToken) != nullptr || Internals::NumFields(pStream) == 0;
}

/// True if type and value of two slots agree. Floats agree unless one is the greater, so that
/// a NaN agrees with everything; types beyond the known ones agree with nothing.
inline bool SlotsAgree(const FieldSlot& a, const FieldSlot& b) {
    if (a.type != b.type || a.type > fvChar) {
        return false;
    }
    if (a.type != fvFloat) return a.value == b.value;
    const float x = std::bit_cast<float>(a.value);
    const float y = std::bit_cast<float>(b.value);
    return !(x < y) && !(x > y);
}

}  // namespace mlds

#endif
