// What rules may not do to a host.
#include <gtest/gtest.h>

#include <chrono>

#include "mlds/rules/rulehost.h"

namespace mlds_test {
namespace {

using mlds::RuleHost;
using mlds::RuleSet;

RuleHost HostOf(const std::string& text) {
    mlds::rules::Diagnostics diagnostics;
    auto pRules = RuleSet::ReadText(text, "limits.mlr", diagnostics);
    EXPECT_NE(pRules, nullptr) << diagnostics.Text();
    return RuleHost(pRules);
}

constexpr const char* kTiers =
    "tier letters from text : a b\n"
    "tier phone : x y\n"
    "block sounds : letters -> phone first\n"
    "  a -> x\n";

// Forty lines that double what there is would make a million million tokens.
TEST(Host, GivesUpRulesThatFeedOnEachOther) {
    for (const std::string rule : {"  x -> x x\n", "  0 -> x / x _\n"}) {
        std::string rules = std::string(kTiers) + "  b -> y\nblock more : phone each\n";
        for (int i = 0; i < 40; ++i) rules += rule;
        RuleHost host = HostOf(rules);
        const mlds::RunOutcome outcome = host.Run("bba");
        EXPECT_FALSE(outcome.bDone);
        ASSERT_EQ(outcome.faults.size(), 1u);
        EXPECT_GE(outcome.faults[0].column, 3u);
        EXPECT_NE(outcome.faults[0].what.find("block more"), std::string::npos);
        // The host is as good as new.
        EXPECT_TRUE(host.Run("bb").bDone);
    }
}

// A fault for every letter: their columns are found in one walk.
TEST(Host, CountsColumnsOnce) {
    RuleHost host = HostOf(kTiers);
    std::string text;
    for (int i = 0; i < 100'000; ++i) text += "ab";
    const auto start = std::chrono::steady_clock::now();
    const mlds::RunOutcome outcome = host.Run(text);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    ASSERT_EQ(outcome.faults.size(), 100'000u);
    EXPECT_EQ(outcome.faults[0].column, 2u);
    EXPECT_EQ(outcome.faults.back().column, 200'000u);
}

}  // namespace
}  // namespace mlds_test
