// Walking along tiers, and what is shown of their tokens.
#include "mlds/io/view.h"

#include "mlds/io/width.h"

namespace mlds::io {

View ViewOf(CPlexa& plexa) {
    View view{plexa, {}, nullptr};
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        CStream* pStream = plexa.pStream(i);
        Lane& lane = view.lanes.emplace_back();
        lane.name = pStream->GetStreamName();
        lane.pStream = pStream;
    }
    return view;
}

std::vector<Interval> Intervals(CStream* pStream) {
    std::vector<Interval> intervals;
    CSyncMark* const pFirst = pStream->pGetFirstStreamObj();
    CSyncMark* const pEnd = pStream->pGetLastStreamObj();
    // Tokens that touch have no mark between them, and a section may be put back next to a
    // sentinel: every token is in an interval all the same. Sentinels alone make none.
    for (CSyncMark* pLeft = pFirst; pLeft != nullptr && pLeft != pEnd;) {
        CSyncMark* const pRight = pLeft->GetNextSyncMark();
        CStreamObj* p = pLeft->GetNextStreamObj();
        if (p == pRight && pLeft != pFirst && pRight != pEnd) {
            intervals.push_back({pLeft, nullptr, pRight});
        }
        for (; p != pRight; p = p->GetNextStreamObj()) {
            intervals.push_back({pLeft, static_cast<CToken*>(p), pRight});
        }
        pLeft = pRight;
    }
    return intervals;
}

std::string LabelOf(const Lane& lane, const Interval& interval) {
    if (interval.pToken == nullptr) return "";
    if (lane.label) return Cleaned(lane.label(interval));
    const char* name = interval.pToken->GetNameField();
    return Cleaned(name != nullptr ? name : "");
}

}  // namespace mlds::io
