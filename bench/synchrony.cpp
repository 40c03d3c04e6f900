// Going from one stream to another.
#include "compare.h"
#include "hand.h"
#include "tiers.h"

using bench::Compare;
using bench::HandNode;

namespace {

constexpr int kWords = 1;  // the index of the stream "word"

bool IsTied(const HandNode* p, int stream) {
    return p->bToken == 0 && p->ppTable != nullptr && p->ppTable[stream] != nullptr;
}

HandNode* NextToken(HandNode* p) {
    while (p != nullptr && p->bToken == 0) p = p->pNext;
    return p;
}

HandNode* PrevToken(HandNode* p) {
    while (p != nullptr && p->bToken == 0) p = p->pPrev;
    return p;
}

CToken* WordOf(CToken* pPhone, CStream* pWords) {
    CSyncMark* p = pPhone->GetPrevSyncMark();
    CSyncMark* pThere = p->GetCorrespondingSyncMark(pWords);
    while (pThere == nullptr) {
        p = p->GetPrevSyncMark();
        pThere = p->GetCorrespondingSyncMark(pWords);
    }
    return pThere->GetNextToken();
}

HandNode* WordOf(HandNode* p) {
    while (!IsTied(p, kWords)) p = p->pPrev;
    return NextToken(p->ppTable[kWords]);
}

HandNode* NearestWordMark(HandNode* p) {
    while (!IsTied(p, kWords)) p = p->pNext;
    return p->ppTable[kWords];
}

struct TiedCase {
    TiedCase(std::int64_t nStreams, std::int64_t n) : tiers(static_cast<int>(nStreams), n) {
        for (CSyncMark* p : marks) {
            handMarks.push_back(mirror.Of(p));
            if (p != marks.back()) phones.push_back(p->GetNextToken());
        }
        for (CToken* p = pWords->pGetFirstStreamObj()->GetNextToken(); p; p = p->GetNextToken()) {
            words.push_back(p);
        }
        for (CToken* p : phones) handPhones.push_back(mirror.Of(p));
        for (CToken* p : words) handWords.push_back(mirror.Of(p));
    }

    bench::TiedTiers tiers;
    CPlexa& plexa = tiers.phones.plexa;
    CStream* pPhones = tiers.streams[0];
    CStream* pWords = tiers.streams[kWords];
    bench::Mirror mirror{tiers.streams};
    std::vector<CSyncMark*>& marks = tiers.phoneMarks;
    std::vector<CToken*> phones, words;
    std::vector<HandNode*> handMarks, handPhones, handWords;
};

// Per phone: the word that it belongs to.
void PhoneToWord(benchmark::State& state) {
    TiedCase c(2, state.range(0));
    Compare(
        state, state.range(0),
        [&] {
            for (CToken* p : c.phones) benchmark::DoNotOptimize(WordOf(p, c.pWords));
        },
        [&] {
            for (HandNode* p : c.handPhones) benchmark::DoNotOptimize(WordOf(p));
        });
    for (CToken* p : c.phones) {
        const bool bSame = c.mirror.Of(WordOf(p, c.pWords)) == WordOf(c.mirror.Of(p));
        if (!bSame) state.SkipWithError("words differ");
    }
}
BENCHMARK(PhoneToWord)->Apply(bench::Sizes);

// Per word: its first and its last phone.
void WordToPhones(benchmark::State& state) {
    TiedCase c(2, state.range(0));
    Compare(
        state, static_cast<std::int64_t>(c.words.size()),
        [&] {
            for (CToken* p : c.words) {
                CSyncMark* pFrom = p->GetPrevSyncMark()->GetCorrespondingSyncMark(c.pPhones);
                CSyncMark* pTo = p->GetNextSyncMark()->GetCorrespondingSyncMark(c.pPhones);
                benchmark::DoNotOptimize(pFrom->GetNextToken());
                benchmark::DoNotOptimize(pTo->GetPrevToken());
            }
        },
        [&] {
            for (HandNode* p : c.handWords) {
                benchmark::DoNotOptimize(NextToken(p->pPrev->ppTable[0]));
                benchmark::DoNotOptimize(PrevToken(p->pNext->ppTable[0]));
            }
        });
}
BENCHMARK(WordToPhones)->Apply(bench::Sizes);

// The searches start at 1,000 phones, over 2 to 50 streams. By hand, one goes along the phones,
// knowing what is tied to them.
constexpr std::int64_t kPhonesInSearches = 1000;

// Per search: the nearest mark among the words.
void Context(benchmark::State& state) {
    TiedCase c(state.range(0), kPhonesInSearches);
    Compare(
        state, kPhonesInSearches,
        [&] {
            for (CSyncMark* p : c.marks) {
                benchmark::DoNotOptimize(c.plexa.Context(c.pWords, p, sdRight));
            }
        },
        [&] {
            for (HandNode* p : c.handMarks) benchmark::DoNotOptimize(NearestWordMark(p));
        });
    for (CSyncMark* p : c.marks) {
        CSyncMark* pNearest = c.plexa.Context(c.pWords, p, sdRight);
        const bool bSame = c.mirror.Of(pNearest) == NearestWordMark(c.mirror.Of(p));
        if (!bSame) state.SkipWithError("marks differ");
    }
}
BENCHMARK(Context)->Arg(2)->Arg(10)->Arg(50);

// Per search: does a word's mark lie at or right of a mark of the phones? For "no", every mark that
// lies right of it in any stream has to be visited.
void CSMSearch(benchmark::State& state, bool bYes) {
    TiedCase c(state.range(0), kPhonesInSearches);
    CSyncMark* pWord = (bYes ? c.words.back() : c.words.front())->GetPrevSyncMark();
    HandNode* pHandWord = c.mirror.Of(pWord);
    const std::size_t begin = bYes ? 0 : c.marks.size() / 2;
    const std::size_t end = begin + c.marks.size() / 2;
    std::int64_t nYes = 0;
    Compare(
        state, static_cast<std::int64_t>(end - begin),
        [&] {
            nYes = 0;
            for (std::size_t i = begin; i < end; ++i) {
                nYes += c.plexa.CSMSearch(c.marks[i], pWord, sdRight);
            }
        },
        [&] {
            for (std::size_t i = begin; i < end; ++i) {
                benchmark::DoNotOptimize(NearestWordMark(c.handMarks[i])->index <=
                                         pHandWord->index);
            }
        });
    if (nYes != (bYes ? static_cast<std::int64_t>(end) : 0)) state.SkipWithError("wrong answers");
}
BENCHMARK_CAPTURE(CSMSearch, yes, true)->Arg(2)->Arg(10)->Arg(50);
BENCHMARK_CAPTURE(CSMSearch, no, false)->Arg(2)->Arg(10)->Arg(50);

// Per projection: a new mark is made between two of a stream without tokens, and removed again. By
// hand, only the two are looked for.
void ProjectSyncMark(benchmark::State& state) {
    TiedCase c(state.range(0), kPhonesInSearches);
    CStream* pTarget = c.tiers.streams.back();
    const int target = pTarget->GetStreamIndex();
    std::vector<CSyncMark*> marks;
    std::vector<HandNode*> handMarks;
    for (CSyncMark* p : c.marks) {
        if (IsTied(c.mirror.Of(p), target)) continue;
        CSyncMark* pMade = c.plexa.ProjectSyncMark(pTarget, p, nullptr);
        if (pMade == nullptr) continue;  // the place is open: no stream orders the two
        pTarget->RemoveStreamObj(pMade, true);
        marks.push_back(p);
        handMarks.push_back(c.mirror.Of(p));
    }
    Compare(
        state, static_cast<std::int64_t>(marks.size()),
        [&] {
            for (CSyncMark* p : marks) {
                pTarget->RemoveStreamObj(c.plexa.ProjectSyncMark(pTarget, p, nullptr), true);
            }
        },
        [&] {
            for (HandNode* p : handMarks) {
                HandNode* pLeft = p;
                while (!IsTied(pLeft, target)) pLeft = pLeft->pPrev;
                HandNode* pRight = p;
                while (!IsTied(pRight, target)) pRight = pRight->pNext;
                benchmark::DoNotOptimize(pLeft->ppTable[target]->pNext);
                benchmark::DoNotOptimize(pRight->ppTable[target]->pPrev);
            }
        });
}
BENCHMARK(ProjectSyncMark)->Arg(3)->Arg(10)->Arg(50);

}  // namespace
