// From text to tiers, one tier after the other. Every tier is tied to the one it is made from at
// every boundary that they share.
#include "utterance.h"

#include <array>
#include <utility>

#include "durations.h"
#include "interval.h"
#include "require.h"
#include "syllables.h"
#include "tierfiller.h"

namespace transcribe {

namespace {

// The name of a token of "RawInput" or "inp": one character.
char Character(CToken* pToken) {
    return *pToken->GetNameField();
}

std::string Quoted(char c) {
    return std::string{'\'', c, '\''};
}

// Latin-1 has its lower case letters 32 places after their capitals.
char ToLower(CToken* pRaw) {
    const char c = Character(pRaw);
    return pRaw->IsItA("case", "upper") ? static_cast<char>(c + 32) : c;
}

// Every tier gets an opening and a closing mark, all synchronous, and "RawInput" the text between.
void FillRawInput(Tiers& tiers, const std::string& text) {
    CStream* pRaw = tiers.pRaw;
    std::array others = {tiers.pInp, tiers.pWord, tiers.pPhone, tiers.pSyl, tiers.pTime};
    CSyncMark* pLeft = pRaw->pGetFirstStreamObj();
    for (int i = 0; i < 2; ++i) {
        CSyncMark* pMark = tiers.plexa.CreateSyncMark(pRaw);
        Require(pRaw->InsertStreamObj(pMark, pLeft, nullptr), "InsertStreamObj");
        CSyncMark* pLast = tiers.plexa.ProjectSyncMark(
            others.data(), static_cast<int>(others.size()), pMark, nullptr, sdRight);
        Require(pLast != nullptr, "ProjectSyncMark");
        pLeft = pMark;
    }
    Require(tiers.plexa.InsertLiteralString(pRaw, text.c_str(), FirstMark(pRaw), LastMark(pRaw)),
            "InsertLiteralString");
}

// Letters, in lower case, digits and pauses are kept. The place of anything else stays empty.
void FillInp(Tiers& tiers) {
    std::vector<Segment> segments;
    for (const Interval& interval : Intervals(tiers.pRaw)) {
        const bool bDropped = interval.pToken->IsItA("class", "undefined");
        segments.push_back({bDropped ? "" : Quoted(ToLower(interval.pToken)), interval.pRight});
    }
    TierFiller(tiers.plexa, tiers.pInp).Fill(FirstMark(tiers.pRaw), segments);
}

// What an interval of "inp" belongs to, as the name of a token of "word"; an empty text for pauses
// and empty places.
std::string WordName(const Interval& interval) {
    if (interval.pToken == nullptr) return "";
    if (interval.pToken->IsItA("class", "letter")) return "word";
    return interval.pToken->IsItA("class", "digit") ? "number" : "";
}

std::string WordItem(Tiers& tiers, const std::string& name, CSyncMark* pBegin, int length) {
    CToken* pTyped = pBegin->GetCorrespondingSyncMark(tiers.pRaw)->GetNextToken();
    const char* capital = pTyped->IsItA("case", "upper") ? "yes" : "no";
    return "<'" + name + "' length:" + std::to_string(length) + " capital:" + capital + '>';
}

// A run of letters is a word, a run of digits a number.
void FillWord(Tiers& tiers) {
    const std::vector<Interval> intervals = Intervals(tiers.pInp);
    std::vector<Segment> segments;
    for (std::size_t i = 0, n = 0; i < intervals.size(); i += n) {
        const std::string name = WordName(intervals[i]);
        for (n = 1; i + n < intervals.size() && WordName(intervals[i + n]) == name;) ++n;
        CSyncMark* pBegin = intervals[i].pLeft;
        segments.push_back({name.empty() ? "" : WordItem(tiers, name, pBegin, static_cast<int>(n)),
                            intervals[i + n - 1].pRight});
    }
    TierFiller(tiers.plexa, tiers.pWord).Fill(FirstMark(tiers.pInp), segments);
}

// A letter of a word gets its phones, alone or together with letters behind it.
Segment SegmentOf(const Interval& interval, LetterRules& rules) {
    const bool bLetter = interval.pToken != nullptr && interval.pToken->IsItA("class", "letter");
    if (!bLetter) return {"", interval.pRight};
    Sound sound = rules.SoundOf(interval);
    return {std::move(sound.phones), sound.pEnd};
}

// Phones are filled in at once, or one by one where somebody watches.
void FillPhone(Tiers& tiers, LetterRules& rules, View* pView) {
    std::vector<Segment> segments;
    CSyncMark* pFilled = FirstMark(tiers.pInp);
    CSyncMark* pDone = pFilled;
    for (const Interval& interval : Intervals(tiers.pInp)) {
        if (interval.pLeft != pDone) continue;  // the last sound covers this letter
        segments.push_back(SegmentOf(interval, rules));
        pDone = segments.back().pEnd;
        if (pView == nullptr) continue;
        TierFiller(tiers.plexa, tiers.pPhone).Fill(std::exchange(pFilled, pDone), segments);
        pView->Pause(rules.LastRule());
        segments.clear();
    }
    TierFiller(tiers.plexa, tiers.pPhone).Fill(pFilled, segments);
}

}  // namespace

void Transcribe(Tiers& tiers, LetterRules& rules, const std::string& text, int rate, View* pView) {
    const auto pause = [&](const char* done) {
        if (pView != nullptr) pView->Pause(done);
    };
    tiers.plexa.CPlexaReset();
    FillRawInput(tiers, text);
    pause("RawInput holds the text");
    FillInp(tiers);
    pause("inp is filled");
    FillWord(tiers);
    pause("word is filled");
    FillPhone(tiers, rules, pView);
    FillSyl(tiers);
    pause("syl is filled, and the stress of the phones");
    FillTime(tiers, rate);
    pause("time is filled");
}

}  // namespace transcribe
