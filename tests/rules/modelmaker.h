// Models made by hand: patterns and rules in a few words.
#ifndef MLDS_TESTS_RULES_MODELMAKER_H
#define MLDS_TESTS_RULES_MODELMAKER_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/tiers.h"
#include "lowering/lowering.h"
#include "mlds/testasm/text.h"
#include "mlds/testasm/validate.h"
#include "support/tiers.h"

namespace mlds_test {

using mlds::rules::Comparison;
using mlds::rules::Condition;
using mlds::rules::Pattern;
using Kind = Pattern::Kind;

inline mlds::rules::Tier MakeTier(const char* name, mlds::rules::Tier::Kind kind,
                                  std::vector<std::string> tokens) {
    mlds::rules::Tier tier;
    tier.name = name;
    tier.kind = kind;
    tier.tokens = std::move(tokens);
    tier.fields.emplace_back().name = "name";
    return tier;
}

inline void AddFeature(mlds::rules::Tier& tier, const char* name, std::vector<std::string> values,
                       std::vector<int> valueOfToken) {
    mlds::rules::Field& field = tier.fields.emplace_back();
    field.name = name;
    field.kind = mlds::rules::Field::Kind::feature;
    field.values = std::move(values);
    field.valueOfToken = std::move(valueOfToken);
}

inline Condition Compare(int field, int value, Comparison comparison = Comparison::equal) {
    Condition condition;
    condition.kind = Condition::Kind::compare;
    condition.field = field;
    condition.comparison = comparison;
    condition.value = value;
    return condition;
}
inline Condition SameAs(int variable, int field = mlds::rules::kNameField) {
    Condition condition;
    condition.kind = Condition::Kind::sameAs;
    condition.variable = variable;
    condition.field = field;
    return condition;
}

inline Pattern Make(Kind kind, std::vector<Pattern> parts = {}, int variable = -1) {
    Pattern pattern;
    pattern.kind = kind;
    pattern.parts = std::move(parts);
    pattern.variable = variable;
    return pattern;
}
inline Pattern Token(Condition condition = {}, int variable = -1) {
    Pattern pattern = Make(Kind::token, {}, variable);
    pattern.condition = std::move(condition);
    return pattern;
}
/// The token of that name, a letter: the tiers here name their tokens "a", "b" and so on.
inline Pattern Letter(char letter, int variable = -1) {
    return Token(Compare(0, letter - 'a'), variable);
}
inline Pattern Repeat(Pattern part, int least, int most, bool bShortest = false) {
    Pattern pattern = Make(Kind::repeat, {std::move(part)});
    pattern.least = least;
    pattern.most = most;
    pattern.bShortest = bShortest;
    return pattern;
}
inline Pattern InTier(Kind kind, int tier, std::vector<Pattern> parts = {}) {
    Pattern pattern = Make(kind, std::move(parts));
    pattern.tier = tier;
    return pattern;
}

/// The tests of a model in a container, with the variables of one rule.
class Lowering {
public:
    Lowering(const mlds::rules::Model& model, const std::vector<mlds::rules::Variable>& variables);

    const mlds::rules::Lowered& lowered() const { return m_lowered; }
    const mlds::rules::Diagnostics& diagnostics() const { return m_diagnostics; }
    /// What the assembler finds wrong with the tests; empty if nothing.
    std::string Faults() const;
    std::string Listing(int test) const;
    /// Runs a test, which binds `^end` and the rule's marks if it holds.
    bool Run(CPlexa& plexa, int test, CSyncMark* pAt);
    /// A rule's tests, one after the other, as a host tries them.
    bool Apply(CPlexa& plexa, int block, int rule, CSyncMark* pAt);

    CSyncMark* pEnd = nullptr;
    std::vector<CSyncMark*> marks;

private:
    mlds_testasm::Schema m_schema;
    std::vector<mlds::rules::Variable> m_variables;
    mlds::rules::Sources m_sources;
    mlds::rules::Diagnostics m_diagnostics;
    mlds::rules::Lowered m_lowered;
};

}  // namespace mlds_test

#endif
