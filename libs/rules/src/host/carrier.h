// Places of one tier in another.
#ifndef MLDS_RULES_CARRIER_H
#define MLDS_RULES_CARRIER_H

#include "mlds/mlds.h"

namespace mlds::rules {

/// Carries marks of one tier into another, where there is nothing in the way. Made for one sweep
/// from left to right: it remembers where it was, so that the next place is found at once. What it
/// remembers holds as long as only it and the caller's insertions between carried marks change the
/// target.
class Carrier {
public:
    Carrier(CPlexa& plexa, CStream* pFrom, CStream* pTo)
        : m_plexa(plexa), m_pFrom(pFrom), m_pTo(pTo) {}

    /// Forgets where it was: another sweep begins.
    void Restart() { m_pLastFrom = m_pLastTo = nullptr; }

    /// The mark at that place in the target, made if needed; null where a token lies across it.
    CSyncMark* Carry(CSyncMark* pMark);

    /// True if no token of the target lies between the places of two marks, or across one of them.
    /// Changes nothing.
    bool IsOpen(CSyncMark* pLeft, CSyncMark* pRight);

    /// True if a token begins at the place of a mark in the target, as far as a look shows it
    /// without a search: the common case of what is filled already.
    bool IsTakenAt(CSyncMark* pMark);

private:
    enum class Way { open, taken, unknown };

    CSyncMark* NearestOnTheLeft(CSyncMark* pMark);
    Way Look(CSyncMark* pLeft, CSyncMark* pRight);
    CSyncMark* CarryBySearch(CSyncMark* pMark);
    CSyncMark* TieBehind(CSyncMark* pLeft, CSyncMark* pMark);
    CSyncMark* Remembered(CSyncMark* pMark, CSyncMark* pTarget);

    CPlexa& m_plexa;
    CStream* m_pFrom;
    CStream* m_pTo;
    CSyncMark* m_pLastFrom = nullptr;  // the pair that was carried last
    CSyncMark* m_pLastTo = nullptr;
};

/// The neighbour on the right if it is a mark, or a token; null otherwise.
inline CSyncMark* MarkRightOf(CStreamObj* p) {
    CStreamObj* pNext = p->GetNextStreamObj();
    return pNext != nullptr && pNext->GetObjectType(otSyncMark) ? static_cast<CSyncMark*>(pNext)
                                                                : nullptr;
}
inline CToken* TokenRightOf(CStreamObj* p) {
    CStreamObj* pNext = p->GetNextStreamObj();
    return pNext != nullptr && pNext->GetObjectType(otToken) ? static_cast<CToken*>(pNext)
                                                             : nullptr;
}
/// Likewise on the left.
inline CToken* TokenLeftOf(CStreamObj* p) {
    CStreamObj* pPrev = p->GetPrevStreamObj();
    return pPrev != nullptr && pPrev->GetObjectType(otToken) ? static_cast<CToken*>(pPrev)
                                                             : nullptr;
}

}  // namespace mlds::rules

#endif
