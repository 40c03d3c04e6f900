// Work on whole stretches of a stream: durations, marking, cutting out and putting back. By hand
// the same is done over the very objects.
#include "compare.h"
#include "tiers.h"

using bench::Compare;

namespace {

// A stream of n durations of 1 to 200.
struct TimeCase {
    explicit TimeCase(std::int64_t n) {
        pTime->AddField("name")->SetFieldType(fvInt);
        pTime->AddField("stress")->SetFieldType(fvInt);
        plexa.SetDefaultTimeStream(pTime);
        CSyncMark* pLast = AddMark();
        for (std::int64_t i = 0; i < n; ++i) {
            CSyncMark* pLeft = pLast;
            pLast = AddMark();
            CToken* pToken = pTime->CreateToken();
            pToken->SetFieldValue(0, static_cast<int>(i * 37 % 200) + 1);
            pTime->InsertStreamObj(pToken, pLeft, pLast);
        }
    }
    CSyncMark* AddMark() {
        CSyncMark* pMark = plexa.CreateSyncMark(pTime);
        pTime->InsertStreamObj(pMark, marks.empty() ? pTime->pGetFirstStreamObj() : marks.back(),
                               nullptr);
        marks.push_back(pMark);
        return pMark;
    }
    int SumByHand() {
        int sum = 0;
        for (CStreamObj* p = marks.front(); p != marks.back(); p = p->GetNextStreamObj()) {
            if (p->GetObjectType(otToken)) sum += static_cast<CToken*>(p)->GetFieldValueIndex(0);
        }
        return sum;
    }

    CPlexa plexa{nullptr};
    CStream* pTime = plexa.pStream(plexa.AddStream("time"));
    std::vector<CSyncMark*> marks;
};

// Per token.
void DurationOfAll(benchmark::State& state) {
    TimeCase c(state.range(0));
    int library = 0;
    int hand = 0;
    Compare(
        state, state.range(0), [&] { library = c.plexa.Duration(c.marks.front(), c.marks.back()); },
        [&] { benchmark::DoNotOptimize(hand = c.SumByHand()); });
    if (library != hand) state.SkipWithError("sums differ");
}
BENCHMARK(DurationOfAll)->Apply(bench::Sizes);

// Per token: to and fro between two sums of up to 2,000 tokens, which a duration has room for.
void SetDurationOfAll(benchmark::State& state) {
    TimeCase c(state.range(0));
    const int sum = c.SumByHand();
    bool bOdd = false;
    bool bDone = true;
    Compare(
        state, state.range(0),
        [&] {
            bOdd = !bOdd;
            bDone &= c.plexa.SetDuration(c.marks.front(), c.marks.back(), bOdd ? sum / 2 : sum);
        },
        [&] {
            const int old = c.SumByHand();
            int left = 0;
            for (CStreamObj* p = c.marks.front(); p != c.marks.back(); p = p->GetNextStreamObj()) {
                if (!p->GetObjectType(otToken)) continue;
                auto* pToken = static_cast<CToken*>(p);
                left += pToken->GetFieldValueIndex(0) * 1000 % old;
                pToken->SetFieldValue(0, pToken->GetFieldValueIndex(0));
            }
            benchmark::DoNotOptimize(left);
        });
    if (!bDone) state.SkipWithError("refused");
}
BENCHMARK(SetDurationOfAll)->RangeMultiplier(10)->Range(100, 10'000);

// Per token: one field of all tokens by one call, and by a call for each token.
void MarkAll(benchmark::State& state) {
    TimeCase c(state.range(0));
    Compare(
        state, state.range(0),
        [&] { c.plexa.Mark(c.pTime, "stress", 1, c.marks.front(), c.marks.back()); },
        [&] {
            for (CStreamObj* p = c.marks.front(); p != c.marks.back(); p = p->GetNextStreamObj()) {
                if (p->GetObjectType(otToken)) static_cast<CToken*>(p)->SetFieldValue(1, 1);
            }
        });
}
BENCHMARK(MarkAll)->Apply(bench::Sizes);

void MarkEach(benchmark::State& state, const char* list) {
    TimeCase c(state.range(0));
    Compare(
        state, state.range(0),
        [&] {
            for (std::size_t i = 1; i < c.marks.size(); ++i) {
                if (list != nullptr) {
                    c.plexa.Mark(c.pTime, list, c.marks[i - 1], c.marks[i]);
                } else {
                    c.plexa.Mark(c.pTime, "stress", 1, c.marks[i - 1], c.marks[i]);
                }
            }
        },
        [&] {
            for (std::size_t i = 1; i < c.marks.size(); ++i) {
                c.marks[i - 1]->GetNextToken()->SetFieldValue(1, 1);
            }
        });
}
BENCHMARK_CAPTURE(MarkEach, by_field, nullptr)->Apply(bench::Sizes);
BENCHMARK_CAPTURE(MarkEach, by_list, "<stress:1>")->Apply(bench::Sizes);

// Per object of the stream, which is numbered anew: its middle half is cut out and put back; by
// hand, one walk over the half and one over the whole.
void CutAndPutBack(benchmark::State& state) {
    TimeCase c(state.range(0));
    const std::size_t n = c.marks.size();
    CSyncMark* pLeft = c.marks[n / 4];
    CSyncMark* pRight = c.marks[n - n / 4 - 1];
    bool bDone = true;
    Compare(
        state, 2 * state.range(0),
        [&] {
            CStreamObj *pFirst = nullptr, *pLast = nullptr;
            bDone &= c.pTime->ExciseSection(pLeft, pRight, &pFirst, &pLast, bsmKeepBoth);
            CSyncMark* pAt = pLeft;
            bDone &= c.pTime->InsertSection(pFirst, pLast, &pAt, nullptr);
        },
        [&] {
            int nTokens = 0;
            for (CStreamObj* p = pLeft; p != pRight; p = p->GetNextStreamObj()) {
                nTokens += p->GetObjectType(otToken) ? 1 : 0;
            }
            c.pTime->Renumber();
            benchmark::DoNotOptimize(nTokens);
        });
    if (!bDone) state.SkipWithError("refused");
}
BENCHMARK(CutAndPutBack)->Apply(bench::Sizes);

}  // namespace
