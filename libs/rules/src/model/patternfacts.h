// What can be said of a pattern by itself.
#ifndef MLDS_RULES_PATTERNFACTS_H
#define MLDS_RULES_PATTERNFACTS_H

#include "mlds/rules/model.h"

namespace mlds::rules {

/// True if a pattern can match without taking a token of its tier.
bool CanBeEmpty(const Pattern& pattern);
/// True if it can match and take one.
bool CanTake(const Pattern& pattern);
/// True if it takes one token, whatever it matches.
bool TakesOneToken(const Pattern& pattern);
/// True if both look for the same, wherever they are written.
bool IsSame(const Pattern& a, const Pattern& b);

}  // namespace mlds::rules

#endif
