// Running rules over texts.
#ifndef MLDS_RULES_RULEHOST_H
#define MLDS_RULES_RULEHOST_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mlds/mlds.h"
#include "mlds/rules/ruleset.h"
#include "mlds/rules/text.h"

namespace mlds {

namespace rules {
class RuleObserver;
}

struct RunOptions {
    rules::Unknown unknown = rules::Unknown::skip;
    /// Runs only the blocks that this tier depends on; kNoTier: all.
    rules::TierId wanted = rules::kNoTier;
    /// Scales the time tier afterwards; 200 is twice as fast.
    int ratePercent = 100;
};

struct RunOutcome {
    /// False where the text was not done: a character that is not known under Unknown::error,
    /// rules that make too much of it, memory that ran out.
    bool bDone = false;
    /// What was wrong with the text, in its order.
    std::vector<rules::TextFault> faults;
};

/// A container with the tiers of a rule set, and what fills it. One thread at a time.
class RuleHost {
public:
    /// Makes a container of its own. Throws std::bad_alloc.
    explicit RuleHost(std::shared_ptr<const RuleSet> pRules);
    /// Works in a container of the caller's, which must outlive the host and have the tiers of the
    /// rules. Throws std::invalid_argument, which says where it does not agree.
    RuleHost(std::shared_ptr<const RuleSet> pRules, CPlexa& plexa);
    ~RuleHost();
    RuleHost(const RuleHost&) = delete;
    RuleHost& operator=(const RuleHost&) = delete;

    /// Empties all tiers and fills them from one utterance in UTF-8.
    RunOutcome Run(std::string_view text, const RunOptions& options = {});

    CPlexa& plexa();
    const RuleSet& rules() const;

    /// The tokens of a tier as "show" writes them, one blank between the tokens of a word, two
    /// between words.
    std::string Shown(rules::TierId tier);
    /// The tokens of a tier in IPA, a blank between words.
    std::string Ipa(rules::TierId tier);
    /// One token as "show" writes it: in the tier's own signs or in IPA.
    std::string Label(CToken* pToken, bool bIpa);

    /// Tells what every rule did from now on; null ends that. The observer stays the caller's. The
    /// tiers come out the same.
    void SetObserver(rules::RuleObserver* pObserver);

private:
    struct Parts;
    std::unique_ptr<Parts> m_pParts;
};

}  // namespace mlds

#endif
