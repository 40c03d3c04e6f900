// Blocks and their rules.
#include <algorithm>

#include "model/patterns.h"
#include "model/resolve.h"

namespace mlds::rules {

namespace {

class RuleResolver {
public:
    RuleResolver(Scope& scope, const Block& block, int nBlock)
        : m_scope(scope), m_block(block), m_nBlock(nBlock), m_variables(scope) {}

    Rule Resolve(const syntax::Rule& written) {
        Rule rule;
        rule.block = m_nBlock;
        rule.name = written.name.text;
        rule.span = written.span;
        rule.text = std::string(m_scope.sources().TextOf(written.span));
        rule.bInsertion = written.bInsertion;
        rule.action = written.action;
        rule.percent = written.percent;
        ResolveFocus(rule, written);
        ResolveEnvironments(rule, written);
        ResolveAction(rule, written);
        rule.variables = m_variables.all();
        rule.beginsAt = EdgeOnTheLeft(rule);
        return rule;
    }

private:
    const Tier& From() { return m_scope.tier(m_block.from); }

    void ResolveFocus(Rule& rule, const syntax::Rule& written) {
        if (written.bInsertion) {
            CheckInsertion(written);
            return;
        }
        rule.focus =
            ResolvePattern(m_scope, m_variables, {m_block.from, m_block.within}, written.focus);
        if (CanBeEmpty(rule.focus)) {
            m_scope.Error(written.focus.span,
                          "this can match nothing, so it would hold everywhere: " +
                              std::string(m_scope.sources().TextOf(written.focus.span)) +
                              "; to insert, write 0 -> ... / ... _ ...");
        }
        CheckBeyond(rule.focus, true, true);
    }

    void CheckInsertion(const syntax::Rule& written) {
        if (m_block.to != kNoTier) {
            m_scope.Error(written.span, "only a block of one tier inserts; this one goes from " +
                                            From().name + " to " + m_scope.tier(m_block.to).name);
        }
        if (written.where.empty()) {
            m_scope.Error(written.span,
                          "an insertion needs an environment that says where: 0 -> ... "
                          "/ ... _ ...");
        }
        if (written.action != Action::replace || written.result.empty()) {
            m_scope.Error(written.span, "an insertion needs something to insert: 0 -> TOKEN / ...");
        }
    }

    void ResolveEnvironments(Rule& rule, const syntax::Rule& written) {
        for (const syntax::Environment& environment : written.where) {
            rule.where.push_back(ResolveEnvironment(environment));
        }
        // What an exception binds is known in it alone: where the rule applies, it did not hold.
        m_firstOfExceptions = m_variables.size();
        for (const syntax::Environment& environment : written.except) {
            rule.except.push_back(ResolveEnvironment(environment));
        }
        m_endOfExceptions = m_variables.size();
        if (rule.bInsertion) PlaceInsertion(rule);
    }

    Environment ResolveEnvironment(const syntax::Environment& written) {
        const Place place{m_block.from, m_block.within};
        Environment environment;
        environment.span = written.span;
        // The right side may name what the left one captures. The left side itself is matched from
        // the focus outward, and knows a name only in front of where it is bound.
        for (const syntax::Item* pItem : BindingsOf(written.left)) {
            if (pItem->capture) m_variables.Announce(pItem->capture, true, m_block.from);
            if (!pItem->capture) m_variables.Announce(pItem->word, false, m_block.from);
        }
        environment.right = ResolveSide(m_scope, m_variables, place, written.right, false);
        m_variables.EndAnnouncements();
        environment.left = ResolveSide(m_scope, m_variables, place, written.left, true);
        CheckBeyond(environment.left, false);
        CheckBeyond(environment.right, true);
        return environment;
    }

    // Whether new tokens go behind the token to the left, or in front of the one to the right. Both
    // need a mark that stays where it is while the rule goes on.
    void PlaceInsertion(Rule& rule) {
        for (std::size_t i = 0; i < rule.where.size(); ++i) {
            const Environment& environment = rule.where[i];
            const Nearest nearest = NearestOnTheLeft(environment.left);
            const bool bBehind = nearest == Nearest::token;
            if (nearest == Nearest::either) {
                m_scope.Error(environment.span,
                              "what stands next to '_' on the left may be a token "
                              "or nothing; write two rules");
            } else if (i > 0 && bBehind != rule.bBehindToken) {
                m_scope.Error(environment.span,
                              "one of these environments has a token next to '_' on the left, the "
                              "other has none; write two rules");
            }
            rule.bBehindToken = bBehind;
        }
    }

    // "# _": most places of a text are told by it, before anything else is looked at.
    static TierId EdgeOnTheLeft(const Rule& rule) {
        TierId edge = kNoTier;
        for (const Environment& environment : rule.where) {
            const Pattern* pNearest = &environment.left;
            while (pNearest->kind == Pattern::Kind::sequence && !pNearest->parts.empty()) {
                pNearest = &pNearest->parts.back();
            }
            if (pNearest->kind != Pattern::Kind::edge) return kNoTier;
            if (edge != kNoTier && edge != pNearest->tier) return kNoTier;
            edge = pNearest->tier;
        }
        return edge;
    }

    enum class Nearest { token, none, either };
    static Nearest NearestOnTheLeft(const Pattern& left) {
        if (!CanBeEmpty(left)) {
            const Pattern* pNearest = &left;
            while (pNearest->kind == Pattern::Kind::sequence && !pNearest->parts.empty()) {
                pNearest = &pNearest->parts.back();
            }
            if (pNearest->kind == Pattern::Kind::repeat && pNearest->least == 0) {
                return Nearest::either;
            }
            return CanBeEmpty(*pNearest) ? Nearest::none : Nearest::token;
        }
        return CanTake(left) ? Nearest::either : Nearest::none;
    }

    // A block that stays within words looks at nothing beyond their edges, so a token behind '#'
    // is never found.
    void CheckBeyond(const Pattern& pattern, bool bRightward, bool bInFocus = false) {
        if (pattern.kind != Pattern::Kind::sequence || m_block.within == kNoTier) return;
        bool bEdge = false;
        bool bMoved = !bInFocus;
        const std::size_t n = pattern.parts.size();
        for (std::size_t i = 0; i < n; ++i) {
            const Pattern& part = pattern.parts[bRightward ? i : n - 1 - i];
            // A focus may begin with '#': its first token is behind that edge, not beyond it.
            const bool bIsEdge = part.kind == Pattern::Kind::edge && part.tier == m_block.within;
            if (bIsEdge && bMoved) bEdge = true;
            if (!CanBeEmpty(part)) bMoved = true;
            if (bEdge && !bIsEdge && !CanBeEmpty(part)) {
                m_scope.Error(part.span,
                              "nothing can match beyond '#': block " + m_block.name +
                                  " stays within " + m_scope.tier(m_block.within).name + " (" +
                                  LineOf(m_scope.sources(), m_block.span, part.span) + ")");
                return;
            }
        }
    }

    void ResolveAction(Rule& rule, const syntax::Rule& written) {
        if (written.action != Action::replace && m_block.to != kNoTier) {
            m_scope.Error(written.span,
                          "this changes what is there, and a block with '->' fills "
                          "another tier; put it into a block of one tier");
        }
        const TierId into = m_block.to == kNoTier ? m_block.from : m_block.to;
        switch (written.action) {
            case Action::replace:
                for (const syntax::ResultItem& item : written.result) AddPieces(rule, into, item);
                break;
            case Action::set:
                rule.settings = ResolveSettings(m_scope, m_block.from, written.settings);
                MarkFeatures(m_block.from, rule.settings);
                break;
            case Action::scale: CheckScale(written); break;
        }
    }

    void CheckScale(const syntax::Rule& written) {
        const auto isTime = [](const Tier& tier) { return tier.kind == Tier::Kind::time; };
        const std::vector<Tier>& tiers = m_scope.model().tiers;
        if (std::none_of(tiers.begin(), tiers.end(), isTime)) {
            m_scope.Error(written.span,
                          "'~' scales durations, and no tier holds any; declare one: "
                          "tier time ms");
        }
    }

    // What rules set by hand no longer follows from the name alone.
    void MarkFeatures(TierId tier, const std::vector<Setting>& settings) {
        for (const Setting& setting : settings) {
            Field& field = m_scope.tier(tier).fields[static_cast<std::size_t>(setting.field)];
            if (field.kind == Field::Kind::feature) field.bSetByRules = true;
        }
    }

    void AddPieces(Rule& rule, TierId into, const syntax::ResultItem& item) {
        Piece piece;
        piece.span = item.span;
        piece.settings = ResolveSettings(m_scope, into, item.settings);
        MarkFeatures(into, piece.settings);
        using Kind = syntax::ResultItem::Kind;
        if (item.kind == Kind::token) {
            const Tier& tier = m_scope.tier(into);
            const std::vector<int> tokens = m_scope.Cut(into, item.word);
            if (tokens.size() > 1 && !piece.settings.empty()) {
                m_scope.Error(item.span,
                              "these are several tokens; write them apart, each with its "
                              "own [...]");
            }
            for (const int token : tokens) {
                piece.token = token;
                piece.name = tier.kind == Tier::Kind::time
                                 ? std::to_string(token)
                                 : tier.tokens[static_cast<std::size_t>(token)];
                rule.result.push_back(piece);
            }
            return;
        }
        const bool bCapture = item.kind == Kind::capture;
        piece.kind = bCapture ? Piece::Kind::capture : Piece::Kind::mark;
        // A mark may be bound by the result alone; a token has to come from somewhere.
        piece.variable =
            bCapture ? UseCapture(rule, item.word, into) : m_variables.Bind(item.word, false, into);
        rule.result.push_back(piece);
    }

    int UseCapture(const Rule& rule, const syntax::Word& name, TierId into) {
        const int variable = m_variables.Use(name, true, into);
        const bool bFromException = variable >= m_firstOfExceptions && variable < m_endOfExceptions;
        const auto binds = [variable](const Pattern& pattern) { return Binds(pattern, variable); };
        const bool bEverywhere =
            variable < 0 || binds(rule.focus) ||
            (!rule.where.empty() && std::all_of(rule.where.begin(), rule.where.end(),
                                                [&binds](const Environment& environment) {
                                                    return binds(environment.left) ||
                                                           binds(environment.right);
                                                }));
        if (bFromException || !bEverywhere) {
            m_scope.Error(name.span, Quoted("$" + name.text) +
                                         " is not captured wherever the rule "
                                         "holds; capture it in the focus, or "
                                         "in every environment behind '/'");
        }
        return variable;
    }

    // True if the pattern captures the variable whenever it matches.
    static bool Binds(const Pattern& pattern, int variable) {
        const auto binds = [variable](const Pattern& part) { return Binds(part, variable); };
        switch (pattern.kind) {
            case Pattern::Kind::token: return pattern.variable == variable;
            case Pattern::Kind::sequence:
                return std::any_of(pattern.parts.begin(), pattern.parts.end(), binds);
            case Pattern::Kind::choice:
                return std::all_of(pattern.parts.begin(), pattern.parts.end(), binds);
            case Pattern::Kind::repeat: return pattern.least > 0 && binds(pattern.parts.front());
            case Pattern::Kind::lookAhead:
            case Pattern::Kind::cross: return binds(pattern.parts.front());
            default: return false;
        }
    }

    Scope& m_scope;
    const Block& m_block;
    int m_nBlock;
    Variables m_variables;
    int m_firstOfExceptions = 0;
    int m_endOfExceptions = 0;
};

}  // namespace

void ResolveBlock(Scope& scope, const syntax::Block& written) {
    Block block;
    block.name = written.name.text;
    block.span = written.span;
    block.from = scope.TierCalled(written.from);
    if (written.to) block.to = scope.TierCalled(written.to);
    if (written.within) block.within = scope.TierCalled(written.within);
    const bool bKnown = block.from != kNoTier && (block.to != kNoTier || !written.to) &&
                        (block.within != kNoTier || !written.within);
    block.bFirst = written.first.value_or(static_cast<bool>(written.to));
    block.bLeftward = written.bLeftward;
    if (block.bFirst && block.bLeftward) {
        scope.Error(written.span,
                    "'leftward' goes with 'each': in a 'first' block the rules follow "
                    "one another along the text");
    }
    if (block.from == kTextTier || block.to == kTextTier) {
        scope.Error(written.span, "tier text is what was typed, and rules leave it alone");
    }
    if (block.to != kNoTier && block.to == block.from) {
        scope.Error(written.to.span, "a block of one tier is written without '->': block " +
                                         block.name + " : " + written.from.text);
    }
    // Without its tiers nothing in a block makes sense; its rules would only repeat that.
    if (!bKnown) return;
    if (written.rules.empty() && !scope.bFaulty())
        scope.Warning(written.span, "this block has no rules");
    const int nBlock = static_cast<int>(scope.model().blocks.size());
    for (const syntax::Rule& rule : written.rules) {
        block.rules.push_back(RuleResolver(scope, block, nBlock).Resolve(rule));
    }
    scope.model().blocks.push_back(std::move(block));
}

}  // namespace mlds::rules
