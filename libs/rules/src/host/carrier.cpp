// Places of one tier in another.
#include "host/carrier.h"

namespace mlds::rules {

namespace {

// How far a look along the tier goes before the container is asked, whose search knows all tiers.
constexpr int kLongestLook = 64;

bool HasTokenBetween(CSyncMark* pLeft, CSyncMark* pRight) {
    for (CStreamObj* p = pLeft; p != nullptr && p != pRight; p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) return true;
    }
    return false;
}

}  // namespace

CSyncMark* MarkRightOf(CStreamObj* p) {
    CStreamObj* pNext = p->GetNextStreamObj();
    return pNext != nullptr && pNext->GetObjectType(otSyncMark) ? static_cast<CSyncMark*>(pNext)
                                                                : nullptr;
}

CToken* TokenRightOf(CStreamObj* p) {
    CStreamObj* pNext = p->GetNextStreamObj();
    return pNext != nullptr && pNext->GetObjectType(otToken) ? static_cast<CToken*>(pNext)
                                                             : nullptr;
}

CToken* TokenLeftOf(CStreamObj* p) {
    CStreamObj* pPrev = p->GetPrevStreamObj();
    return pPrev != nullptr && pPrev->GetObjectType(otToken) ? static_cast<CToken*>(pPrev)
                                                             : nullptr;
}

CSyncMark* Carrier::Remembered(CSyncMark* pMark, CSyncMark* pTarget) {
    m_pLastFrom = pMark;
    m_pLastTo = pTarget;
    return pTarget;
}

// A new mark immediately behind one of the target, tied to a mark that has none there.
CSyncMark* Carrier::TieBehind(CSyncMark* pLeft, CSyncMark* pMark) {
    CSyncMark* pNew = m_plexa.CreateSyncMark(m_pTo);
    if (pNew == nullptr) return nullptr;
    if (!m_pTo->InsertStreamObj(pNew, iwRightOf, pLeft)) {
        CStream::DiscardStreamObj(pNew);
        return nullptr;
    }
    pMark->SetToSynchronous(pNew);
    return pNew;
}

bool Carrier::IsTakenAt(CSyncMark* pMark) {
    CSyncMark* pTarget = pMark->GetCorrespondingSyncMark(m_pTo);
    return pTarget != nullptr && TokenRightOf(pTarget) != nullptr;
}

// The target's marks nearest to both places, as far as marks of this tier lead there. They may lie
// too far out: other tiers may tie nearer ones.
Carrier::Bounds Carrier::NearBounds(CSyncMark* pLeft, CSyncMark* pRight) {
    Bounds bounds;
    CSyncMark* p = pLeft;
    for (int i = 0; i < kLongestLook && p != nullptr && bounds.pLeft == nullptr; ++i) {
        bounds.pLeft = p == m_pLastFrom ? m_pLastTo : p->GetCorrespondingSyncMark(m_pTo);
        p = p->GetPrevSyncMark();
    }
    p = pRight;
    for (int i = 0; i < kLongestLook && p != nullptr && bounds.pRight == nullptr; ++i) {
        bounds.pRight = p->GetCorrespondingSyncMark(m_pTo);
        p = p->GetNextSyncMark();
    }
    return bounds;
}

Carrier::Bounds Carrier::ExactBounds(CSyncMark* pLeft, CSyncMark* pRight) {
    return {m_plexa.Context(m_pTo, pLeft, sdLeft), m_plexa.Context(m_pTo, pRight, sdRight)};
}

bool Carrier::IsOpen(CSyncMark* pLeft, CSyncMark* pRight) {
    CSyncMark* pFrom = pLeft->GetCorrespondingSyncMark(m_pTo);
    if (pFrom != nullptr && TokenRightOf(pFrom) != nullptr) return false;
    // Behind what was carried last there is often nothing at all yet.
    if (pFrom != nullptr && MarkRightOf(pFrom) == m_pTo->pGetLastStreamObj()) return true;
    const Bounds near = NearBounds(pLeft, pRight);
    if (near.pLeft != nullptr && near.pRight != nullptr) {
        if (!HasTokenBetween(near.pLeft, near.pRight)) return true;
        const bool bExact =
            pFrom != nullptr && pRight->GetCorrespondingSyncMark(m_pTo) == near.pRight;
        if (bExact) return false;
    }
    const Bounds exact = ExactBounds(pLeft, pRight);
    return exact.pLeft != nullptr && exact.pRight != nullptr &&
           !HasTokenBetween(exact.pLeft, exact.pRight);
}

CSyncMark* Carrier::Carry(CSyncMark* pMark) {
    if (CSyncMark* pTarget = pMark->GetCorrespondingSyncMark(m_pTo)) {
        return Remembered(pMark, pTarget);
    }
    // In a sweep the new place is behind the last one, and mostly nothing follows there yet, or
    // what is tied to a place further on.
    if (m_pLastTo != nullptr) {
        if (CSyncMark* pNext = MarkRightOf(m_pLastTo)) {
            CSyncMark* pNextFrom = pNext->GetCorrespondingSyncMark(m_pFrom);
            const bool bBeyond = pNextFrom != nullptr && pNextFrom->RightOf(pMark);
            if (bBeyond) return Remembered(pMark, TieBehind(m_pLastTo, pMark));
        }
    }
    Bounds bounds = NearBounds(pMark, pMark);
    const bool bClose = bounds.pLeft != nullptr && bounds.pRight != nullptr &&
                        MarkRightOf(bounds.pLeft) == bounds.pRight;
    if (!bClose) {
        bounds = ExactBounds(pMark, pMark);
        if (bounds.pLeft == nullptr || bounds.pRight == nullptr ||
            HasTokenBetween(bounds.pLeft, bounds.pRight)) {
            return nullptr;
        }
    }
    return Remembered(pMark, TieBehind(bounds.pLeft, pMark));
}

}  // namespace mlds::rules
