// Deletion of marks, of stretches, and of tokens by name.
#include "container/placing.h"
#include "internals.h"

using mlds::Internals;

bool CPlexa::DeleteStreamSyncMark(CStream* pFrom, CSyncMark* pSyncMark) {
    if (!mlds::BelongsTo(this, pFrom) || !mlds::BelongsTo(this, pSyncMark)) return false;
    CSyncMark* pMark = Internals::CounterpartOrSelf(pSyncMark, pFrom);
    if (!mlds::IsUsable(pMark) || Internals::IsSentinel(pMark)) return false;
    if (Internals::IsToken(Internals::Next(pMark)) && Internals::IsToken(Internals::Prev(pMark))) {
        return false;
    }
    pFrom->RemoveStreamObj(pMark, true);
    return true;
}

bool CPlexa::DeleteStreamItems(CStream* pFrom, CSyncMark* pLeft, CSyncMark* pRight,
                               BufferSyncMarkInsertionType type) {
    if (!mlds::BelongsTo(this, pFrom) || !mlds::BelongsTo(this, pLeft) ||
        !mlds::BelongsTo(this, pRight)) {
        return false;
    }
    // The outermost objects stay as bounding marks, whatever goes between them.
    CStreamObj* pOutermostLeft = Internals::Next(Internals::First(pFrom));
    CStreamObj* pOutermostRight = Internals::Prev(Internals::Last(pFrom));
    CSyncMark* pStart = Internals::CounterpartOrSelf(pLeft, pFrom);
    CSyncMark* pEnd = Internals::CounterpartOrSelf(pRight, pFrom);
    if (!mlds::IsUsable(pStart) || !mlds::IsUsable(pEnd)) return false;
    if (pStart == pEnd) {
        if (type == bsmKeepBoth || pStart == pOutermostLeft || pStart == pOutermostRight) {
            return false;
        }
        pFrom->RemoveStreamObj(pStart, true);
        return true;
    }
    if (!pStart->LeftOf(pEnd) || !mlds::LiesRightOf(pEnd, pStart)) return false;
    DelayMessageDisplay(true);
    mlds::RemoveBetween(pFrom, pStart, pEnd);
    if ((type == bsmDeleteBoth || type == bsmDeleteLeft) && pStart != pOutermostLeft) {
        pFrom->RemoveStreamObj(pStart, true);
    }
    if ((type == bsmDeleteBoth || type == bsmDeleteRight) && pEnd != pOutermostRight) {
        pFrom->RemoveStreamObj(pEnd, true);
    }
    DelayMessageDisplay(false);
    return true;
}

bool CPlexa::StripOutTokens(CStream* pFrom, CSyncMark* pLeft, CSyncMark* pRight, CToken* pToken) {
    if (!mlds::BelongsTo(this, pFrom) || pToken == nullptr) return false;
    if (!mlds::IsUsable(pLeft) || Internals::StreamOf(pLeft) != pFrom) return false;
    if (pRight == nullptr) return true;  // no token lies left of no mark
    if (!mlds::BelongsTo(this, pRight) || !mlds::IsUsable(pRight)) return false;
    // Noted first: the pattern may be one of the tokens that go.
    const int pattern = pToken->GetFieldValueIndex("name");
    CSyncMark* pStart = nullptr;
    CSyncMark* pEnd = nullptr;
    BracketToken(pLeft, sdRight, &pStart, &pEnd, nullptr, nullptr);
    // Marks of other streams in the chain could make the bracket empty, or lead back.
    while (pStart != nullptr && pEnd != nullptr && pStart->LeftOf(pEnd) &&
           Context(pEnd, pRight, sdRight)) {
        CStreamObj* pCandidate = Internals::Next(pStart);
        if (Internals::IsToken(pCandidate) &&
            static_cast<CToken*>(pCandidate)->GetFieldValueIndex("name") == pattern) {
            pFrom->RemoveStreamObj(pCandidate, true);
            pFrom->RemoveStreamObj(pStart, true);
        }
        CSyncMark* pWas = pEnd;
        BracketToken(pWas, sdRight, &pStart, &pEnd, nullptr, nullptr);
        if (pEnd != nullptr && !pWas->LeftOf(pEnd)) break;
    }
    return true;
}
