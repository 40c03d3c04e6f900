// What looks right in a test and is not.
#ifndef MLDS_TESTASM_SRC_TRAPS_H
#define MLDS_TESTASM_SRC_TRAPS_H

#include "mlds/testasm/diagnostics.h"
#include "mlds/testasm/model.h"
#include "mlds/testasm/schema.h"

namespace mlds_testasm {

/// Warns of patterns that match or fail otherwise than they read. The test must be valid.
void CheckTraps(const Test& test, const Schema& schema, Diagnostics& diagnostics);

/// Warns of a context that runs back over the focus and tests the focus's own tokens or the places
/// between them. The test must be valid.
void CheckOverlap(const Test& test, const Schema& schema, Diagnostics& diagnostics);

}  // namespace mlds_testasm

#endif
