// Patterns: what the author wrote, in the tier where it stands.
#ifndef MLDS_RULES_PATTERNS_H
#define MLDS_RULES_PATTERNS_H

#include "model/conditions.h"
#include "model/patternfacts.h"
#include "model/scope.h"
#include "model/variables.h"

namespace mlds::rules {

/// Where a pattern stands.
struct Place {
    TierId tier = kNoTier;
    TierId within = kNoTier;  ///< of the block; what a bare '#' is the edge of
};

Pattern ResolvePattern(Scope& scope, Variables& variables, const Place& place,
                       const syntax::Pattern& written);
Pattern ResolveSequence(Scope& scope, Variables& variables, const Place& place,
                        const syntax::Sequence& written);

/// Marks the tokens that the pattern's first token may be; a pattern that can be empty may begin
/// with any.
std::vector<bool> FirstTokens(const Tier& tier, const Pattern& pattern);
/// Marks the tokens that a pattern certainly takes, each by itself.
std::vector<bool> CoveredTokens(const Tier& tier, const Pattern& pattern);

}  // namespace mlds::rules

#endif
