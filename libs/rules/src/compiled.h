// What a rule set is made of.
#ifndef MLDS_RULES_COMPILED_H
#define MLDS_RULES_COMPILED_H

#include <vector>

#include "lowering/lowering.h"
#include "mlds/rules/model.h"
#include "text/lexicon.h"

namespace mlds::rules {

struct CompiledRules {
    Sources sources;
    Model model;
    Lowered lowered;
    std::vector<Lexicon> lexicons;  ///< as in model.lexicons
    /// By block and token: the rules whose focus may begin with it, in their order. Time tiers,
    /// whose tokens are numbers, have one list for all.
    std::vector<std::vector<std::vector<int>>> candidates;
};

}  // namespace mlds::rules

#endif
