// The tiers of a model in a container.
#ifndef MLDS_RULES_TIERS_H
#define MLDS_RULES_TIERS_H

#include <string>

#include "mlds/plexa.h"
#include "mlds/rules/model.h"

namespace mlds::rules {

/// What a token holds in a feature that gives it no value: one behind the feature's own values,
/// under this name. Without it the token would hold 0, the first of them.
inline constexpr const char* kNoValue = "(none)";
/// True if some token of the tier has no value in the feature.
bool LeavesTokensOut(const Field& feature);

/// Adds the streams of the model to a container that has none, with their fields, possible values
/// and value sets, and makes the first time tier the default time stream. False when memory runs
/// out or a limit of the container is passed: 50 streams, 50 fields a stream, 30 values a feature,
/// kNoValue included.
bool AddTiers(CPlexa& plexa, const Model& model);
/// The same, and initializes the container.
bool DeclareTiers(CPlexa& plexa, const Model& model);

/// Where a container of somebody else's has not the tiers of the model: "stream 2 is called 'x',
/// and the rules need 'letters'". Empty if it has.
std::string DifferenceOfTiers(CPlexa& plexa, const Model& model);

}  // namespace mlds::rules

#endif
