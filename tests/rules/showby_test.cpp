// Tiers that are shown by another tier.
#include <gtest/gtest.h>

#include "mlds/rules/rulehost.h"

namespace mlds_test {
namespace {

constexpr const char* kSyllables = R"(
tier letters from text : a b
tier word spans letters
  word = [a|b]+
tier phone : a b
  field stress number
tier syl
show phone with ' before [stress=1]
show syl by phone
block sounds : letters -> phone within word first
  a -> a , b -> b
block syllables : phone -> syl within word first
  b? a -> syl
block stress : phone within word each
  a := [stress=1] / # b? _
)";

TEST(ShowBy, AssertsAndShownTiersReadAsTheTierUnderneath) {
    mlds::rules::Diagnostics diagnostics;
    const auto pRules = mlds::RuleSet::ReadText(
        std::string(kSyllables) + "assert \"baba a\" => tier syl: b'a ba 'a\n", "test",
        diagnostics);
    ASSERT_NE(pRules, nullptr) << "what a tier is shown by are no tokens of the tier itself";
    mlds::RuleHost host(pRules);
    ASSERT_TRUE(host.Run("baba a").bDone);
    EXPECT_EQ(host.Shown(pRules->model().FindTier("syl")), "b'a ba  'a");
}

}  // namespace
}  // namespace mlds_test
