// mlds view: rules at work, in a viewer's page.
#include "commands.h"
#include "program.h"
#include "rulefile.h"

namespace mlds_program {

int View(const ViewOptions& options) {
    if (!ReadRules(options.rules)) return kBadUse;
    // Steps are taken between the rules, where the host does not stop yet.
    Complain("view comes with a later version");
    return kBadUse;
}

}  // namespace mlds_program
