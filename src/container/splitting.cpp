// Insertion beside one of two marks, and into a token that is split in two.
#include "container/attempt.h"
#include "container/placing.h"
#include "internals.h"
#include "stream/fieldslots.h"
#include "stream/synctable.h"

using mlds::Internals;
using mlds::SyncTable;

namespace {

// A new mark at a place, tied to another stream's mark that had no counterpart. It is linked
// without being counted or reported: the viewer is told about the insertion that follows. Null
// without memory or place.
CSyncMark* LinkUncounted(CStream* pStream, CSyncMark* pTied, CStreamObj* pLeft,
                         CStreamObj* pRight) {
    CSyncMark* pMark = new CSyncMark(pStream);
    if (pMark == nullptr) return nullptr;
    if (pTied->SetToSynchronous(pMark)) pMark->LinkBetween(pLeft, pRight);
    return mlds::KeepIfLinked(pMark);
}

// What splitting a token needs. What is not in a stream in the end goes away.
struct SplitParts {
    SplitParts(CStream* pStream, CStreamObj* pSplit)
        : pOpening(new CSyncMark(pStream)),
          pClosing(new CSyncMark(pStream)),
          pCopy(Internals::IsToken(pSplit) ? mlds::CopyOf(static_cast<CToken*>(pSplit)) : nullptr),
          pTables{SyncTable::Make(), SyncTable::Make()},
          bComplete(pOpening != nullptr && pClosing != nullptr && pTables[0] != nullptr &&
                    pTables[1] != nullptr && (pCopy != nullptr || !Internals::IsToken(pSplit))) {}
    ~SplitParts() {
        CStream::DiscardStreamObj(pOpening);
        CStream::DiscardStreamObj(pClosing);
        CStream::DiscardStreamObj(pCopy);
        for (SyncTable* pTable : pTables) SyncTable::Free(pTable);
    }
    SplitParts(const SplitParts&) = delete;
    SplitParts& operator=(const SplitParts&) = delete;

    CSyncMark* pOpening;
    CSyncMark* pClosing;
    CToken* pCopy;
    SyncTable* pTables[2];
    bool bComplete;
};

}  // namespace

bool CPlexa::InsertStreamObject(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight,
                                CStreamObj* pObj, InsertionLocationType where) {
    mlds::Attempt attempt(this,
                          "CPlexa::InsertStreamObject(CStream * pStream, CSyncMark * pLeft, "
                          "CSyncMark * pRight, CStreamObj * pObj, InsertionLocationType where)");
    if (!mlds::BelongsTo(this, pInto)) return attempt.Refuse(mlds::kNoStream);
    if (!mlds::IsInsertable(this, pObj)) return attempt.Refuse(mlds::kNotInsertable);
    if (!mlds::BelongsTo(this, pLeft) || !mlds::BelongsTo(this, pRight)) {
        return attempt.Refuse(mlds::kNoMark);
    }
    bool bDone = true;
    switch (where) {
        case ilAtLeft: bDone = InsertAtLeft(pInto, pLeft, pRight, pObj); break;
        case ilAtRight: bDone = InsertAtRight(pInto, pLeft, pRight, pObj); break;
        case ilSplitToken: bDone = InsertIntoToken(pInto, pLeft, pRight, pObj); break;
        default: attempt.Refuse("there is no such place"); break;
    }
    if (!bDone) return attempt.Refuse(mlds::kNoSuchPlace);
    RankPopulatedStreams();
    // Whoever asks for a place between marks that are no neighbours gets nothing, and is told so.
    if (!Internals::IsLinked(pObj)) attempt.Refuse(mlds::kNotPlaced);
    return true;
}

bool CPlexa::InsertAtLeft(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight, CStreamObj* pObj) {
    CSyncMark* pFrom = Internals::CounterpartOrSelf(pLeft, pInto);
    CSyncMark* pTo = Internals::CounterpartOrSelf(pRight, pInto);
    if (!mlds::IsUsable(pFrom)) return false;
    if (pTo == nullptr) {
        pTo = LinkUncounted(pInto, pRight, pFrom, Internals::Next(pFrom));
        if (pTo == nullptr) return false;
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
        pFrom = LinkUncounted(pInto, pLeft, Internals::Prev(pTo), pTo);
        if (pFrom == nullptr) return false;
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
    // Marks of other streams in the chain are no places of this one.
    if (Internals::StreamOf(pBefore) != pInto || Internals::StreamOf(pAfter) != pInto) return false;
    CStreamObj* pSplit = Internals::Next(pBefore);
    if (pSplit == nullptr || pInto->GetNumTokens(pBefore, pAfter, false) > 1) return false;
    // Everything that can run out is had before anything changes.
    SplitParts parts(pInto, pSplit);
    if (!parts.bComplete) return false;
    InsertStreamObject(pInto, pBefore, nullptr, parts.pOpening);
    if (!pLeft->IsSynchronous(pBefore)) {
        Internals::Tie(pLeft, parts.pOpening, parts.pTables[0]);
    }
    InsertStreamObject(pInto, parts.pOpening, nullptr, parts.pClosing);
    if (!pRight->IsSynchronous(pAfter)) {
        Internals::Tie(pRight, parts.pClosing, parts.pTables[1]);
    }
    if (parts.pCopy != nullptr) {
        InsertStreamObject(pInto, pBefore, parts.pOpening, parts.pCopy);
    }
    InsertStreamObject(pInto, parts.pOpening, parts.pClosing, pObj);
    return true;
}
