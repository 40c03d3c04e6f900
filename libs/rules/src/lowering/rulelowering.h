// One rule, or one pattern of a spanning tier, as tests.
#ifndef MLDS_RULES_RULELOWERING_H
#define MLDS_RULES_RULELOWERING_H

#include <string>

#include "lowering/testbuilder.h"

namespace mlds::rules {

/// What a test does with an environment: where the rule applies, or where it does not although
/// another test has found that it could.
enum class EnvironmentUse { where, except };

/// The instructions of a test; `pTooLong` gets whether there were too many to make them all.
BuiltTest LowerEnvironment(const Block& block, const Rule& rule, const Environment& environment,
                           EnvironmentUse use, std::string name, bool* pTooLong);
BuiltTest LowerSpan(const Tier& tier, const SpanPattern& span, std::string name, bool* pTooLong);

/// True if the left environment needs what the focus or the right one binds, and they what it
/// binds: a test evaluates one of them first.
bool NeedEachOther(const Rule& rule, const Environment& environment);

}  // namespace mlds::rules

#endif
