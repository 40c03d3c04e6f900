// Running rules over all utterances, in one thread or in several.
#ifndef MLDS_PROGRAM_JOBS_H
#define MLDS_PROGRAM_JOBS_H

#include <memory>

#include "formats.h"
#include "inputs.h"
#include "outputs.h"
#include "progress.h"

namespace mlds_program {

/// Reads, runs and writes everything in the order of the inputs, whatever the number of jobs. Not
/// more is read ahead than the jobs need. False if the output could not be written.
bool RunAll(std::shared_ptr<const mlds::RuleSet> pRules, const Work& work, int jobs, Inputs& inputs,
            Outputs& outputs, Progress& progress);

}  // namespace mlds_program

#endif
