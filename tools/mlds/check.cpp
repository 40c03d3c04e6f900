// mlds check: what is wrong with rules.
#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "program.h"
#include "rulefile.h"

namespace mlds_program {

namespace {

using mlds::rules::Diagnostic;
using mlds::rules::Severity;

const char* NameOf(Severity severity) {
    return severity == Severity::error ? "error" : "warning";
}

std::string Json(const std::vector<Diagnostic>& diagnostics) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const Diagnostic& diagnostic : diagnostics) {
        all.push_back({{"file", diagnostic.file},
                       {"line", diagnostic.span.line},
                       {"column", diagnostic.span.column},
                       {"length", diagnostic.span.length},
                       {"severity", NameOf(diagnostic.severity)},
                       {"message", diagnostic.message}});
    }
    // Rule files of any bytes are checked, and file names are bytes too.
    return all.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

std::string Counted(std::ptrdiff_t n, const std::string& what) {
    return std::to_string(n) + ' ' + what + (n == 1 ? "" : "s");
}

}  // namespace

int Check(const CheckOptions& options) {
    const std::string path = FindRules(options.rules);
    if (path.empty()) return kBadUse;
    mlds::rules::Diagnostics diagnostics;
    const bool bRuns = mlds::RuleSet::Read(path, diagnostics) != nullptr;
    const std::vector<Diagnostic> all = diagnostics.all();
    if (options.bJson) {
        std::cout << Json(all);
    } else {
        const auto nErrors = std::ranges::count(all, Severity::error, &Diagnostic::severity);
        const auto nWarnings = std::ranges::count(all, Severity::warning, &Diagnostic::severity);
        std::cerr << diagnostics.Text();
        std::cout << path << ": " << Counted(nErrors, "error") << ", "
                  << Counted(nWarnings, "warning") << '\n';
    }
    if (!FlushOutput()) return kFailed;
    return bRuns ? kDone : kBadUse;
}

}  // namespace mlds_program
