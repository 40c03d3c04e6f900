// Conditions on one token: what they mean, and which tokens can meet them.
#ifndef MLDS_RULES_CONDITIONS_H
#define MLDS_RULES_CONDITIONS_H

#include <optional>
#include <vector>

#include "model/scope.h"
#include "model/variables.h"

namespace mlds::rules {

/// What a condition in brackets asks of a token of a tier. Names that are not known are reported,
/// and asked for nothing.
Condition ResolveCondition(Scope& scope, Variables& variables, TierId tier,
                           const syntax::Condition& written);

/// The condition that a token has that name.
Condition IsToken(int token, const Span& span);

/// The fields and values that a list of settings gives; what is no such field is reported.
std::vector<Setting> ResolveSettings(Scope& scope, TierId tier,
                                     const std::vector<syntax::Setting>& written);

/// Whether a token can meet a condition, by its name alone. What only a running rule can know
/// (numbers, captures, features that rules change) may be either.
enum class Possible { no, maybe, yes };
Possible CanMeet(const Tier& tier, const Condition& condition, int token);

}  // namespace mlds::rules

#endif
