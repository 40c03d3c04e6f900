// The tiers of a model in a container.
#ifndef MLDS_RULES_TIERS_H
#define MLDS_RULES_TIERS_H

#include "mlds/plexa.h"
#include "mlds/rules/model.h"

namespace mlds::rules {

/// Adds the streams of the model to a container that has none, with their fields, possible values
/// and value sets, and makes the first time tier the default time stream. False when memory runs
/// out.
bool DeclareTiers(CPlexa& plexa, const Model& model);

}  // namespace mlds::rules

#endif
