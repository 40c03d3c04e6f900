// The commands of the program, with what the command line says to them.
#ifndef MLDS_PROGRAM_COMMANDS_H
#define MLDS_PROGRAM_COMMANDS_H

#include <string>
#include <vector>

#include "mlds/rules/text.h"

namespace mlds_program {

struct RunOptions {
    std::string rules;
    std::vector<std::string> files;  ///< "-" is standard input; none: standard input too
    std::string text;                ///< instead of files, if bText
    bool bText = false;
    std::string format = "tiers";
    std::string folder;
    bool bPerFile = false;
    int ratePercent = 100;
    int jobs = 1;
    bool bStrict = false;
    std::string unknown = "skip";
};
int Run(const RunOptions& options);

struct CheckOptions {
    std::string rules;
    bool bJson = false;
};
int Check(const CheckOptions& options);

struct TestOptions {
    std::string rules;
    std::vector<std::string> cases;
    bool bAll = false;  ///< every failure, however many
};
int Test(const TestOptions& options);

struct TraceOptions {
    std::string rules;
    std::vector<std::string> words;  ///< files, with bCounts
    int at = -1;
    int ruleLine = -1;
    bool bAll = false;
    bool bCounts = false;
};
int Trace(const TraceOptions& options);

struct ViewOptions {
    std::string rules;
    std::vector<std::string> files;
    bool bStep = false;
};
int View(const ViewOptions& options);

struct ListOptions {
    std::string rules;
    std::vector<std::string> which;  ///< "19", "19-24", names of blocks; none: all
};
int List(const ListOptions& options);

int New(const std::string& file);

}  // namespace mlds_program

#endif
