// mlds test: the asserts of a rule file, and cases from a table.
#include <iostream>
#include <string>
#include <string_view>

#include "commands.h"
#include "coverage.h"
#include "inputs.h"
#include "mlds/rules/rulehost.h"
#include "program.h"
#include "rulefile.h"

namespace mlds_program {

namespace {

using mlds::rules::Assert;
using mlds::rules::TierId;

// More of them say no more.
constexpr std::size_t kMostShown = 20;

// Tokens with one blank between them: how wide gaps are is no matter of the rules.
std::string Squeezed(std::string_view text) {
    std::string squeezed;
    bool bGap = false;
    for (const char c : text) {
        if (c == ' ' || c == '\t') {
            bGap = !squeezed.empty();
            continue;
        }
        if (bGap) squeezed += ' ';
        bGap = false;
        squeezed += c;
    }
    return squeezed;
}

// What was tried of one file, and how much of it failed.
class Score {
public:
    Score(std::string name, std::string what, bool bAll)
        : m_name(std::move(name)), m_what(std::move(what)), m_bAll(bAll) {}

    void Pass() { ++m_nTried; }
    void Fail(const std::string& message) {
        ++m_nTried;
        if (++m_nFailed <= kMostShown || m_bAll) std::cerr << message << '\n';
    }
    /// True if nothing failed. Nothing is said of none.
    bool Print() const {
        if (m_nFailed > kMostShown && !m_bAll) {
            std::cerr << m_name << ": and " << m_nFailed - kMostShown
                      << " more that failed; --all shows them\n";
        }
        std::cout << m_name << ": " << m_nTried << ' ' << m_what << (m_nTried == 1 ? "" : "s")
                  << ", " << m_nFailed << " failed\n";
        return m_nFailed == 0;
    }

private:
    std::string m_name;
    std::string m_what;
    bool m_bAll;
    std::size_t m_nTried = 0;
    std::size_t m_nFailed = 0;
};

class Tester {
public:
    explicit Tester(const std::shared_ptr<const mlds::RuleSet>& pRules)
        : m_host(pRules), m_coverage(m_host) {}

    /// Empty if the tier holds what is expected, else what was found instead.
    std::string Try(std::string_view input, TierId tier, std::string_view expected) {
        mlds::RunOptions options;
        options.wanted = tier;
        const mlds::RunOutcome outcome = m_host.Run(input, options);
        std::string found;
        if (outcome.bDone) {
            const std::string shown = Squeezed(m_host.Shown(tier));
            if (shown == Squeezed(expected)) return "";
            found = shown.empty() ? "found nothing" : "found " + shown;
        } else {
            found = "the text could not be done";
        }
        for (const mlds::rules::TextFault& fault : outcome.faults) found += "; " + fault.what;
        return found;
    }

    /// The rules that did not hold where the tier is not what is expected; a line each.
    std::string NearMisses(std::string_view input, TierId tier, std::string_view expected) {
        m_coverage.Pause();
        std::string misses = mlds_program::NearMisses(m_host, input, tier, expected);
        m_coverage.Resume();
        return misses;
    }

    const mlds::RuleSet& rules() const { return m_host.rules(); }
    const Coverage& coverage() const { return m_coverage; }

private:
    mlds::RuleHost m_host;
    Coverage m_coverage;
};

std::string Quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

bool TestAsserts(Tester& tester, bool bAll) {
    const mlds::rules::Sources& sources = tester.rules().sources();
    const mlds::rules::Model& model = tester.rules().model();
    Score score(sources.At(0).name(), "assert", bAll);
    for (const Assert& assert : model.asserts) {
        const std::string found = tester.Try(assert.input, assert.tier, assert.expected);
        if (found.empty()) {
            score.Pass();
            continue;
        }
        const mlds::rules::Span& span = assert.inputSpan.line > 0 ? assert.inputSpan : assert.span;
        score.Fail(sources.At(span.file).name() + ':' + std::to_string(span.line) + ':' +
                   std::to_string(span.column) + ": assert failed: " + Quoted(assert.input) +
                   " => " + Squeezed(assert.expected) + ", " + found +
                   tester.NearMisses(assert.input, assert.tier, assert.expected));
    }
    return score.Print();
}

bool TestCases(Tester& tester, const std::string& path, bool bAll) {
    Inputs inputs(std::vector<std::string>{path});
    const TierId tier = tester.rules().model().shown;
    Score score(path == "-" ? "<stdin>" : path, "case", bAll);
    for (Utterance line; inputs.Next(line);) {
        const std::string_view text = line.text;
        const std::size_t tab = text.find('\t');
        if (tab == std::string_view::npos || line.bContinues) {
            if (text.starts_with(';') && !line.bContinues) continue;  // a comment
            const char* what = line.bContinues ? ": the line is too long for a case"
                                               : ": no TAB between a text and what is expected";
            score.Fail(line.place() + what);
            continue;
        }
        const std::string_view input = text.substr(0, tab);
        const std::string_view expected = text.substr(tab + 1);
        const std::string found = tester.Try(input, tier, expected);
        if (found.empty()) {
            score.Pass();
        } else {
            score.Fail(line.place() + ": failed: " + Quoted(input) + " => " + Squeezed(expected) +
                       ", " + found + tester.NearMisses(input, tier, expected));
        }
    }
    return score.Print() && inputs.ok();
}

}  // namespace

int Test(const TestOptions& options) {
    const std::shared_ptr<const mlds::RuleSet> pRules = ReadRules(options.rules);
    if (!pRules) return kBadUse;
    Tester tester(pRules);
    bool bAll = TestAsserts(tester, options.bAll);
    for (const std::string& path : options.cases) {
        bAll = TestCases(tester, path, options.bAll) && bAll;
    }
    tester.coverage().Print();
    return FlushOutput() && bAll ? kDone : kFailed;
}

}  // namespace mlds_program
