// The tiers of a host of rules, as they are shown.
#ifndef MLDS_PROGRAM_LANES_H
#define MLDS_PROGRAM_LANES_H

#include "mlds/io/view.h"
#include "mlds/rules/rulehost.h"

namespace mlds_program {

/// All tiers with their tokens as the rules show them. Refers to the host.
mlds::io::View LanesOf(mlds::RuleHost& host, bool bIpa);

}  // namespace mlds_program

#endif
