// From statements to the model: every name looked up, everything checked that can be checked before
// a rule is ever tried.
#ifndef MLDS_RULES_RESOLVE_H
#define MLDS_RULES_RESOLVE_H

#include "model/scope.h"

namespace mlds::rules {

/// Makes the model of the statements of all files, in order. What is wrong is reported, and the
/// model is then good for further checks only.
Model Resolve(const std::vector<syntax::Statement>& statements, const Sources& sources,
              Diagnostics& diagnostics);

// The parts of it, each about statements of a kind; in this order.

/// All tiers with their fields, and how the first one is filled from text.
void ResolveTiers(Scope& scope, const std::vector<syntax::Statement>& statements);
/// The patterns and words of the tiers that span others.
void ResolveSpans(Scope& scope, const std::vector<syntax::Statement>& statements);
/// A block with its rules.
void ResolveBlock(Scope& scope, const syntax::Block& written);
/// Shows, IPA, lexicons and asserts.
void ResolveRest(Scope& scope, const std::vector<syntax::Statement>& statements);
/// What can never hold, never win, and what no rule covers.
void CheckRules(Scope& scope);

}  // namespace mlds::rules

#endif
