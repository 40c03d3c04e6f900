// Small moves across streams: adjacency, brackets around tokens, runs of marks.
#include "stream/absence.h"

using mlds::Internals;

bool CPlexa::Adjacent(CSyncMark* pFirst, CSyncMark* pSecond) {
    if (!mlds::BelongsTo(this, pFirst) || !mlds::BelongsTo(this, pSecond)) return false;
    CStreamObj* p = pFirst->GetCorrespondingSyncMark(Internals::StreamOf(pSecond));
    while (p != nullptr && p->LeftOf(pSecond)) {
        if (Internals::IsToken(p)) return false;
        p = mlds::StepFrom(p, true);
    }
    return p == pSecond;
}

bool CPlexa::BracketToken(CSyncMark* pSyncMark, ScanDirectionType direction, CSyncMark** ppLeft,
                          CSyncMark** ppRight, CStream* pFromStream, CStream* pToStream) {
    if (ppLeft == nullptr || ppRight == nullptr) return false;
    *ppLeft = nullptr;
    *ppRight = nullptr;
    if (!mlds::BelongsTo(this, pSyncMark)) return false;
    if (pFromStream == nullptr) pFromStream = Internals::StreamOf(pSyncMark);
    if (pToStream == nullptr) pToStream = pFromStream;
    if (!mlds::BelongsTo(this, pToStream)) return false;
    CSyncMark* pStart = Context(pFromStream, pSyncMark, direction);
    if (pStart == nullptr) return false;
    CSyncMark* pNear = pStart->UptoTokens(direction, 0);
    CSyncMark* pFar = pNear != nullptr ? pNear->OverTokens(direction, 1) : nullptr;
    if (pFar == nullptr) return false;
    const bool bRight = direction == sdRight;
    *ppLeft = (bRight ? pNear : pFar)->GetCorrespondingSyncMark(pToStream);
    *ppRight = (bRight ? pFar : pNear)->GetCorrespondingSyncMark(pToStream);
    return true;
}

CSyncMark* CPlexa::Move(CStream* pInto, CSyncMark* pSyncMark, ScanDirectionType direction) {
    if (!mlds::BelongsTo(this, pSyncMark) || !mlds::BelongsTo(this, pInto)) return nullptr;
    CSyncMark* p = pSyncMark->GetCorrespondingSyncMark(pInto);
    if (p == nullptr) return nullptr;
    for (;;) {
        CStreamObj* pNext = mlds::StepFrom(p, direction == sdRight);
        if (pNext == nullptr || Internals::IsToken(pNext)) return p;
        p = static_cast<CSyncMark*>(pNext);
    }
}
