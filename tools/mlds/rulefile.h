// Finding and reading the rules that the command line names.
#ifndef MLDS_PROGRAM_RULEFILE_H
#define MLDS_PROGRAM_RULEFILE_H

#include <memory>
#include <string>

#include "mlds/rules/ruleset.h"

namespace mlds_program {

/// The file of "es.mlr", "./es" or, where there is no such file, of a language "es": in the folders
/// of MLDS_LANGUAGES, then among the languages that were installed with the program. Empty if there
/// is none, which is then said.
std::string FindRules(const std::string& rules);

/// Finds and reads rules; what is wrong with them goes to standard error. Null if they cannot run.
std::shared_ptr<const mlds::RuleSet> ReadRules(const std::string& rules);

}  // namespace mlds_program

#endif
