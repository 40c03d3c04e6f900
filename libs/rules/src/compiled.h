// What a rule set is made of.
#ifndef MLDS_RULES_COMPILED_H
#define MLDS_RULES_COMPILED_H

#include <vector>

#include "host/shortcuts.h"
#include "lowering/lowering.h"
#include "mlds/rules/model.h"
#include "text/lexicon.h"

namespace mlds::rules {

struct CompiledRules {
    Sources sources;
    Model model;
    Lowered lowered;
    std::vector<Lexicon> lexicons;  ///< as in model.lexicons
    Candidates candidates;
    std::vector<std::vector<Shortcuts>> shortcuts;  ///< by block and rule
};

}  // namespace mlds::rules

#endif
