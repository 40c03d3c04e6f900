// What all commands of the program share: exit statuses, complaints, standard output.
#ifndef MLDS_PROGRAM_PROGRAM_H
#define MLDS_PROGRAM_PROGRAM_H

#include <string>

namespace mlds_program {

enum Status : int {
    kDone = 0,
    kFailed = 1,  ///< an input, an assert or an output failed
    kBadUse = 2,  ///< a rule file or the command line is wrong
};

/// "mlds: MESSAGE" on standard error.
void Complain(const std::string& message);

/// What errno says; never nothing.
std::string Reason();

/// True if all output is out; else says why not.
bool FlushOutput();

}  // namespace mlds_program

#endif
