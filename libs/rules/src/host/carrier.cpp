// Places of one tier in another.
#include "host/carrier.h"

namespace mlds::rules {

namespace {

// How far a look along the tier goes back before the container is asked, whose search knows all
// tiers.
constexpr int kLongestLook = 64;

bool HasTokenBetween(CSyncMark* pLeft, CSyncMark* pRight) {
    for (CStreamObj* p = pLeft; p != nullptr && p != pRight; p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) return true;
    }
    return false;
}

}  // namespace

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

// The target's nearest mark at or left of a place, as far as this tier knows. Others may tie nearer
// ones, which a walk along the target then comes by. Null if none is near.
CSyncMark* Carrier::NearestOnTheLeft(CSyncMark* pMark) {
    if (CSyncMark* pHere = pMark->GetCorrespondingSyncMark(m_pTo)) return pHere;
    if (m_pLastFrom != nullptr && m_pLastTo != nullptr && m_pLastFrom->LeftOf(pMark)) {
        return m_pLastTo;
    }
    CSyncMark* p = pMark->GetPrevSyncMark();
    for (int i = 0; i < kLongestLook && p != nullptr; ++i, p = p->GetPrevSyncMark()) {
        if (CSyncMark* pThere = p->GetCorrespondingSyncMark(m_pTo)) return pThere;
    }
    return nullptr;
}

// Looks along the target from the place of one mark to that of another. A mark that is tied to
// others but not to this tier could stand anywhere between: then only a search can tell.
Carrier::Way Carrier::Look(CSyncMark* pLeft, CSyncMark* pRight) {
    CSyncMark* pFrom = NearestOnTheLeft(pLeft);
    if (pFrom == nullptr) return Way::unknown;
    bool bAtLeft = pFrom == pLeft->GetCorrespondingSyncMark(m_pTo);
    bool bToken = false;  // seen left of the place, as far as is known
    for (CStreamObj* p = pFrom->GetNextStreamObj(); p != nullptr; p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) {
            if (bAtLeft) return Way::taken;
            bToken = true;
            continue;
        }
        auto* pMark = static_cast<CSyncMark*>(p);
        CSyncMark* pThere = pMark->GetCorrespondingSyncMark(m_pFrom);
        if (pThere == nullptr) {
            if (pMark->IsSynchronous()) return Way::unknown;
            continue;
        }
        const bool bBefore = pThere->LeftOf(pLeft);
        // A token between a place before and one behind lies across.
        if (bToken && !bBefore && pThere != pLeft) return Way::taken;
        bToken = false;
        if (!pThere->LeftOf(pRight)) return Way::open;
        bAtLeft = !bBefore;
    }
    return Way::unknown;
}

bool Carrier::IsOpen(CSyncMark* pLeft, CSyncMark* pRight) {
    const Way way = Look(pLeft, pRight);
    if (way != Way::unknown) return way == Way::open;
    CSyncMark* pFrom = m_plexa.Context(m_pTo, pLeft, sdLeft);
    CSyncMark* pTo = m_plexa.Context(m_pTo, pRight, sdRight);
    return pFrom != nullptr && pTo != nullptr && !HasTokenBetween(pFrom, pTo);
}

CSyncMark* Carrier::CarryBySearch(CSyncMark* pMark) {
    CSyncMark* pLeft = m_plexa.Context(m_pTo, pMark, sdLeft);
    CSyncMark* pRight = m_plexa.Context(m_pTo, pMark, sdRight);
    if (pLeft == nullptr || pRight == nullptr || HasTokenBetween(pLeft, pRight)) return nullptr;
    return Remembered(pMark, TieBehind(pLeft, pMark));
}

// The new mark goes behind the last one of the target that stands before the place, if what follows
// there stands behind it.
CSyncMark* Carrier::Carry(CSyncMark* pMark) {
    if (CSyncMark* pTarget = pMark->GetCorrespondingSyncMark(m_pTo)) {
        return Remembered(pMark, pTarget);
    }
    CSyncMark* pBehind = NearestOnTheLeft(pMark);
    if (pBehind == nullptr) return CarryBySearch(pMark);
    bool bToken = false;
    for (CStreamObj* p = pBehind->GetNextStreamObj(); p != nullptr; p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) {
            bToken = true;
            continue;
        }
        auto* pNext = static_cast<CSyncMark*>(p);
        CSyncMark* pThere = pNext->GetCorrespondingSyncMark(m_pFrom);
        if (pThere == nullptr) {
            if (pNext->IsSynchronous()) return CarryBySearch(pMark);
            continue;
        }
        if (pThere->RightOf(pMark)) {
            return bToken ? nullptr : Remembered(pMark, TieBehind(pBehind, pMark));
        }
        pBehind = pNext;
        bToken = false;
    }
    return nullptr;
}

}  // namespace mlds::rules
