// What is known of a rule before it is tried.
#include "host/shortcuts.h"

#include <algorithm>

#include "model/patterns.h"

namespace mlds::rules {

namespace {

using Kind = Pattern::Kind;

bool IsPlainToken(const Pattern& pattern) {
    if (pattern.kind == Kind::token) return pattern.variable < 0;
    return pattern.kind == Kind::choice &&
           std::all_of(pattern.parts.begin(), pattern.parts.end(), IsPlainToken);
}

bool JumpsToMark(const Pattern& pattern) {
    return pattern.kind == Kind::atMark ||
           std::any_of(pattern.parts.begin(), pattern.parts.end(), JumpsToMark);
}

void AppendParts(std::vector<Pattern>& parts, const Pattern& pattern) {
    if (pattern.kind != Kind::sequence) {
        parts.push_back(pattern);
        return;
    }
    for (const Pattern& part : pattern.parts) AppendParts(parts, part);
}

bool MovesNothing(const Pattern& pattern) {
    switch (pattern.kind) {
        case Kind::lookAhead:
        case Kind::lookNot:
        case Kind::setMark:
        case Kind::edge:
        case Kind::utteranceEdge:
        case Kind::in: return true;
        default: return false;
    }
}

// What follows the first token of the focus, up to the end of the environment on the right. False
// if the focus does not begin with exactly one token.
bool BehindFirst(const Rule& rule, const Pattern* pRight, Pattern& behind) {
    AppendParts(behind.parts, rule.focus);
    const auto first = std::find_if_not(behind.parts.begin(), behind.parts.end(), MovesNothing);
    if (first == behind.parts.end() || first->kind != Kind::token) return false;
    behind.parts.erase(behind.parts.begin(), first + 1);
    if (pRight != nullptr) AppendParts(behind.parts, *pRight);
    return true;
}

std::vector<bool> SecondTokens(const Tier& tier, const Rule& rule) {
    std::vector<bool> second(tier.tokens.size(), false);
    std::vector<const Pattern*> sides;
    for (const Environment& environment : rule.where) sides.push_back(&environment.right);
    if (sides.empty()) sides.push_back(nullptr);
    for (const Pattern* pRight : sides) {
        Pattern behind;
        // Behind a jump stand tokens of somewhere else.
        if (!BehindFirst(rule, pRight, behind) || JumpsToMark(behind)) return {};
        const std::vector<bool> tokens = FirstTokens(tier, behind);
        std::transform(second.begin(), second.end(), tokens.begin(), second.begin(),
                       [](bool a, bool b) { return a || b; });
    }
    // A rule that takes anything also holds where nothing follows.
    if (std::find(second.begin(), second.end(), false) == second.end()) return {};
    return second;
}

}  // namespace

Shortcuts ShortcutsOf(const Tier& tier, const Rule& rule) {
    Shortcuts shortcuts;
    // The interpreter is needed for what it binds.
    const bool bAlone = rule.where.empty() && rule.except.empty() && rule.variables.empty();
    if (bAlone && IsPlainToken(rule.focus)) shortcuts.certain = CoveredTokens(tier, rule.focus);
    shortcuts.second = SecondTokens(tier, rule);
    return shortcuts;
}

Candidates CandidatesOf(const Model& model) {
    Candidates candidates;
    for (const Block& block : model.blocks) {
        const Tier& from = model.tiers[static_cast<std::size_t>(block.from)];
        auto& lists = candidates.emplace_back(std::max<std::size_t>(from.tokens.size(), 1));
        for (std::size_t r = 0; r < block.rules.size(); ++r) {
            const std::vector<bool>& first = block.rules[r].firstTokens;
            for (std::size_t token = 0; token < lists.size(); ++token) {
                if (first.empty() || first[token]) lists[token].push_back(static_cast<int>(r));
            }
        }
    }
    return candidates;
}

}  // namespace mlds::rules
