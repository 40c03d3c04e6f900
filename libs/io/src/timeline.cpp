// Tiers over time.
#include "mlds/io/timeline.h"

#include <algorithm>
#include <unordered_map>

#include "mlds/io/width.h"

namespace mlds::io {

namespace {

// When the marks of the time stream are.
class Times {
public:
    explicit Times(CStream* pTime) : m_pTime(pTime) {
        m_times[pTime->pGetFirstStreamObj()] = 0;
        for (const Interval& interval : Intervals(pTime)) {
            m_times.emplace(interval.pLeft, m_end);
            if (interval.pToken != nullptr) {
                m_end += std::max(interval.pToken->GetFieldValueIndex(0), 0);
            }
            m_times[interval.pRight] = m_end;
        }
        m_times[pTime->pGetLastStreamObj()] = m_end;
    }

    double end() const { return m_end; }
    // Null where nothing ties the mark to a time.
    const double* Of(CSyncMark* pMark) const {
        CSyncMark* pInTime = pMark->GetCorrespondingSyncMark(m_pTime);
        const auto it = m_times.find(pInTime);
        return it != m_times.end() ? &it->second : nullptr;
    }

private:
    CStream* m_pTime;
    double m_end = 0;
    std::unordered_map<CSyncMark*, double> m_times;
};

class TierBuilder {
public:
    TierBuilder(const Lane& lane, const Times& times)
        : m_lane(lane), m_times(times), m_tier{Cleaned(lane.name), {}, lane.bGuides} {}

    TimedTier Build() {
        const std::vector<Interval> intervals = Intervals(m_lane.pStream);
        if (!intervals.empty()) {
            const double* pBegin = m_times.Of(intervals.front().pLeft);
            if (pBegin != nullptr) Fill(*pBegin);
        }
        std::size_t first = 0;
        for (std::size_t i = 0; i < intervals.size(); ++i) {
            const bool bLast = i + 1 == intervals.size();
            const bool bTouches = !bLast && intervals[i + 1].pRight == intervals[i].pRight;
            const double* pEnd = bTouches ? nullptr : m_times.Of(intervals[i].pRight);
            // Behind the last mark that has a time, what is left lasts to the end.
            if (pEnd == nullptr && !bLast) continue;
            Add(&intervals[first], i + 1 - first, pEnd != nullptr ? *pEnd : m_times.end());
            first = i + 1;
        }
        Fill(m_times.end());
        m_tier.labels.back().text += m_waiting;
        return std::move(m_tier);
    }

private:
    // Nothing up to there.
    void Fill(double end) {
        if (end <= m_end) return;
        m_tier.labels.push_back({m_end, end, "", false});
        m_end = end;
    }

    // Intervals between two marks that have a time.
    void Add(const Interval* pFirst, std::size_t n, double end) {
        const double begin = m_end;
        // Ties that cross would lead back in time.
        m_end = std::max(begin, end);
        for (std::size_t i = 0; i < n; ++i) {
            const std::string text = LabelOf(m_lane, pFirst[i]);
            if (begin == m_end) {
                m_waiting += text;
                continue;
            }
            const double part = (m_end - begin) / static_cast<double>(n);
            const double from = m_tier.labels.empty() ? 0 : m_tier.labels.back().end;
            const double to = i + 1 == n ? m_end : begin + part * static_cast<double>(i + 1);
            m_tier.labels.push_back({from, to, m_waiting + text, IsHighlighted(pFirst[i].pToken)});
            m_waiting.clear();
        }
    }

    bool IsHighlighted(CToken* pToken) const {
        return pToken != nullptr && m_lane.highlighted && m_lane.highlighted(pToken);
    }

    const Lane& m_lane;
    const Times& m_times;
    TimedTier m_tier;
    double m_end = 0;
    std::string m_waiting;  // takes no time
};

}  // namespace

Timeline TimelineOf(const View& view) {
    CStream* pTime = view.pTime != nullptr ? view.pTime : view.plexa.GetDefaultTimeStream();
    if (pTime == nullptr) return {};
    const Times times(pTime);
    if (times.end() <= 0) return {};
    Timeline timeline{times.end(), {}};
    for (const Lane& lane : view.lanes) timeline.tiers.push_back(TierBuilder(lane, times).Build());
    return timeline;
}

}  // namespace mlds::io
