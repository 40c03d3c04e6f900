// Random rules, and random words to try them on.
#ifndef MLDS_TESTS_RULES_RANDOMPATTERNS_H
#define MLDS_TESTS_RULES_RANDOMPATTERNS_H

#include <random>

#include "modelmaker.h"
#include "naivematcher.h"

namespace mlds_test {

/// Tiers "letters" (a to d; vowel yes/no, kind with a token that has none, stress a number) and
/// "word", with no rules.
mlds::rules::Model MakeLetters();
inline constexpr int kLetters = 1, kWords = 2;

class RandomRules {
public:
    explicit RandomRules(unsigned seed) : m_random(seed) {}

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
    bool Once(int in) { return Below(in) == 0; }

    /// A rule with its variables: 0 and 1 are tokens, 2 and 3 marks.
    mlds::rules::Rule MakeRule();
    /// Words of letters, with empty places here and there, in the model's container.
    NaiveTier MakeTier(const mlds::rules::Model& model, CPlexa& plexa);

private:
    enum class Side { right, left };

    Pattern MakePattern(int depth, Side side, bool bMayBind);
    Pattern MakeToken(Side side, bool bMayBind);
    Pattern MakeRepeat(int depth, Side side, bool bMayBind);
    Condition MakeCondition(int depth, int variable);
    mlds::rules::Environment MakeEnvironment();

    std::mt19937 m_random;
};

}  // namespace mlds_test

#endif
