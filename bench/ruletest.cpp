// Rule tests, each beside a matcher for the same pattern that is written by hand over the same
// objects. The position of a test comes from a rule variable, as a rule host moves it along.
#include <stdexcept>

#include "compare.h"
#include "mlds/testasm/plexaschema.h"
#include "mlds/testasm/testasm.h"
#include "tiers.h"

using bench::Compare;

namespace {

constexpr int kStreams = 8;

constexpr const char* kTests = R"(
test context %phone              ; a vowel, a voiced stop, a vowel
    focus both
    left back
    right vowel
both:  Adj at one
at:    Ptr ^at
one:   AngleBrkt stop
stop:  And manner voice
manner: Eq %phone.manner 'stop'
voice: NotEq %phone.voice 'voiceless'
back:  AngleBrkt then vowel       ; contexts begin at the end of the focus
vowel: AngleBrkt open
open:  Eq %phone.vowel 'vowel'
end
test star %phone                 ; a vowel, consonants, a vowel
    focus both
both:  Adj at v1
at:    Ptr ^at
v1:    AngleBrkt open then more
more:  Star c then v2
c:     AngleBrkt cons then more
v2:    AngleBrkt open
cons:  Eq %phone.vowel 'consonant'
open:  Eq %phone.vowel 'vowel'
end
test stars %phone
    focus both
both:  Adj at v1
at:    Ptr ^at
v1:    AngleBrkt open then more
more:  Stars c then v2
v2:    AngleBrkt open
c:     AngleBrkt cons then stay  ; a token that does not end the sequence
stay:  Or
cons:  Eq %phone.vowel 'consonant'
open:  Eq %phone.vowel 'vowel'
end
test nobkup %phone
    focus both
both:  Adj at v1
at:    Ptr ^at
v1:    AngleBrkt open then more
more:  StarsNoBkup c then v2
c:     AngleBrkt cons
v2:    AngleBrkt open
cons:  Eq %phone.vowel 'consonant'
open:  Eq %phone.vowel 'vowel'
end
test cross %phone                ; a word that begins here, and a phone behind it
    focus both
both:  Adj at over
at:    Ptr ^at
over:  Plexa %word word then next
word:  AngleBrkt any
any:   NotEq %word.vowel -1
next:  AngleBrkt one
one:   NotEq %phone.vowel -1
end
test first %phone                ; nothing is like this
    focus both
both:  Adj at one
at:    Ptr ^at
one:   AngleBrkt never
never: Eq %phone.vowel 7
end
test bare %phone                 ; the same, not held to one token
    focus both
both:  Adj at never
at:    Ptr ^at
never: Eq %phone.vowel 7
end
)";

struct Variables {
    explicit Variables(CPlexa* pPlexa) : list(pPlexa) {
        list.AddSyncMarkPtr("at", &at);
        list.AddSyncMarkPtr("left", &left);
        list.AddSyncMarkPtr("right", &right);
        list.AddTokenPtr("token", &token);
    }

    CSyncMark *at = nullptr, *left = nullptr, *right = nullptr;
    CToken* token = nullptr;
    CVarList list;
};

struct RuleCase {
    explicit RuleCase(const benchmark::State& state) : tiers(kStreams, state.range(0)) {
        if (!tests.ok()) throw std::runtime_error(tests.diagnostics().Text());
        for (CSyncMark* p : tiers.phoneMarks) {
            if (p->IsSynchronous(tiers.streams[1])) tied.push_back(p);
        }
    }
    bool Holds(int base, CSyncMark* p) {
        variables.at = p;
        return tiers.phones.plexa.Test("", tests.instructions(), base);
    }

    bench::TiedTiers tiers;
    std::vector<CSyncMark*> tied;  // marks with a counterpart in the stream "word"
    Variables variables{&tiers.phones.plexa};
    mlds_testasm::Assembly tests =
        mlds_testasm::Assembler(mlds_testasm::SchemaOf(tiers.phones.plexa, &variables.list))
            .Assemble(kTests, "tests");
};

bool IsVowel(CToken* p) {
    return p != nullptr && p->GetFieldValueIndex(1) == 0;
}

bool HasContextByHand(CSyncMark* p) {
    CToken* pToken = p->GetNextToken();
    if (pToken == nullptr || pToken->GetFieldValueIndex(2) != 1) return false;
    if (pToken->GetFieldValueIndex(3) == 0) return false;
    CSyncMark* pBehind = pToken->GetNextSyncMark();
    return IsVowel(pBehind->GetNextToken()) && IsVowel(pToken->GetPrevToken());
}

bool RepeatsByHand(CSyncMark* p) {
    CToken* pToken = p->GetNextToken();
    if (!IsVowel(pToken)) return false;
    do pToken = pToken->GetNextToken();
    while (pToken != nullptr && !IsVowel(pToken));
    return pToken != nullptr;
}

bool CrossesByHand(CSyncMark* p, CStream* pPhones, CStream* pWords) {
    CSyncMark* pThere = p->GetCorrespondingSyncMark(pWords);
    CToken* pWord = pThere != nullptr ? pThere->GetNextToken() : nullptr;
    if (pWord == nullptr || pWord->GetFieldValueIndex(1) == -1) return false;
    CSyncMark* pBack = pWord->GetNextSyncMark()->GetCorrespondingSyncMark(pPhones);
    CToken* pToken = pBack != nullptr ? pBack->GetNextToken() : nullptr;
    return pToken != nullptr && pToken->GetFieldValueIndex(1) != -1;
}

bool IsFirstByHand(CSyncMark* p) {
    CToken* pToken = p->GetNextToken();
    return pToken != nullptr && pToken->GetFieldValueIndex(1) == 7;
}

// Per position: the test at each of the marks, and how many of them it holds at.
template <typename ByHand>
void RunTest(benchmark::State& state, const char* name, ByHand byHand, bool bTied = false,
             bool bMatchesOnly = false) {
    RuleCase c(state);
    std::vector<CSyncMark*> marks = bTied ? c.tied : c.tiers.phoneMarks;
    const int base = c.tests.base(name);
    if (bMatchesOnly) {
        std::erase_if(marks, [&](CSyncMark* p) { return !c.Holds(base, p); });
    }
    if (marks.empty()) return state.SkipWithError("no position");
    int nLibrary = 0;
    int nHand = 0;
    Compare(
        state, static_cast<std::int64_t>(marks.size()),
        [&] {
            nLibrary = 0;
            for (CSyncMark* p : marks) nLibrary += c.Holds(base, p) ? 1 : 0;
        },
        [&] {
            nHand = 0;
            for (CSyncMark* p : marks) nHand += byHand(c, p) ? 1 : 0;
            benchmark::DoNotOptimize(nHand);
        });
    if (nLibrary != nHand) state.SkipWithError("the matcher by hand differs");
    state.counters["holds"] = static_cast<double>(nLibrary) / static_cast<double>(marks.size());
}

void TestThreePartContext(benchmark::State& state) {
    RunTest(state, "context", [](RuleCase&, CSyncMark* p) { return HasContextByHand(p); });
}
BENCHMARK(TestThreePartContext)->Apply(bench::Sizes);

void TestFullMatch(benchmark::State& state) {
    RunTest(
        state, "context", [](RuleCase&, CSyncMark* p) { return HasContextByHand(p); }, false, true);
}
BENCHMARK(TestFullMatch)->Apply(bench::Sizes);

void TestStar(benchmark::State& state) {
    RunTest(state, "star", [](RuleCase&, CSyncMark* p) { return RepeatsByHand(p); });
}
BENCHMARK(TestStar)->Apply(bench::Sizes);

void TestStars(benchmark::State& state) {
    RunTest(state, "stars", [](RuleCase&, CSyncMark* p) { return RepeatsByHand(p); });
}
BENCHMARK(TestStars)->Apply(bench::Sizes);

void TestStarsNoBkup(benchmark::State& state) {
    RunTest(state, "nobkup", [](RuleCase&, CSyncMark* p) { return RepeatsByHand(p); });
}
BENCHMARK(TestStarsNoBkup)->Apply(bench::Sizes);

void TestCrossingAndBack(benchmark::State& state) {
    RunTest(
        state, "cross",
        [](RuleCase& c, CSyncMark* p) {
            return CrossesByHand(p, c.tiers.streams[0], c.tiers.streams[1]);
        },
        true);
}
BENCHMARK(TestCrossingAndBack)->Apply(bench::Sizes);

void TestFailingFirst(benchmark::State& state) {
    RunTest(state, "first", [](RuleCase&, CSyncMark* p) { return IsFirstByHand(p); });
}
BENCHMARK(TestFailingFirst)->Apply(bench::Sizes);

void TestFailingBare(benchmark::State& state) {
    RunTest(state, "bare", [](RuleCase&, CSyncMark* p) { return IsFirstByHand(p); });
}
BENCHMARK(TestFailingBare)->Apply(bench::Sizes);

}  // namespace
