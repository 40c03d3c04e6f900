// The same rules run in different ways leave the same tiers behind.
#include <gtest/gtest.h>

#include <numeric>

#include "compiled.h"
#include "mlds/rules/rulehost.h"
#include "mlds/rules/trace.h"
#include "support/tiers.h"
#include "support/wholelanguage.h"

namespace mlds_test {
namespace {

using namespace mlds::rules;
using mlds::RuleHost;
using mlds::RuleSet;

std::shared_ptr<const RuleSet> WholeLanguage() {
    Diagnostics diagnostics;
    auto pRules = RuleSet::ReadText(kWholeLanguage, "whole.mlr", diagnostics);
    EXPECT_TRUE(diagnostics.empty()) << diagnostics.Text();
    return pRules;
}

// All that is in the tiers and between them, of every sentence.
std::vector<std::string> TiersOf(RuleHost& host) {
    std::vector<std::string> tiers;
    for (const char* sentence : kSentences) {
        const mlds::RunOutcome outcome = host.Run(sentence);
        EXPECT_TRUE(outcome.bDone);
        std::string faults;
        for (const TextFault& fault : outcome.faults) faults += fault.what + "\n";
        tiers.push_back(faults + Dump(host.plexa()));
    }
    return tiers;
}

// How often rules were tried, and held.
struct Counter : RuleObserver {
    void AfterRule(const Rule&, CSyncMark*, CSyncMark* pEnd) override {
        ++nTried;
        nHeld += pEnd != nullptr ? 1 : 0;
    }
    int nTried = 0;
    int nHeld = 0;
};

// Every rule at every token, as if nothing were known about what it can begin with. The rules are
// the test's own until now, so nobody sees them change.
void TryAll(const RuleSet& rules) {
    auto& compiled = const_cast<CompiledRules&>(rules.compiled());
    for (std::size_t b = 0; b < compiled.model.blocks.size(); ++b) {
        std::vector<Rule>& all = compiled.model.blocks[b].rules;
        for (Rule& rule : all) {
            rule.firstTokens.clear();
            rule.beginsAt = kNoTier;
        }
        for (Shortcuts& shortcuts : compiled.shortcuts[b]) shortcuts = Shortcuts();
        for (std::vector<int>& candidates : compiled.candidates[b]) {
            candidates.resize(all.size());
            std::iota(candidates.begin(), candidates.end(), 0);
        }
    }
}

TEST(Rules, ChoosingThemFastChangesNothing) {
    Counter chosen, all;
    RuleHost host(WholeLanguage());
    host.SetObserver(&chosen);
    const auto pAll = WholeLanguage();
    TryAll(*pAll);
    RuleHost slow(pAll);
    slow.SetObserver(&all);
    const std::vector<std::string> expected = TiersOf(slow);
    EXPECT_EQ(TiersOf(host), expected);
    // Less is tried where nobody looks on.
    host.SetObserver(nullptr);
    EXPECT_EQ(TiersOf(host), expected);
    EXPECT_EQ(chosen.nHeld, all.nHeld);
    EXPECT_LT(chosen.nTried * 3, all.nTried);
}

struct CountingTrace : RuleTrace {
    using RuleTrace::RuleTrace;
    void Tried(const TriedRule& tried) override { nHeld += tried.Holds() ? 1 : 0; }
    int nHeld = 0;
};

TEST(Rules, WatchingThemChangesNothing) {
    RuleHost host(WholeLanguage());
    const std::vector<std::string> expected = TiersOf(host);
    Counter counter;
    host.SetObserver(&counter);
    EXPECT_EQ(TiersOf(host), expected);
    for (const TraceDetail detail :
         {TraceDetail::places, TraceDetail::words, TraceDetail::elements}) {
        RuleHost watched(WholeLanguage());
        CountingTrace trace(watched, detail);
        EXPECT_EQ(TiersOf(watched), expected) << static_cast<int>(detail);
        EXPECT_EQ(trace.nHeld, counter.nHeld);
    }
}

// Nothing of an utterance is left over for the next one.
TEST(Rules, AHostThatHasRunIsLikeANewOne) {
    RuleHost host(WholeLanguage());
    const std::vector<std::string> expected = TiersOf(host);
    EXPECT_EQ(TiersOf(host), expected);
}

}  // namespace
}  // namespace mlds_test
