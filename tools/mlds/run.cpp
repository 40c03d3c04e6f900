// mlds run: rules over texts.
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>

#include "commands.h"
#include "jobs.h"
#include "program.h"
#include "rulefile.h"

namespace mlds_program {

namespace {

std::optional<Format> FormatOf(const std::string& name) {
    static const std::map<std::string, Format> kFormats = {{"tiers", Format::tiers},
                                                           {"phones", Format::phones},
                                                           {"ipa", Format::ipa},
                                                           {"textgrid", Format::textGrid},
                                                           {"svg", Format::svg}};
    const auto it = kFormats.find(name);
    if (it != kFormats.end()) return it->second;
    Complain("--format " + name + " comes with a later version");
    return std::nullopt;
}

// False if the options do not go together, which is then said.
bool CheckFolder(const RunOptions& options, Format format) {
    if (!IsTimed(format)) {
        if (options.folder.empty() && !options.bPerFile) return true;
        Complain("--out and --per are for the formats that are files: textgrid and svg");
        return false;
    }
    if (options.folder.empty()) {
        Complain("--format " + options.format + " makes files: --out DIR says where");
        return false;
    }
    if (!std::filesystem::is_directory(options.folder)) {
        Complain("'" + options.folder + "' is no folder");
        return false;
    }
    if (options.bPerFile && format == Format::svg) {
        Complain("--per file is for --format textgrid: a drawing shows one line");
        return false;
    }
    return true;
}

mlds::rules::Unknown UnknownOf(const RunOptions& options) {
    using mlds::rules::Unknown;
    if (options.bStrict || options.unknown == "error") return Unknown::error;
    return options.unknown == "keep" ? Unknown::keep : Unknown::skip;
}

int RunOver(Inputs& inputs, const std::shared_ptr<const mlds::RuleSet>& pRules, const Work& work,
            int jobs, Outputs& outputs, Progress& progress) {
    const bool bWritten = RunAll(pRules, work, jobs, inputs, outputs, progress) && outputs.Finish();
    return bWritten && inputs.ok() && outputs.ok() ? kDone : kFailed;
}

}  // namespace

int Run(const RunOptions& options) {
    const std::optional<Format> format = FormatOf(options.format);
    if (!format || !CheckFolder(options, *format)) return kBadUse;
    const std::shared_ptr<const mlds::RuleSet> pRules = ReadRules(options.rules);
    if (!pRules) return kBadUse;
    Work work;
    work.format = *format;
    work.run.unknown = UnknownOf(options);
    work.run.ratePercent = options.ratePercent;
    if (!PlanWork(*pRules, work)) return kBadUse;

    Progress progress;
    Outputs outputs(*format, options.folder, options.bPerFile, progress);
    if (options.bText) {
        Inputs inputs = Inputs::OfText(options.text);
        return RunOver(inputs, pRules, work, options.jobs, outputs, progress);
    }
    Inputs inputs(options.files);
    // Who types lines sees what became of them before typing the next.
    inputs.SetBeforeWaiting([] { std::cout.flush(); });
    return RunOver(inputs, pRules, work, options.jobs, outputs, progress);
}

}  // namespace mlds_program
