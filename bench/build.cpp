// Building streams and taking them apart, object by object.
#include "compare.h"
#include "hand.h"
#include "tiers.h"

using bench::Compare;
using bench::HandNode;
using bench::Nanoseconds;

namespace {

struct BuildCase {
    explicit BuildCase(const benchmark::State& state) : names(bench::Names(state.range(0))) {}

    void Build() {
        for (const char* name : names) tier.Append(name);
    }
    void BuildByHand() {
        for (const char* name : names) hand.Append(name);
    }

    std::vector<const char*> names;
    bench::PhoneTier tier;
    bench::HandTier hand;
};

// A token with its mark and three derived fields at the end of the stream; then all are freed.
void Append(benchmark::State& state, bool bBuilding, bool bFreeing) {
    BuildCase c(state);
    const auto sum = [&](double building, double freeing) {
        return (bBuilding ? building : 0) + (bFreeing ? freeing : 0);
    };
    Compare(
        state, state.range(0),
        [&] {
            const double building = Nanoseconds([&] { c.Build(); });
            return sum(building, Nanoseconds([&] { c.tier.Restart(); }));
        },
        [&] {
            const double building = Nanoseconds([&] { c.BuildByHand(); });
            return sum(building, Nanoseconds([&] { c.hand.Reset(); }));
        });
}
BENCHMARK_CAPTURE(Append, and_free, true, true)->Apply(bench::Sizes);
BENCHMARK_CAPTURE(Append, alone, true, false)->Apply(bench::Sizes);
BENCHMARK_CAPTURE(Append, free_alone, false, true)->Apply(bench::Sizes);

// The same between two halves of a stream, always left of one mark: the numbers between two order
// indices are used up again and again.
void InsertInMiddle(benchmark::State& state) {
    BuildCase c(state);
    CStream* pStream = c.tier.pStream;
    Compare(
        state, state.range(0),
        [&] {
            c.tier.Restart();
            c.Build();
            CSyncMark* pLeft = c.tier.pLast;
            c.tier.AppendMark();
            CSyncMark* pRight = c.tier.pLast;
            c.Build();
            return Nanoseconds([&] {
                for (const char* name : c.names) {
                    CSyncMark* pMark = c.tier.plexa.CreateSyncMark(pStream);
                    pStream->InsertStreamObj(pMark, pLeft, pRight);
                    pStream->InsertStreamObj(pStream->CreateToken(name), pLeft, pMark);
                    pLeft = pMark;
                }
            });
        },
        [&] {
            c.hand.Reset();
            c.BuildByHand();
            HandNode* pLeft = c.hand.Last();
            c.BuildByHand();
            HandNode* pRight = pLeft->pNext;
            return Nanoseconds([&] {
                for (const char* name : c.names) c.hand.InsertLeftOf(pRight, name);
            });
        });
}
BENCHMARK(InsertInMiddle)->Apply(bench::Sizes);

// Every second token goes; the marks stay. The first removal after building settles the order
// indices of the whole stream.
void RemoveEverySecondToken(benchmark::State& state) {
    BuildCase c(state);
    std::vector<CToken*> tokens(c.names.size());
    std::vector<HandNode*> handTokens(c.names.size());
    Compare(
        state, state.range(0) / 2,
        [&] {
            c.tier.Restart();
            for (std::size_t i = 0; i < tokens.size(); ++i) {
                c.tier.Append(c.names[i]);
                tokens[i] = c.tier.pLast->GetPrevToken();
            }
            return Nanoseconds([&] {
                for (std::size_t i = 0; i < tokens.size(); i += 2) {
                    c.tier.pStream->RemoveStreamObj(tokens[i], true);
                }
            });
        },
        [&] {
            c.hand.Reset();
            for (std::size_t i = 0; i < handTokens.size(); ++i) {
                c.hand.Append(c.names[i]);
                handTokens[i] = c.hand.Last();
            }
            return Nanoseconds([&] {
                for (std::size_t i = 0; i < handTokens.size(); i += 2) c.hand.Remove(handTokens[i]);
            });
        });
}
BENCHMARK(RemoveEverySecondToken)->Apply(bench::Sizes);

}  // namespace
