// Finding and reading the rules that the command line names.
#include "rulefile.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <vector>

#include "program.h"

namespace mlds_program {

namespace {

namespace fs = std::filesystem;

constexpr const char* kEnding = ".mlr";

// The folders in which languages are looked for, in this order.
std::vector<fs::path> LanguageFolders() {
    std::vector<fs::path> folders;
    const char* listed = std::getenv("MLDS_LANGUAGES");
    std::string_view rest = listed != nullptr ? listed : "";
    while (!rest.empty()) {
        const std::size_t colon = rest.find(':');
        if (colon != 0) folders.emplace_back(rest.substr(0, colon));
        rest.remove_prefix(colon == std::string_view::npos ? rest.size() : colon + 1);
    }
    // From the program's own place, so that an installation can be moved. A build tree has its
    // languages there as well.
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    if (!error) {
        const fs::path folder = self.parent_path() / MLDS_DATA_FROM_PROGRAM / "mlds/languages";
        folders.push_back(folder.lexically_normal());
    }
    return folders;
}

bool IsFile(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error) && !fs::is_directory(path, error);
}

}  // namespace

std::string FindRules(const std::string& rules) {
    if (IsFile(rules)) return rules;
    const fs::path path(rules);
    const bool bName = !path.has_parent_path() && path.extension() != kEnding;
    if (!bName) {
        Complain("there is no rule file '" + rules + "'");
        return "";
    }
    std::string tried;
    for (const fs::path& folder : LanguageFolders()) {
        fs::path file = folder / (rules + kEnding);
        if (IsFile(file)) return file.string();
        tried += (tried.empty() ? "" : ", ") + folder.string();
    }
    Complain("there is no rule file '" + rules + "', and no language of that name" +
             (tried.empty() ? "" : ": no " + rules + kEnding + " in " + tried));
    return "";
}

std::shared_ptr<const mlds::RuleSet> ReadRules(const std::string& rules) {
    const std::string path = FindRules(rules);
    if (path.empty()) return nullptr;
    mlds::rules::Diagnostics diagnostics;
    std::shared_ptr<const mlds::RuleSet> pRules = mlds::RuleSet::Read(path, diagnostics);
    std::cerr << diagnostics.Text();
    return pRules;
}

}  // namespace mlds_program
