// What the rules did while they were tested.
#ifndef MLDS_PROGRAM_COVERAGE_H
#define MLDS_PROGRAM_COVERAGE_H

#include <string>
#include <string_view>
#include <vector>

#include "mlds/rules/observer.h"
#include "mlds/rules/rulehost.h"

namespace mlds_program {

/// Remembers which rules have held.
class Coverage : public mlds::rules::RuleObserver {
public:
    explicit Coverage(mlds::RuleHost& host);
    ~Coverage() override { Pause(); }
    Coverage(const Coverage&) = delete;
    Coverage& operator=(const Coverage&) = delete;

    void Pause() { m_host.SetObserver(nullptr); }
    void Resume() { m_host.SetObserver(this); }
    /// How many rules have held, and which have not, on standard output.
    void Print() const;

private:
    void AfterRule(const mlds::rules::Rule& rule, CSyncMark* pAt, CSyncMark* pEnd) override;

    mlds::RuleHost& m_host;
    std::vector<std::vector<bool>> m_held;  // by block and rule
};

/// Runs a text again, and tells of the rules that were tried and did not hold where a tier is not
/// what is expected: "\n    line 18  qu -> k / _ [front]   did not hold: ..." for each; empty if
/// none is to blame.
std::string NearMisses(mlds::RuleHost& host, std::string_view text, mlds::rules::TierId tier,
                       std::string_view expected);

}  // namespace mlds_program

#endif
