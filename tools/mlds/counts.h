// How often rules were tried and held.
#ifndef MLDS_PROGRAM_COUNTS_H
#define MLDS_PROGRAM_COUNTS_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "commands.h"
#include "mlds/rules/trace.h"

namespace mlds_program {

/// What became of one rule over a whole text.
struct RuleCount {
    const mlds::rules::Rule* pRule = nullptr;
    long nTried = 0;
    long nHeld = 0;
    std::map<std::string, long> failedAt;  ///< by the element, as the rule has it
};

/// Counts every rule of a host, in the order of the file.
class Counter : public mlds::rules::RuleTrace {
public:
    explicit Counter(mlds::RuleHost& host);
    const std::vector<RuleCount>& counts() const { return m_counts; }

private:
    void Tried(const mlds::rules::TriedRule& tried) override;

    std::vector<RuleCount> m_counts;
    std::vector<std::size_t> m_firstOfBlock;
};

/// mlds trace --counts: a table over texts, rules that never held first.
int TraceCounts(const std::shared_ptr<const mlds::RuleSet>& pRules, const TraceOptions& options);

}  // namespace mlds_program

#endif
