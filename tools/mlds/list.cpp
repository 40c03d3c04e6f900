// mlds list: rules with their instructions.
#include <algorithm>
#include <charconv>
#include <iostream>
#include <optional>

#include "commands.h"
#include "program.h"
#include "rulefile.h"

namespace mlds_program {

namespace {

using mlds::rules::Block;
using mlds::rules::Model;
using mlds::rules::Rule;

// Lines of the rule file, or the name of a block.
struct Wanted {
    std::string text;
    int first = 0;
    int last = -1;  ///< before `first`: it is a name
    bool bFound = false;
};

std::optional<int> Number(std::string_view text) {
    int n = 0;
    const auto [pEnd, error] = std::from_chars(text.data(), text.data() + text.size(), n);
    if (error != std::errc{} || pEnd != text.data() + text.size() || n < 1) return std::nullopt;
    return n;
}

Wanted Read(const std::string& text) {
    Wanted wanted{text};
    const std::size_t dash = text.find('-');
    const std::optional<int> first = Number(std::string_view(text).substr(0, dash));
    const std::optional<int> last =
        dash == std::string::npos ? first : Number(std::string_view(text).substr(dash + 1));
    if (first && last) {
        wanted.first = *first;
        wanted.last = *last;
    }
    return wanted;
}

bool Holds(const Wanted& wanted, const Block& block, const Rule& rule) {
    if (wanted.last < wanted.first) return wanted.text == block.name;
    // Lines are those of the main file; included rules are found by their block.
    return rule.span.file == 0 && rule.span.line >= wanted.first && rule.span.line <= wanted.last;
}

std::string Heading(const mlds::RuleSet& rules, const Block& block, const Rule& rule) {
    return rules.sources().At(rule.span.file).name() + ':' + std::to_string(rule.span.line) +
           ": block " + block.name + ": " + rule.text + '\n';
}

}  // namespace

int List(const ListOptions& options) {
    std::vector<Wanted> wanted;
    for (const std::string& text : options.which) wanted.push_back(Read(text));
    const std::shared_ptr<const mlds::RuleSet> pRules = ReadRules(options.rules);
    if (!pRules) return kBadUse;
    bool bFirst = true;
    const std::vector<Block>& blocks = pRules->model().blocks;
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        for (std::size_t r = 0; r < blocks[b].rules.size(); ++r) {
            const Rule& rule = blocks[b].rules[r];
            bool bWanted = wanted.empty();
            for (Wanted& one : wanted) {
                if (!Holds(one, blocks[b], rule)) continue;
                bWanted = one.bFound = true;
            }
            if (!bWanted) continue;
            std::cout << (bFirst ? "" : "\n") << Heading(*pRules, blocks[b], rule)
                      << pRules->Listing(static_cast<int>(b), static_cast<int>(r));
            bFirst = false;
            if (!std::cout) break;
        }
    }
    if (!FlushOutput()) return kFailed;
    const auto missing = std::ranges::find(wanted, false, &Wanted::bFound);
    if (missing == wanted.end()) return kDone;
    const bool bBlock = missing->last < missing->first;
    Complain((bBlock ? "there is no block '" : "no rule begins on line ") + missing->text +
             (bBlock ? "' with rules" : ""));
    return kBadUse;
}

}  // namespace mlds_program
