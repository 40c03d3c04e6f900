// Small languages for tests: a prelude that every rule needs, and what it makes of a text.
#ifndef MLDS_TESTS_RULES_LANGUAGE_H
#define MLDS_TESTS_RULES_LANGUAGE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "mlds/rules/rulehost.h"
#include "support/tiers.h"

namespace mlds_test {

/// Letters, words and phones, and a block by which every letter sounds as it is written.
inline const std::string kPrelude = R"(
tier letters from text : a b c d e f g h i k l m n o p r s t u á "," "1" 2
  feature vowel = a e i o u á
tier word spans letters
  word = [letter]+
  weak : la el
tier phone : a b c d e f g h i k l m n o p r s t u E O ts
  feature voc = a e i o u E O
  feature manner : stop = b c d g k p t ts | fric = f s | nasal = m n
  field stress number
  field long number
tier syl
  field stress number
tier time ms
show phone with ' before [stress=1]
show phone with ":" after [long=1]
show word by letters
)";
inline const std::string kLetters = R"(
block letters : letters -> phone within word first
  á -> a[stress=1] , a -> a , b -> b , c -> c , d -> d , e -> e , f -> f , g -> g , h -> h , i -> i
  k -> k , l -> l , m -> m , n -> n , o -> o , p -> p , r -> r , s -> s , t -> t , u -> u
  . -> 0
)";

/// Rules that compile without an error, or a test that fails with the messages.
inline std::shared_ptr<const mlds::RuleSet> Rules(const std::string& text) {
    mlds::rules::Diagnostics diagnostics;
    auto pRules = mlds::RuleSet::ReadText(text, "test.mlr", diagnostics);
    EXPECT_NE(pRules, nullptr) << diagnostics.Text();
    return pRules;
}

/// What all diagnostics of a text say.
inline std::string Messages(const std::string& text) {
    mlds::rules::Diagnostics diagnostics;
    mlds::RuleSet::ReadText(text, "test.mlr", diagnostics);
    return diagnostics.Text();
}

/// A tier as people see it, after the rules have run over a text.
inline std::string Shown(const std::string& rules, const std::string& text,
                         const char* tier = "phone") {
    const auto pRules = Rules(rules);
    if (pRules == nullptr) return "";
    mlds::RuleHost host(pRules);
    const mlds::RunOutcome outcome = host.Run(text);
    EXPECT_TRUE(outcome.bDone);
    EXPECT_EQ(CheckStructure(host.plexa()), "") << rules;
    return host.Shown(pRules->model().FindTier(tier));
}

}  // namespace mlds_test

#endif
