// Rule files of any bytes: read, and what compiles is run.
//
// An input is a rule file. From a line "%%%%" on it is the lexicon that the rules may name, which
// is called "lexicon". Every fault must have a place, and what compiles must leave whole tiers
// behind.
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>

#include "input.h"
#include "mlds/rules/rulehost.h"
#include "support/tiers.h"

using mlds_fuzz::Require;

namespace {

constexpr std::size_t kMostBytes = 6000;
constexpr std::string_view kCut = "\n%%%%\n";
constexpr const char* kTexts[] = {"El chico, a 21 Km.", "qué día"};

// Where the rules look for what they include: a folder with nothing but the input's own lexicon.
class Folder {
public:
    Folder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "rules_fuzzer.XXXXXX").string();
        Require(mkdtemp(name.data()) != nullptr, "no temporary folder");
        m_path = name;
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string Rules() const { return m_path / "rules.mlr"; }
    void WriteLexicon(std::string_view text) const {
        std::ofstream(m_path / "lexicon", std::ios::binary) << text;
    }

private:
    std::filesystem::path m_path;
};

// A path leads out of the folder only by a slash before a name. The machine's own files are neither
// read nor copied into what the fuzzer keeps.
bool MayNameOtherFiles(std::string_view rules) {
    if (rules.find("include") == rules.npos && rules.find("lexicon") == rules.npos) return false;
    for (std::size_t at = rules.find('/'); at != rules.npos; at = rules.find('/', at + 1)) {
        if (at + 1 < rules.size() && std::strchr(" \n\r\t", rules[at + 1]) == nullptr) return true;
    }
    return false;
}

void RequirePlaces(const mlds::rules::Diagnostics& diagnostics, const Folder& folder) {
    for (const mlds::rules::Diagnostic& one : diagnostics.all()) {
        Require(one.file.rfind(folder.Rules().substr(0, folder.Rules().rfind('/')), 0) == 0,
                "about a file that nobody named: " + one.Text());
        Require(one.span.line >= 1 && one.span.column >= 1 && one.span.length >= 1,
                "no place: " + one.Text());
        Require(!one.message.empty() && !one.Text().empty(), "nothing is said");
    }
    Require(diagnostics.Text().empty() == diagnostics.empty(), "faults that are not shown");
}

void Run(std::shared_ptr<const mlds::RuleSet> pRules) {
    mlds::RuleHost host(std::move(pRules));
    for (const char* text : kTexts) {
        const mlds::RunOutcome outcome = host.Run(text);
        Require(outcome.bDone || !outcome.faults.empty(), "not done, and nobody says why");
        const std::string wrong = mlds_test::CheckStructure(host.plexa());
        Require(wrong.empty(), wrong);
        for (int tier = 0; tier < host.plexa().GetNumStreams(); ++tier) {
            host.Shown(tier);
            host.Ipa(tier);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    std::string rules(reinterpret_cast<const char*>(data), size);
    if (size > kMostBytes || MayNameOtherFiles(rules)) return 0;
    if (const std::size_t cut = rules.find(kCut); cut != rules.npos) {
        folder.WriteLexicon(std::string_view(rules).substr(cut + kCut.size()));
        rules.resize(cut + 1);
    }
    mlds::rules::Diagnostics diagnostics;
    const auto pRules = mlds::RuleSet::ReadText(rules, folder.Rules(), diagnostics);
    RequirePlaces(diagnostics, folder);
    Require((pRules == nullptr) == (diagnostics.errors() > 0), "errors and rules, or neither");
    if (pRules != nullptr) Run(pRules);
    return 0;
}
