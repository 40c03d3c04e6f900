// Deletion of marks, of stretches, and of tokens by name.
#include "container/attempt.h"
#include "container/placing.h"
#include "internals.h"

using mlds::Internals;

bool CPlexa::DeleteStreamSyncMark(CStream* pFrom, CSyncMark* pSyncMark) {
    mlds::Attempt attempt(this,
                          "CPlexa::DeleteStreamSyncMark(CStream * pStream, CSyncMark * pSyncMark)");
    if (!mlds::BelongsTo(this, pFrom)) return attempt.Refuse(mlds::kNoStream);
    if (!mlds::BelongsTo(this, pSyncMark)) return attempt.Refuse(mlds::kNoMark);
    CSyncMark* pMark = Internals::CounterpartOrSelf(pSyncMark, pFrom);
    if (!mlds::IsUsable(pMark)) return attempt.Refuse(mlds::kNoCounterpart);
    if (Internals::IsSentinel(pMark)) return attempt.Refuse("a sentinel stays");
    if (Internals::IsToken(Internals::Next(pMark)) && Internals::IsToken(Internals::Prev(pMark))) {
        return attempt.Refuse("two tokens would touch");
    }
    pFrom->RemoveStreamObj(pMark, true);
    return true;
}

bool CPlexa::DeleteStreamItems(CStream* pFrom, CSyncMark* pLeft, CSyncMark* pRight,
                               BufferSyncMarkInsertionType type) {
    mlds::Attempt attempt(this,
                          "CPlexa::DeleteStreamItems(CStream * pStream, CSyncMark * pLeft, "
                          "CSyncMark * pRight, BufferSyncMarkInsertionType type)");
    if (!mlds::BelongsTo(this, pFrom)) return attempt.Refuse(mlds::kNoStream);
    if (!mlds::BelongsTo(this, pLeft) || !mlds::BelongsTo(this, pRight)) {
        return attempt.Refuse(mlds::kNoMark);
    }
    // The outermost objects stay as bounding marks, whatever goes between them.
    CStreamObj* pOutermostLeft = Internals::Next(Internals::First(pFrom));
    CStreamObj* pOutermostRight = Internals::Prev(Internals::Last(pFrom));
    CSyncMark* pStart = Internals::CounterpartOrSelf(pLeft, pFrom);
    CSyncMark* pEnd = Internals::CounterpartOrSelf(pRight, pFrom);
    if (!mlds::IsUsable(pStart) || !mlds::IsUsable(pEnd)) {
        return attempt.Refuse(mlds::kNoCounterpart);
    }
    if (pStart == pEnd) {
        if (type == bsmKeepBoth || pStart == pOutermostLeft || pStart == pOutermostRight) {
            return attempt.Refuse("the only mark is to be kept, or is the first or last object");
        }
        pFrom->RemoveStreamObj(pStart, true);
        return true;
    }
    if (!pStart->LeftOf(pEnd) || !mlds::LiesRightOf(pEnd, pStart)) {
        return attempt.Refuse(mlds::kNoPlace);
    }
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
    mlds::Attempt attempt(this,
                          "CPlexa::StripOutTokens(CStream * pStream, CSyncMark * pLeft, CSyncMark "
                          "* pRight, CToken * pToken)");
    if (!mlds::BelongsTo(this, pFrom)) return attempt.Refuse(mlds::kNoStream);
    if (pToken == nullptr) return attempt.Refuse("the token is null");
    if (!mlds::IsUsable(pLeft) || Internals::StreamOf(pLeft) != pFrom) {
        return attempt.Refuse("the left mark does not lie in the stream");
    }
    if (pRight == nullptr) return true;  // no token lies left of no mark
    if (!mlds::BelongsTo(this, pRight) || !mlds::IsUsable(pRight)) {
        return attempt.Refuse(mlds::kNoMark);
    }
    // Noted first: the pattern may be one of the tokens that go.
    const int pattern = pToken->GetFieldValueIndex("name");
    CSyncMark* pStart = nullptr;
    CSyncMark* pEnd = nullptr;
    BracketToken(pLeft, sdRight, &pStart, &pEnd, nullptr, nullptr);
    // Marks of other streams in the chain could make the bracket empty, or lead back.
    while (mlds::IsUsable(pStart) && mlds::IsUsable(pEnd) && pStart->LeftOf(pEnd) &&
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
