// What is run for an utterance, and in which order.
#ifndef MLDS_RULES_PLAN_H
#define MLDS_RULES_PLAN_H

#include <vector>

#include "mlds/rules/model.h"

namespace mlds::rules {

struct Step {
    enum class Kind { spans, lexicon, block };
    Kind kind = Kind::block;
    int index = 0;  ///< the tier, the lexicon or the block
};

/// The steps that fill a tier, with all that they look at; for kNoTier all steps. Tiers that span
/// others are filled as soon as those can be: over letters before any block, over what rules make
/// before the first block that looks at them. Lexicons come before any block.
std::vector<Step> PlanFor(const Model& model, TierId wanted);

}  // namespace mlds::rules

#endif
