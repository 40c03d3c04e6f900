// How long phones and pauses last: a base by manner of articulation, more in stressed syllables and
// at the end of a phrase, all of it scaled to the speaking rate.
#include "durations.h"

#include <string_view>
#include <vector>

#include "interval.h"
#include "require.h"
#include "tierfiller.h"

namespace transcribe {

namespace {

struct MannerDuration {
    const char* manner;
    int milliseconds;
};

constexpr MannerDuration kBase[] = {
    {"vocalic", 80},     {"glide", 45}, {"plosive", 75}, {"affricate", 110}, {"fricative", 95},
    {"approximant", 50}, {"nasal", 65}, {"lateral", 60}, {"tap", 30},        {"trill", 85}};

// In per cent.
constexpr int kStressed = 130;
constexpr int kPhraseFinal = 150;

// Spans of more than this are scaled in pieces: a duration in thousandths of a millisecond has to
// fit in an int, at the slowest rate too.
constexpr int kLongestPiece = 400'000;

int BaseOf(CToken* pPhone) {
    for (const MannerDuration& base : kBase) {
        if (pPhone->IsItA("manner", base.manner)) return base.milliseconds;
    }
    return kBase[0].milliseconds;
}

// How long a character of "inp" keeps the speaker silent.
int PauseOf(std::string_view character) {
    if (character == ",") return 200;
    if (character == ";" || character == ":") return 300;
    if (character == "." || character == "?" || character == "!") return 400;
    return 0;
}

// The duration of an interval of "phone": that of its phone, or of the pause that is written there.
int DurationOf(Tiers& tiers, const Interval& interval) {
    if (interval.pToken != nullptr) return BaseOf(interval.pToken);
    CSyncMark* pBegin = interval.pLeft->GetCorrespondingSyncMark(tiers.pInp);
    CToken* pWritten =
        pBegin != nullptr ? Intervals(pBegin, pBegin->GetNextSyncMark())[0].pToken : nullptr;
    return pWritten != nullptr ? PauseOf(pWritten->GetNameField()) : 0;
}

// One token for every phone and pause, and its base duration.
void FillBase(Tiers& tiers) {
    const std::vector<Interval> intervals = Intervals(tiers.pPhone);
    std::vector<Segment> segments;
    std::vector<int> durations;
    for (const Interval& interval : intervals) {
        durations.push_back(DurationOf(tiers, interval));
        segments.push_back({durations.back() > 0 ? "0" : "", interval.pRight});
    }
    TierFiller(tiers.plexa, tiers.pTime).Fill(FirstMark(tiers.pPhone), segments);
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        Require(tiers.plexa.Mark(tiers.pTime, "name", durations[i], intervals[i].pLeft,
                                 intervals[i].pRight),
                "Mark");
    }
}

void Scale(Tiers& tiers, CSyncMark* pFrom, CSyncMark* pTo, int percent) {
    const int duration = tiers.plexa.Duration(pFrom, pTo);
    if (duration == 0 || percent == 100) return;  // nothing is spoken there
    Require(tiers.plexa.SetDuration(pFrom, pTo, duration * percent / 100), "SetDuration");
}

// A phrase ends where a pause or nothing follows.
bool IsPhraseFinal(Tiers& tiers, CSyncMark* pEnd) {
    for (CSyncMark* p = pEnd->GetCorrespondingSyncMark(tiers.pPhone);
         p != LastMark(tiers.pPhone);) {
        const Interval next = Intervals(p, p->GetNextSyncMark())[0];
        if (next.pToken != nullptr) return false;
        if (DurationOf(tiers, next) > 0) return true;
        p = next.pRight;
    }
    return true;
}

void LengthenSyllables(Tiers& tiers) {
    for (const Interval& syl : Intervals(tiers.pSyl)) {
        if (syl.pToken == nullptr) continue;
        int percent = syl.pToken->GetFieldValueInt("stress") > 0 ? kStressed : 100;
        if (IsPhraseFinal(tiers, syl.pRight)) percent = percent * kPhraseFinal / 100;
        Scale(tiers, syl.pLeft, syl.pRight, percent);
    }
}

void ScaleToRate(Tiers& tiers, int rate) {
    CSyncMark* pBegin = FirstMark(tiers.pTime);
    const std::vector<Interval> intervals = Intervals(tiers.pTime);
    for (const Interval& interval : intervals) {
        const bool bLast = interval.pRight == LastMark(tiers.pTime);
        if (!bLast && tiers.plexa.Duration(pBegin, interval.pRight) < kLongestPiece) continue;
        Scale(tiers, pBegin, interval.pRight, 100 * 100 / rate);
        pBegin = interval.pRight;
    }
}

}  // namespace

void FillTime(Tiers& tiers, int rate) {
    FillBase(tiers);
    LengthenSyllables(tiers);
    if (rate != kNormalRate) ScaleToRate(tiers, rate);
}

}  // namespace transcribe
