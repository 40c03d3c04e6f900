// The tiers of an utterance over time.
#include "timeline.h"

#include <unordered_map>

#include "interval.h"
#include "label.h"
#include "latin1.h"

namespace transcribe {

namespace {

using Times = std::unordered_map<CSyncMark*, double>;  // by the marks of "time"

Times TimesOf(Tiers& tiers) {
    Times times;
    double now = 0;
    times[FirstMark(tiers.pTime)] = now;
    for (const Interval& interval : Intervals(tiers.pTime)) {
        if (interval.pToken != nullptr) now += interval.pToken->GetFieldValueIndex(0);
        times[interval.pRight] = now;
    }
    return times;
}

bool IsStressed(CToken* pToken) {
    return pToken != nullptr && pToken->GetFieldValueInt("stress") > 0;
}

class TierBuilder {
public:
    TierBuilder(Tiers& tiers, const Times& times, CStream* pStream)
        : m_tiers(tiers), m_times(times), m_tier{pStream->GetStreamName(), {}} {}

    TimedTier Build(const std::vector<Interval>& intervals) {
        std::size_t first = 0;
        for (std::size_t i = 0; i < intervals.size(); ++i) {
            CSyncMark* pInTime = intervals[i].pRight->GetCorrespondingSyncMark(m_tiers.pTime);
            if (pInTime == nullptr) continue;
            Add(&intervals[first], i + 1 - first, m_times.at(pInTime));
            first = i + 1;
        }
        if (!m_waiting.empty() && !m_tier.labels.empty()) m_tier.labels.back().text += m_waiting;
        return std::move(m_tier);
    }

private:
    // Intervals between two marks that have a time.
    void Add(const Interval* pFirst, std::size_t n, double end) {
        const double begin = m_end;
        m_end = end;
        for (std::size_t i = 0; i < n; ++i) {
            const std::string text = ToUtf8(LabelOf(m_tiers, pFirst[i]));
            if (begin == end) {
                m_waiting += text;
                continue;
            }
            const double part = (end - begin) / static_cast<double>(n);
            const double from = m_tier.labels.empty() ? 0 : m_tier.labels.back().end;
            const double to = i + 1 == n ? end : begin + part * static_cast<double>(i + 1);
            m_tier.labels.push_back({from, to, m_waiting + text, IsStressed(pFirst[i].pToken)});
            m_waiting.clear();
        }
    }

    Tiers& m_tiers;
    const Times& m_times;
    TimedTier m_tier;
    double m_end = 0;
    std::string m_waiting;  // takes no time
};

}  // namespace

std::vector<TimedTier> Timeline(Tiers& tiers) {
    const Times times = TimesOf(tiers);
    std::vector<TimedTier> timeline;
    for (int i = 0; i < tiers.plexa.GetNumStreams(); ++i) {
        CStream* pStream = tiers.plexa.pStream(i);
        timeline.push_back(TierBuilder(tiers, times, pStream).Build(Intervals(pStream)));
    }
    return timeline;
}

}  // namespace transcribe
