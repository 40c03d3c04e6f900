// mlds trace: which rules were tried, what each wanted and what it found.
#include "mlds/rules/trace.h"

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "commands.h"
#include "counts.h"
#include "mlds/io/width.h"
#include "places.h"
#include "program.h"
#include "rulefile.h"

namespace mlds_program {

namespace {

using namespace mlds::rules;

// Columns of the trace: the place, and the rule with its line.
constexpr int kPlaceWidth = 16;
constexpr int kRuleWidth = 40;

std::string Padded(std::string text, int width) {
    const std::size_t columns = mlds::io::Columns(text);
    const std::size_t wanted = static_cast<std::size_t>(width);
    return columns < wanted ? text + std::string(wanted - columns, ' ') : text;
}

// What the rule will do to the tokens of its focus, before it has.
std::string Effect(const mlds::RuleSet& rules, const TriedRule& tried) {
    const Rule& rule = *tried.pRule;
    const Model& model = rules.model();
    if (rule.action == Action::scale) return "~ " + std::to_string(rule.percent) + '%';
    if (rule.action == Action::replace) {
        const std::size_t arrow = rule.text.find("->");
        const std::size_t end = rule.text.find_first_of("/\\", arrow);
        std::string result = rule.text.substr(arrow, end - arrow);
        while (result.ends_with(' ')) result.pop_back();
        return result;
    }
    const Tier& tier = model.tiers[static_cast<std::size_t>(tried.pBlock->from)];
    std::string text;
    for (CStreamObj* p = tried.pAt; p != nullptr && p != tried.pEnd; p = p->GetNextStreamObj()) {
        if (!p->GetObjectType(otToken)) continue;
        auto* pToken = static_cast<CToken*>(p);
        text += (text.empty() ? "" : "; ") + std::string(pToken->GetNameField()) + ":";
        for (const Setting& setting : rule.settings) {
            const Field& field = tier.fields[static_cast<std::size_t>(setting.field)];
            const auto show = [&field](int value) {
                const bool bNamed = field.kind == Field::Kind::feature && value >= 0 &&
                                    static_cast<std::size_t>(value) < field.values.size();
                return bNamed ? field.values[static_cast<std::size_t>(value)]
                              : std::to_string(value);
            };
            text += ' ' + field.name + ' ' + show(pToken->GetFieldValueIndex(setting.field)) +
                    " -> " + show(setting.value);
        }
    }
    return text;
}

class Printer : public RuleTrace {
public:
    Printer(mlds::RuleHost& host, const TraceOptions& options)
        : RuleTrace(host, options.ruleLine > 0 ? TraceDetail::elements : TraceDetail::words),
          m_options(options) {}

    void Begin(const std::string& word) { m_heading = word; }
    /// True if anything was shown.
    bool bShown() const { return m_bShown; }

private:
    void BeforeBlock(const Block&) override { m_pBlock = nullptr; }

    void Tried(const TriedRule& tried) override {
        const Scope scope(host(), *tried.pBlock, tried.pAt);
        const int number = scope.NumberOf(tried.pAt);
        if (m_options.at > 0 && number != m_options.at) return;
        if (m_options.ruleLine > 0 && tried.pRule->span.line != m_options.ruleLine) return;
        m_bShown = true;
        if (m_pBlock != tried.pBlock) PrintBlock(*tried.pBlock);
        PrintPlace(scope, number, tried);
        PrintRule(scope, tried);
        if (m_options.ruleLine > 0) PrintElements(scope, tried);
    }

    void PrintBlock(const Block& block) {
        const Model& model = host().rules().model();
        const auto name = [&model](TierId tier) {
            return model.tiers[static_cast<std::size_t>(tier)].name;
        };
        std::string text = "block " + block.name + " (" + name(block.from);
        if (block.to != kNoTier) text += " -> " + name(block.to);
        if (block.within != kNoTier) text += ", within " + name(block.within);
        std::cout << Padded(m_heading, kPlaceWidth + kRuleWidth + 4) << text << ")\n";
        m_heading.clear();
        m_pBlock = &block;
        m_pLastAt = nullptr;
    }

    // The place stands in front of the first rule that is tried there.
    void PrintPlace(const Scope& scope, int number, const TriedRule& tried) {
        std::string place;
        if (m_pLastAt != tried.pAt) {
            place =
                (number < 10 ? " " : "") + std::to_string(number) + ' ' + scope.WithBar(tried.pAt);
            if (m_options.bAll) place = WithOthers(std::move(place), tried);
        }
        m_pLastAt = tried.pAt;
        std::cout << Padded(place, kPlaceWidth);
    }

    // How many rules of a block that takes the first one are for other tokens.
    std::string WithOthers(std::string place, const TriedRule& tried) {
        const CToken* pToken = tried.pAt->GetNextToken();
        if (pToken == nullptr || !tried.pBlock->bFirst) return place;
        const auto name =
            static_cast<std::size_t>(const_cast<CToken*>(pToken)->GetFieldValueIndex(kNameField));
        const auto others = std::ranges::count_if(tried.pBlock->rules, [name](const Rule& rule) {
            return name < rule.firstTokens.size() && !rule.firstTokens[name];
        });
        std::cout << Padded(std::move(place), kPlaceWidth) << "     " << others
                  << " rules for other "
                  << host().rules().model().tiers[static_cast<std::size_t>(tried.pBlock->from)].name
                  << '\n';
        return "";
    }

    void PrintRule(const Scope& scope, const TriedRule& tried) {
        std::string text = tried.pRule->text;
        if (mlds::io::Columns(text) > kRuleWidth) {
            text = mlds::io::CutColumns(text, 0, kRuleWidth - 3) + "...";
        }
        std::cout << std::setw(4) << tried.pRule->span.line << ' '
                  << Padded(std::move(text), kRuleWidth) << ' ';
        if (tried.Holds()) {
            std::cout << "YES  " << scope.WithBar(tried.pEnd) << "   "
                      << Effect(host().rules(), tried) << '\n';
        } else {
            std::cout << "no   " << tried.Why() << '\n';
        }
    }

    void PrintElements(const Scope& scope, const TriedRule& tried) {
        for (const TracedElement& element : tried.elements) {
            std::string place = "?";
            if (element.pAt != nullptr) {
                place = element.pAt->GetStream() == tried.pAt->GetStream()
                            ? scope.WithBar(element.pAt)
                            : "in " + std::string(element.pAt->GetStream()->GetStreamName());
            }
            std::cout << "       " << (element.bLeftward ? "< " : "> ")
                      << Padded(std::move(place), kPlaceWidth)
                      << (element.bFits ? "fits  " : "FAILS ") << "wanted " << element.wanted
                      << ", found " << element.found << '\n';
        }
    }

    const TraceOptions& m_options;
    std::string m_heading;
    bool m_bShown = false;
    const Block* m_pBlock = nullptr;
    CSyncMark* m_pLastAt = nullptr;
};

// Says where a text could not be read; the rules still ran over the rest.
void PrintFaults(const std::string& word, const mlds::RunOutcome& outcome) {
    for (const TextFault& fault : outcome.faults) {
        std::cerr << word << ':' << fault.column << ": warning: " << fault.what << '\n';
    }
}

// A question about a rule or a place that nothing answers.
void SayWhyNothing(const mlds::RuleSet& rules, const TraceOptions& options,
                   const std::string& word) {
    bool bThere = options.ruleLine < 1;
    for (const Block& block : rules.model().blocks) {
        for (const Rule& rule : block.rules) bThere |= rule.span.line == options.ruleLine;
    }
    if (!bThere) {
        Complain("no rule begins on line " + std::to_string(options.ruleLine));
    } else if (options.ruleLine > 0) {
        Complain("the rule on line " + std::to_string(options.ruleLine) +
                 " was tried nowhere in '" + word +
                 "': an earlier one held, or its first token does not stand there");
    } else {
        Complain("no rule was tried in '" + word + "'" +
                 (options.at > 0 ? " at place " + std::to_string(options.at) : ""));
    }
}

}  // namespace

int Trace(const TraceOptions& options) {
    const std::shared_ptr<const mlds::RuleSet> pRules = ReadRules(options.rules);
    if (!pRules) return kBadUse;
    if (options.bCounts) return TraceCounts(pRules, options);
    mlds::RuleHost host(pRules);
    const TierId shown = pRules->model().shown;
    bool bDone = true;
    for (const std::string& word : options.words) {
        Printer printer(host, options);
        printer.Begin(word);
        const mlds::RunOutcome outcome = host.Run(word);
        PrintFaults(word, outcome);
        if (!printer.bShown()) SayWhyNothing(*pRules, options, word);
        bDone = bDone && outcome.bDone;
        if (shown == kNoTier) continue;
        std::cout << pRules->model().tiers[static_cast<std::size_t>(shown)].name << "  "
                  << host.Shown(shown) << '\n';
    }
    return FlushOutput() && bDone ? kDone : kFailed;
}

}  // namespace mlds_program
