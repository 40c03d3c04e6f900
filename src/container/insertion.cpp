// Insertion of objects between marks.
#include "container/attempt.h"
#include "container/placing.h"
#include "internals.h"

using mlds::Bounds;
using mlds::Internals;

namespace {

bool IsTokenOrMark(const CStreamObj* p) {
    return Internals::IsToken(p) || Internals::IsSyncMark(p);
}

bool AreInsertable(CPlexa* pPlexa, CStreamObj** objs, int count) {
    for (int i = 0; i < count; ++i) {
        if (objs[i] == nullptr) return false;
        if (IsTokenOrMark(objs[i]) && !mlds::IsInsertable(pPlexa, objs[i])) return false;
    }
    return true;
}

// Where an object goes that was given only a left mark: before what follows, unless that would join
// two tokens.
CStreamObj* RightPlaceFor(CStreamObj* pObj, CStream* pStream, CSyncMark* pLeft) {
    CStreamObj* pNext = Internals::Next(pLeft);
    if (pNext != nullptr && Internals::IsSyncMark(pObj)) return pNext;
    return mlds::MarkRightOf(pStream, pLeft);
}

CStreamObj* LeftPlaceFor(CStreamObj* pObj, CStream* pStream, CSyncMark* pRight) {
    CStreamObj* pPrev = Internals::Prev(pRight);
    if (pPrev != nullptr && Internals::IsSyncMark(pObj)) return pPrev;
    return mlds::MarkLeftOf(pStream, pRight);
}

}  // namespace

bool CPlexa::InsertStreamObject(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight,
                                CStreamObj* pObj) {
    mlds::Attempt attempt(this,
                          "CPlexa::InsertStreamObject(CStream * pStream, CSyncMark * pLeft, "
                          "CSyncMark * pRight, CStreamObj * pObj)");
    if (!mlds::BelongsTo(this, pInto)) return attempt.Refuse(mlds::kNoStream);
    if (!mlds::IsInsertable(this, pObj)) return attempt.Refuse(mlds::kNotInsertable);
    Bounds bounds;
    if (!bounds.Carry(this, pInto, pLeft, pRight)) return attempt.Refuse(mlds::kNotCarried);
    CStreamObj* pFrom = bounds.pLeft;
    CStreamObj* pTo = bounds.pRight;
    if (pFrom != nullptr && pTo != nullptr && pFrom != pTo) {
        if (!mlds::LiesRightOf(bounds.pRight, bounds.pLeft)) return attempt.Refuse(mlds::kNoPlace);
        DelayMessageDisplay(true);
        mlds::RemoveBetween(pInto, bounds.pLeft, bounds.pRight);
        DelayMessageDisplay(false);
    } else if (pFrom != nullptr && pTo == nullptr) {
        pTo = RightPlaceFor(pObj, pInto, bounds.pLeft);
        if (pTo == nullptr && Internals::Next(pFrom) != nullptr) {
            return attempt.Refuse(mlds::kOutOfMemory);
        }
    } else if (pFrom == nullptr && pTo != nullptr) {
        pFrom = LeftPlaceFor(pObj, pInto, bounds.pRight);
        if (pFrom == nullptr && Internals::Prev(pTo) != nullptr) {
            return attempt.Refuse(mlds::kOutOfMemory);
        }
    }
    // The object goes in only between two places that were found; a refusal still counts as done.
    if (pFrom == nullptr || pTo == nullptr || !pInto->InsertStreamObj(pObj, pFrom, pTo)) {
        attempt.Refuse(mlds::kNotPlaced);
    }
    RankPopulatedStreams();
    return true;
}

bool CPlexa::InsertStreamObjects(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight,
                                 CStreamObj** objs, int count) {
    mlds::Attempt attempt(this,
                          "CPlexa::InsertStreamObjects(CStream * pStream, CSyncMark * pLeft, "
                          "CSyncMark * pRight, CStreamObj ** objs, int count)");
    if (!mlds::BelongsTo(this, pInto)) return attempt.Refuse(mlds::kNoStream);
    if ((objs == nullptr && count > 0) || !AreInsertable(this, objs, count)) {
        return attempt.Refuse(mlds::kNotInsertable);
    }
    if (pLeft == nullptr && pRight == nullptr && count > 0) return attempt.Refuse(mlds::kNoBounds);
    Bounds bounds;
    if (!bounds.Carry(this, pInto, pLeft, pRight)) return attempt.Refuse(mlds::kNotCarried);
    CSyncMark*& pFrom = bounds.pLeft;
    CSyncMark*& pTo = bounds.pRight;
    if (pFrom != nullptr && pFrom == pTo) {
        if (count <= 0) return true;
        pTo = mlds::InsertNewMark(pInto, pFrom, nullptr);
        if (pTo == nullptr) return attempt.Refuse(mlds::kNoRoom);
    } else if (pFrom != nullptr && pTo != nullptr) {
        if (!mlds::RemoveBetween(pInto, pFrom, pTo)) return attempt.Refuse(mlds::kNoPlace);
    } else if (pFrom != nullptr) {
        pTo = mlds::MarkRightOf(pInto, pFrom);
        if (pTo == nullptr) return attempt.Refuse(mlds::kNoRoom);
    } else if (pTo != nullptr) {
        pFrom = mlds::MarkLeftOf(pInto, pTo);
        if (pFrom == nullptr) return attempt.Refuse(mlds::kNoRoom);
    }
    DelayMessageDisplay(true);
    const bool bDone = InsertList(pInto, pFrom, pTo, objs, count);
    DelayMessageDisplay(false);
    RankPopulatedStreams();
    return bDone || attempt.Refuse(mlds::kOutOfMemory);
}

// Each object goes right of the last one placed. What the stream refuses is left out. False when
// there is no memory for a mark between tokens.
bool CPlexa::InsertList(CStream* pInto, CStreamObj* pFrom, CStreamObj* pTo, CStreamObj** objs,
                        int count) {
    mlds::Attempt attempt(this);
    for (int i = 0; i < count; ++i) {
        CStreamObj* pObj = objs[i];
        // What is neither token nor mark is left out, and what stands in the list twice goes in
        // once.
        if (!IsTokenOrMark(pObj) || Internals::IsLinked(pObj)) {
            attempt.Refuse(mlds::kNotPlaced);
            continue;
        }
        if (Internals::IsToken(pObj) && Internals::IsToken(pFrom)) {
            CSyncMark* pBetween = mlds::InsertNewMark(pInto, pFrom, pTo);
            if (pBetween == nullptr) return false;
            pFrom = pBetween;
        }
        if (pInto->InsertStreamObj(pObj, pFrom, pTo)) {
            pFrom = pObj;
        } else {
            attempt.Refuse(mlds::kNotPlaced);
        }
    }
    return true;
}
