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
/// One side of an environment. The left one is matched from its end, so that what it captures is
/// known in front of it only.
Pattern ResolveSide(Scope& scope, Variables& variables, const Place& place,
                    const syntax::Sequence& written, bool bLeftward);
/// The names that a side binds, which the other side may use before this one is resolved.
std::vector<const syntax::Item*> BindingsOf(const syntax::Sequence& written);

/// Marks the tokens that the pattern's first token may be; a pattern that can be empty may begin
/// with any.
std::vector<bool> FirstTokens(const Tier& tier, const Pattern& pattern);
/// Marks the tokens that a pattern certainly takes, each by itself.
std::vector<bool> CoveredTokens(const Tier& tier, const Pattern& pattern);

}  // namespace mlds::rules

#endif
