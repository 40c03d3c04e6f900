// One rule set, and a host of its own for every thread.
#include <gtest/gtest.h>

#include <barrier>
#include <thread>

#include "mlds/rules/rulehost.h"
#include "support/tiers.h"
#include "support/wholelanguage.h"

namespace mlds_test {
namespace {

constexpr std::size_t kThreads = 4;
constexpr int kRounds = 20;

std::string TiersOf(mlds::RuleHost& host) {
    std::string tiers;
    for (const char* sentence : kSentences) {
        EXPECT_TRUE(host.Run(sentence).bDone);
        for (int tier = 0; tier < host.plexa().GetNumStreams(); ++tier) {
            tiers += host.Shown(tier) + "\n";
        }
    }
    return tiers;
}

TEST(Threads, ShareARuleSet) {
    mlds::rules::Diagnostics diagnostics;
    const auto pRules = mlds::RuleSet::ReadText(kWholeLanguage, "whole.mlr", diagnostics);
    ASSERT_NE(pRules, nullptr) << diagnostics.Text();
    std::barrier start(kThreads);
    std::string tiers[kThreads];
    {
        std::jthread threads[kThreads];
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads[i] = std::jthread([&, i] {
                start.arrive_and_wait();
                for (int round = 0; round < kRounds; ++round) {
                    mlds::RuleHost host(pRules);
                    tiers[i] += TiersOf(host);
                }
            });
        }
    }
    EXPECT_NE(tiers[0].find("'i"), std::string::npos);
    for (const std::string& others : tiers) EXPECT_EQ(others, tiers[0]);
}

}  // namespace
}  // namespace mlds_test
