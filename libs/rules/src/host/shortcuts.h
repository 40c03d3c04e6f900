// What is known of a rule before it is tried.
#ifndef MLDS_RULES_SHORTCUTS_H
#define MLDS_RULES_SHORTCUTS_H

#include <vector>

#include "mlds/rules/model.h"

namespace mlds::rules {

/// What names of tokens say about a rule. Results do not depend on it.
struct Shortcuts {
    /// The first token of the focus is all that the rule asks for, and these names are certain to
    /// be it. Empty: no name is.
    std::vector<bool> certain;
    /// What the token behind the first one of the focus must be called. Empty: anything, or there
    /// need not be one.
    std::vector<bool> second;
};

Shortcuts ShortcutsOf(const Tier& tier, const Rule& rule);

/// By block and token: the rules whose focus may begin with it, in their order. Time tiers, whose
/// tokens are numbers, have one list for all.
using Candidates = std::vector<std::vector<std::vector<int>>>;
Candidates CandidatesOf(const Model& model);

}  // namespace mlds::rules

#endif
