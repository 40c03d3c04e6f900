// Insertion beside one of two marks, and into a token that is split in two.
#include "container/placing.h"
#include "internals.h"
#include "stream/fieldslots.h"

using mlds::Internals;

namespace {

// A new mark linked without being counted or reported: it only gives the far side of the place a
// counterpart, and the insertion that follows is what the viewer is told about.
CSyncMark* LinkUncounted(CStream* pStream, CStreamObj* pLeft, CStreamObj* pRight) {
    CSyncMark* pMark = new CSyncMark(pStream);
    if (pMark == nullptr) return nullptr;
    pMark->LinkBetween(pLeft, pRight);
    return mlds::KeepIfLinked(pMark);
}

// A copy of a token with all its values; null when memory runs out.
CToken* CopyOf(CToken* pToken) {
    CToken* pCopy = new CToken(pToken);
    if (pCopy != nullptr && mlds::NumSlots(pCopy) != mlds::NumSlots(pToken)) {
        delete pCopy;
        return nullptr;
    }
    return pCopy;
}

}  // namespace

bool CPlexa::InsertStreamObject(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight,
                                CStreamObj* pObj, InsertionLocationType where) {
    if (!mlds::BelongsTo(this, pInto) || !mlds::IsInsertable(this, pObj)) return false;
    if (!mlds::BelongsTo(this, pLeft) || !mlds::BelongsTo(this, pRight)) return false;
    bool bDone = true;
    switch (where) {
        case ilAtLeft: bDone = InsertAtLeft(pInto, pLeft, pRight, pObj); break;
        case ilAtRight: bDone = InsertAtRight(pInto, pLeft, pRight, pObj); break;
        case ilSplitToken: bDone = InsertIntoToken(pInto, pLeft, pRight, pObj); break;
        default: break;
    }
    if (bDone) RankPopulatedStreams();
    return bDone;
}

bool CPlexa::InsertAtLeft(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight, CStreamObj* pObj) {
    CSyncMark* pFrom = Internals::CounterpartOrSelf(pLeft, pInto);
    CSyncMark* pTo = Internals::CounterpartOrSelf(pRight, pInto);
    if (!mlds::IsUsable(pFrom)) return false;
    if (pTo == nullptr) {
        pTo = LinkUncounted(pInto, pFrom, Internals::Next(pFrom));
        if (pTo == nullptr) return false;
        pRight->SetToSynchronous(pTo);
    } else if (!mlds::AreNeighbours(pFrom, pTo)) {
        return true;
    }
    InsertStreamObject(pInto, pFrom, pTo, pObj);
    return true;
}

bool CPlexa::InsertAtRight(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight, CStreamObj* pObj) {
    CSyncMark* pFrom = Internals::CounterpartOrSelf(pLeft, pInto);
    CSyncMark* pTo = Internals::CounterpartOrSelf(pRight, pInto);
    if (!mlds::IsUsable(pTo)) return false;
    if (pFrom == nullptr) {
        pFrom = LinkUncounted(pInto, Internals::Prev(pTo), pTo);
        if (pFrom == nullptr) return false;
        pLeft->SetToSynchronous(pFrom);
    } else if (!mlds::AreNeighbours(pFrom, pTo)) {
        return true;
    }
    InsertStreamObject(pInto, pFrom, pTo, pObj);
    return true;
}

bool CPlexa::InsertIntoToken(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight,
                             CStreamObj* pObj) {
    CSyncMark* pBefore = Context(pInto, pLeft, sdLeft);
    CSyncMark* pAfter = Context(pInto, pLeft, sdRight);
    if (!mlds::IsUsable(pBefore) || !mlds::IsUsable(pAfter)) return false;
    CStreamObj* pSplit = Internals::Next(pBefore);
    if (pSplit == nullptr || pInto->GetNumTokens(pBefore, pAfter, false) > 1) return false;
    CToken* pCopy = nullptr;
    if (Internals::IsToken(pSplit)) {
        pCopy = CopyOf(static_cast<CToken*>(pSplit));
        if (pCopy == nullptr) return false;
    }
    CSyncMark* pOpening = new CSyncMark(pInto);
    CSyncMark* pClosing = new CSyncMark(pInto);
    if (pOpening == nullptr || pClosing == nullptr) {
        CStream::DiscardStreamObj(pOpening);
        CStream::DiscardStreamObj(pClosing);
        delete pCopy;
        return false;
    }
    InsertStreamObject(pInto, pBefore, nullptr, pOpening);
    if (!pLeft->IsSynchronous(pBefore)) pLeft->SetToSynchronous(pOpening);
    InsertStreamObject(pInto, pOpening, nullptr, pClosing);
    if (!pRight->IsSynchronous(pAfter)) pRight->SetToSynchronous(pClosing);
    if (pCopy != nullptr) {
        InsertStreamObject(pInto, pBefore, pOpening, pCopy);
        mlds::KeepIfLinked(pCopy);
    }
    InsertStreamObject(pInto, pOpening, pClosing, pObj);
    return true;
}
