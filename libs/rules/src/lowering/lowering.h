// Rules as tests of the interpreter.
#ifndef MLDS_RULES_LOWERING_H
#define MLDS_RULES_LOWERING_H

#include <memory>
#include <string>
#include <vector>

#include "mlds/rules/diagnostics.h"
#include "mlds/rules/model.h"
#include "mlds/testasm/testasm.h"

namespace mlds::rules {

/// The variables of every test; those of the rule itself come behind them.
enum HostVariable { varAt, varEnd, kHostVariables };
/// What a rule may bind: the interpreter's lists hold 50.
inline constexpr int kMostRuleVariables = 46;

/// Which part of a rule an instruction was made for, so that a trace can speak of rules.
struct Element {
    enum class Part { none, focus, left, right };
    Part part = Part::none;
    /// The node of the model; null for instructions that only hold others together.
    const Pattern* pPattern = nullptr;
    /// True for the instruction that decides about the node: a token that fits or does not, an
    /// edge.
    bool bDecides = false;
    /// True for "Not edge": it fails where the next token is beyond the `within` tier.
    bool bStaysWithin = false;
};

struct LoweredTest {
    std::string name;
    int base = 0;                   ///< of its header, in code
    std::vector<Element> elements;  ///< by instruction
};

/// The tests of one rule, by their indices in Lowered::tests.
struct LoweredRule {
    std::vector<int> where;   ///< tried in order; the first that holds is enough
    std::vector<int> except;  ///< asked when one of them holds
};

struct Lowered {
    mlds_testasm::Program program;
    mlds_testasm::Image image;
    std::unique_ptr<unsigned char[][5]> code;  ///< for CPlexa::Test
    std::vector<LoweredTest> tests;
    std::vector<std::vector<LoweredRule>> rules;  ///< by block and rule
    std::vector<std::vector<int>> spans;          ///< the test of every span pattern, by tier
};

/// Lowers everything that a model holds; it must outlive the result. A rule that does not fit into
/// a test is an error at the rule.
Lowered Lower(const Model& model, const Sources& sources, Diagnostics& diagnostics);

/// The names of the tiers and fields, as tests use them: stream and field numbers are those of the
/// model.
mlds_testasm::Schema SchemaOf(const Model& model, const std::vector<Variable>& variables);

}  // namespace mlds::rules

#endif
