// Syllables and stress.
#include "syllables.h"

#include <algorithm>
#include <string_view>

#include "interval.h"
#include "tierfiller.h"

namespace transcribe {

namespace {

// A syllable begins at a phone of the word and has one vowel.
struct Syllable {
    std::size_t begin;
    CToken* pVowel;
};

// Words of one syllable that lean on the next one. With an accent they do not (el, él).
constexpr std::string_view kUnstressed =
    " a al con de del e el en la las le les lo los me mi mis ni nos o os por que se si sin su sus "
    "te tu tus u un y ";

bool IsGlide(CToken* pPhone) {
    return pPhone->IsItA("manner", "glide");
}

// Obstruents begin a syllable together with a liquid: pr, fl, but not tl and dl.
bool IsCluster(CToken* pFirst, CToken* pSecond) {
    const std::string_view first = pFirst->GetNameField();
    const std::string_view second = pSecond->GetNameField();
    const bool bObstruent = pFirst->IsItA("manner", "plosive") ||
                            pFirst->IsItA("manner", "approximant") || first == "f";
    return bObstruent && (second == "r" || (second == "l" && !pFirst->IsItA("place", "dental")));
}

// Where the syllable of a vowel begins: one consonant or cluster and one glide go with it, the rest
// stays with the vowel before, behind which `begin` is.
std::size_t OnsetOf(const std::vector<Interval>& phones, std::size_t begin, std::size_t vowel) {
    std::size_t at = vowel;
    if (at > begin && IsGlide(phones[at - 1].pToken)) --at;
    if (at > begin && !IsGlide(phones[at - 1].pToken)) --at;
    if (at > begin && IsCluster(phones[at - 1].pToken, phones[at].pToken)) --at;
    return at;
}

// The first syllable has all that stands before its vowel.
std::vector<Syllable> Syllables(const std::vector<Interval>& phones) {
    std::vector<Syllable> syllables;
    std::size_t rest = 0;
    for (std::size_t i = 0; i < phones.size(); ++i) {
        if (!phones[i].pToken->IsItA("vowel", "yes")) continue;
        const std::size_t begin = syllables.empty() ? 0 : OnsetOf(phones, rest, i);
        syllables.push_back({begin, phones[i].pToken});
        rest = i + 1;
    }
    return syllables;
}

bool IsUnstressed(Tiers& tiers, const Interval& word) {
    const std::string letters = tiers.pInp->GetStr(word.pLeft, word.pRight, false);
    return kUnstressed.find(' ' + letters + ' ') != std::string_view::npos;
}

// An accent tells; otherwise the last syllable is stressed, or the one before it in words that end
// in a vowel, n or s.
void Stress(Tiers& tiers, const Interval& word, const std::vector<Syllable>& syllables) {
    const auto isStressed = [](const Syllable& s) {
        return s.pVowel->GetFieldValueInt("stress") > 0;
    };
    if (syllables.empty() || std::any_of(syllables.begin(), syllables.end(), isStressed)) return;
    if (IsUnstressed(tiers, word)) return;
    CToken* pLast = word.pRight->GetCorrespondingSyncMark(tiers.pInp)->GetPrevToken();
    const std::string_view last = pLast->GetNameField();
    const bool bOpen = pLast->IsItA("vowel", "yes") || last == "n" || last == "s";
    const std::size_t fromEnd = bOpen && syllables.size() > 1 ? 2 : 1;
    syllables[syllables.size() - fromEnd].pVowel->SetFieldValue("stress", 1);
}

}  // namespace

void FillSyl(Tiers& tiers) {
    std::vector<Segment> segments;
    for (const Interval& word : Intervals(tiers.pWord)) {
        CSyncMark* pBegin = word.pLeft->GetCorrespondingSyncMark(tiers.pPhone);
        CSyncMark* pEnd = word.pRight->GetCorrespondingSyncMark(tiers.pPhone);
        std::vector<Interval> phones = Intervals(pBegin, pEnd);
        std::erase_if(phones, [](const Interval& phone) { return phone.pToken == nullptr; });
        const std::vector<Syllable> syllables = Syllables(phones);
        Stress(tiers, word, syllables);
        if (syllables.empty()) segments.push_back({"", pEnd});
        for (std::size_t i = 0; i < syllables.size(); ++i) {
            const bool bLast = i + 1 == syllables.size();
            const int stress = syllables[i].pVowel->GetFieldValueInt("stress");
            segments.push_back({"<syl stress:" + std::to_string(stress) + '>',
                                bLast ? pEnd : phones[syllables[i + 1].begin - 1].pRight});
        }
    }
    TierFiller(tiers.plexa, tiers.pSyl).Fill(FirstMark(tiers.pPhone), segments);
}

}  // namespace transcribe
