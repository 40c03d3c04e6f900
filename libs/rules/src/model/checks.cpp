// Rules that can never hold, rules that can never win, and tokens that no rule covers.
#include <algorithm>

#include "model/patterns.h"
#include "model/resolve.h"

namespace mlds::rules {

namespace {

bool IsUnconditional(const Rule& rule) {
    return rule.where.empty() && rule.except.empty() && !rule.bInsertion;
}

// Warns of conditions that no token of their tier can meet.
void CheckConditions(Scope& scope, TierId tier, const Pattern& pattern) {
    const TierId inside =
        pattern.tier == kNoTier || pattern.kind == Pattern::Kind::edge ? tier : pattern.tier;
    if (pattern.kind == Pattern::Kind::token || pattern.kind == Pattern::Kind::in) {
        const Tier& t = scope.tier(inside);
        bool bAny = t.tokens.empty();
        for (std::size_t i = 0; i < t.tokens.size() && !bAny; ++i) {
            bAny = CanMeet(t, pattern.condition, static_cast<int>(i)) != Possible::no;
        }
        if (!bAny) {
            scope.Warning(pattern.span, "no token of tier " + t.name +
                                            " can be all of this; a comma or blank means 'and', "
                                            "'|' means 'or'");
        }
    }
    for (const Pattern& part : pattern.parts) CheckConditions(scope, inside, part);
}

std::string Listed(const Tier& tier, const std::vector<bool>& tokens) {
    constexpr int kMost = 8;
    std::string text;
    int n = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i]) continue;
        if (++n <= kMost) text += (n > 1 ? ", " : "") + Quoted(tier.tokens[i]);
    }
    if (n > kMost) text += " and " + std::to_string(n - kMost) + " more";
    return text;
}

bool IsSubset(const std::vector<bool>& inner, const std::vector<bool>& outer) {
    for (std::size_t i = 0; i < inner.size(); ++i) {
        if (inner[i] && !outer[i]) return false;
    }
    return true;
}

// In a block that takes the first rule, one without an environment takes everything that it can
// from those behind it.
class BlockChecker {
public:
    BlockChecker(Scope& scope, const Block& block)
        : m_scope(scope),
          m_block(block),
          m_tier(scope.tier(block.from)),
          m_takenBy(m_tier.tokens.size(), nullptr) {}

    void Check() {
        for (const Rule& rule : m_block.rules) {
            CheckConditions(m_scope, m_block.from, rule.focus);
            for (const Environment& environment : rule.where) CheckEnvironment(environment);
            for (const Environment& environment : rule.except) CheckEnvironment(environment);
            if (!m_block.bFirst || rule.bInsertion || m_tier.tokens.empty()) continue;
            CheckWins(rule);
            if (IsUnconditional(rule)) Take(rule);
        }
        if (m_block.bFirst && m_tier.kind == Tier::Kind::fromText) CheckCovered();
    }

private:
    void CheckEnvironment(const Environment& environment) {
        CheckConditions(m_scope, m_block.from, environment.left);
        CheckConditions(m_scope, m_block.from, environment.right);
    }

    void CheckWins(const Rule& rule) {
        for (const Rule* pEarlier : m_unconditional) {
            if (!IsSame(pEarlier->focus, rule.focus)) continue;
            Warn(rule, *pEarlier, "what it looks for");
            return;
        }
        const Rule* pTaker = nullptr;
        std::vector<bool> taken(m_takenBy.size(), false);
        for (std::size_t i = 0; i < taken.size(); ++i) {
            taken[i] = m_takenBy[i] != nullptr;
            if (rule.firstTokens[i] && taken[i]) pTaker = m_takenBy[i];
        }
        if (pTaker == nullptr || !IsSubset(rule.firstTokens, taken)) return;
        Warn(rule, *pTaker, "every " + Listed(m_tier, rule.firstTokens));
    }

    void Warn(const Rule& rule, const Rule& taker, const std::string& what) {
        m_scope.Warning(rule.span, "this rule never holds: " +
                                       LineOf(m_scope.sources(), taker.span, rule.span) +
                                       " takes " + what + ", without an environment");
    }

    void Take(const Rule& rule) {
        m_unconditional.push_back(&rule);
        const std::vector<bool> covered = CoveredTokens(m_tier, rule.focus);
        for (std::size_t i = 0; i < covered.size(); ++i) {
            if (covered[i] && m_takenBy[i] == nullptr) m_takenBy[i] = &rule;
        }
    }

    void CheckCovered() {
        std::vector<bool> open(m_takenBy.size());
        for (std::size_t i = 0; i < open.size(); ++i) open[i] = m_takenBy[i] == nullptr;
        const std::string listed = Listed(m_tier, open);
        if (listed.empty()) return;
        m_scope.Warning(m_block.span, "no rule covers " + listed + " where the others fail");
    }

    Scope& m_scope;
    const Block& m_block;
    const Tier& m_tier;
    std::vector<const Rule*> m_unconditional;
    std::vector<const Rule*> m_takenBy;  // by token: the rule that takes it in any place
};

}  // namespace

void CheckRules(Scope& scope) {
    for (const Block& block : scope.model().blocks) BlockChecker(scope, block).Check();
    for (std::size_t t = 0; t < scope.model().tiers.size(); ++t) {
        const Tier& tier = scope.model().tiers[t];
        for (const SpanPattern& span : tier.spanPatterns) {
            CheckConditions(scope, tier.spanned, span.pattern);
        }
    }
}

}  // namespace mlds::rules
