// Walking along a tier.
#include "interval.h"

namespace transcribe {

std::vector<Interval> Intervals(CSyncMark* pFrom, CSyncMark* pTo) {
    std::vector<Interval> intervals;
    while (pFrom != pTo) {
        CStreamObj* pNext = pFrom->GetNextStreamObj();
        CToken* pToken = pNext->GetObjectType(otToken) ? static_cast<CToken*>(pNext) : nullptr;
        CSyncMark* pRight = pFrom->GetNextSyncMark();
        intervals.push_back({pFrom, pToken, pRight});
        pFrom = pRight;
    }
    return intervals;
}

CSyncMark* FirstMark(CStream* pStream) {
    return pStream->pGetFirstStreamObj()->GetNextSyncMark();
}

CSyncMark* LastMark(CStream* pStream) {
    return pStream->pGetLastStreamObj()->GetPrevSyncMark();
}

std::vector<Interval> Intervals(CStream* pStream) {
    return Intervals(FirstMark(pStream), LastMark(pStream));
}

}  // namespace transcribe
