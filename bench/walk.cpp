// Reading streams from end to end.
#include <string>

#include "compare.h"
#include "hand.h"
#include "tiers.h"

using bench::Compare;
using bench::HandNode;
using bench::Nanoseconds;

namespace {

struct WalkCase {
    explicit WalkCase(const benchmark::State& state) : names(bench::Names(state.range(0))) {
        Build();
    }
    /// Builds the stream anew; the result is the token in its middle.
    CToken* Build() {
        tier.Restart();
        CSyncMark* pMiddle = tier.pLast;
        for (std::size_t i = 0; i < names.size(); ++i) {
            tier.Append(names[i]);
            if (i == names.size() / 2) pMiddle = tier.pLast;
        }
        return pMiddle->GetPrevToken();
    }

    std::vector<const char*> names;
    bench::PhoneTier tier;
    CStreamObj* pFirst = tier.pStream->pGetFirstStreamObj();
};

struct MirroredCase : WalkCase {
    using WalkCase::WalkCase;
    bench::Mirror mirror{{tier.pStream}};
    HandNode* pHandFirst = mirror.Of(pFirst);
};

// Per object: every link is followed once.
void WalkByNextLinks(benchmark::State& state) {
    MirroredCase c(state);
    Compare(
        state, 2 * state.range(0),
        [&] {
            int n = 0;
            for (CStreamObj* p = c.pFirst; p != nullptr; p = p->GetNextStreamObj()) ++n;
            benchmark::DoNotOptimize(n);
        },
        [&] {
            int n = 0;
            for (HandNode* p = c.pHandFirst; p != nullptr; p = p->pNext) ++n;
            benchmark::DoNotOptimize(n);
        });
}
BENCHMARK(WalkByNextLinks)->Apply(bench::Sizes);

// Per token: a field of every token, found by its kind among the objects.
void WalkReadingField(benchmark::State& state) {
    MirroredCase c(state);
    Compare(
        state, state.range(0),
        [&] {
            int sum = 0;
            for (CStreamObj* p = c.pFirst; p != nullptr; p = p->GetNextStreamObj()) {
                if (p->GetObjectType(otToken))
                    sum += static_cast<CToken*>(p)->GetFieldValueIndex(2);
            }
            benchmark::DoNotOptimize(sum);
        },
        [&] {
            int sum = 0;
            for (HandNode* p = c.pHandFirst; p != nullptr; p = p->pNext) {
                if (p->bToken != 0) sum += p->pValues->values[2];
            }
            benchmark::DoNotOptimize(sum);
        });
}
BENCHMARK(WalkReadingField)->Apply(bench::Sizes);

// Per token: the names of a whole stream as one text.
void TextOfStream(benchmark::State& state) {
    MirroredCase c(state);
    std::string text;
    Compare(
        state, state.range(0),
        [&] { benchmark::DoNotOptimize(c.tier.pStream->GetStr(nullptr, nullptr, true)); },
        [&] {
            text.clear();
            for (HandNode* p = c.pHandFirst; p != nullptr; p = p->pNext) {
                const bool bToken = p->bToken != 0;
                text += bToken ? bench::g_phones[std::size_t(p->pValues->values[0])] : "|";
            }
        });
    if (text != c.tier.pStream->GetStr(nullptr, nullptr, true)) state.SkipWithError("texts differ");
}
BENCHMARK(TextOfStream)->Apply(bench::Sizes);

// Per object: the first look at an order index in the middle of a stream just built; by hand, one
// walk that numbers the objects.
void FirstOrderIndex(benchmark::State& state) {
    MirroredCase c(state);
    Compare(
        state, 2 * state.range(0),
        [&] {
            CToken* pMiddle = c.Build();
            return Nanoseconds([&] { benchmark::DoNotOptimize(pMiddle->GetOrderIndex()); });
        },
        [&] {
            return Nanoseconds([&] {
                std::uint32_t index = 0;
                for (HandNode* p = c.pHandFirst; p != nullptr; p = p->pNext) p->index = index += 20;
            });
        });
}
BENCHMARK(FirstOrderIndex)->Apply(bench::Sizes);

}  // namespace
