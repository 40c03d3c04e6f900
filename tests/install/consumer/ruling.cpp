// A small host that reads a rule file and runs it.
#include <cstdio>

#include "mlds/rules/rulehost.h"
#include "mlds/rules/ruleset.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    mlds::rules::Diagnostics diagnostics;
    const std::shared_ptr<const mlds::RuleSet> rules = mlds::RuleSet::Read(argv[1], diagnostics);
    std::fputs(diagnostics.Text().c_str(), stderr);
    if (!rules) return 1;
    mlds::RuleHost host(rules);
    if (!host.Run("Hola 7").bDone) return 1;
    std::printf("phones: %s\n", host.Shown(rules->model().FindTier("phone")).c_str());
    return 0;
}
