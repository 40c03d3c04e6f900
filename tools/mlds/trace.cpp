// mlds trace: which rules were tried, and what came of it.
#include "commands.h"
#include "program.h"
#include "rulefile.h"

namespace mlds_program {

int Trace(const TraceOptions& options) {
    if (!ReadRules(options.rules)) return kBadUse;
    // What is traced is told by the host's observer, which has no events yet.
    Complain("trace comes with a later version");
    return kBadUse;
}

}  // namespace mlds_program
