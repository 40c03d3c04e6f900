// Asking the interpreter whether rules hold.
#ifndef MLDS_RULES_RULETESTS_H
#define MLDS_RULES_RULETESTS_H

#include <memory>
#include <vector>

#include "compiled.h"
#include "mlds/mlds.h"

namespace mlds::rules {

/// The variables of rules in one container, and the tests that bind them.
class RuleTests {
public:
    RuleTests(CPlexa& plexa, const CompiledRules& rules);
    ~RuleTests();
    RuleTests(const RuleTests&) = delete;
    RuleTests& operator=(const RuleTests&) = delete;

    /// Whether a rule holds at a mark: one of its environments and none of its exceptions. What the
    /// rule binds can be asked for until the next one is tried.
    bool Holds(int block, int rule, CSyncMark* pAt);
    /// A rule that binds nothing is known to hold, without a test.
    void SetEnd(CSyncMark* pEnd) { m_pEnd = pEnd; }
    /// Whether a run of a spanning tier begins at a mark.
    bool SpanHolds(TierId tier, std::size_t pattern, CSyncMark* pAt);
    /// The end of the focus, or of the run, that held last.
    CSyncMark* end() const { return m_pEnd; }
    /// What the rule that held last captured; null if it captured nothing there.
    CToken* Captured(int block, int rule, int variable);
    /// A mark that a result binds.
    void BindMark(int block, int rule, int variable, CSyncMark* pMark);

private:
    struct OwnList;

    OwnList* ListOf(int block, int rule);
    bool Test(int test);

    CPlexa& m_plexa;
    const CompiledRules& m_rules;
    CSyncMark* m_pAt = nullptr;
    CSyncMark* m_pEnd = nullptr;
    CVarList m_variables;  // of the rules that bind nothing of their own
    std::vector<std::vector<std::unique_ptr<OwnList>>> m_own;
};

}  // namespace mlds::rules

#endif
