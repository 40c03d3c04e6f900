// From what the author wrote to what is looked for.
#include "model/patterns.h"

#include <algorithm>

namespace mlds::rules {

namespace {

// Named patterns stand for their whole content wherever they are used, so a few lines could stand
// for more than any test holds. A test has 256 instructions.
constexpr int kMostNodes = 2000;
constexpr std::size_t kDeepestNames = 20;

class PatternResolver {
public:
    PatternResolver(Scope& scope, Variables& variables, const Place& place, bool bLeftward = false)
        : m_scope(scope), m_variables(variables), m_place(place), m_bLeftward(bLeftward) {}

    Pattern Resolve(const syntax::Pattern& written) {
        if (written.alternatives.size() == 1) return Resolve(written.alternatives.front());
        Pattern choice = Node(Pattern::Kind::choice, written.span);
        for (const syntax::Sequence& sequence : written.alternatives) {
            choice.parts.push_back(Resolve(sequence));
        }
        return choice;
    }

    Pattern Resolve(const syntax::Sequence& written) {
        Pattern sequence = Node(Pattern::Kind::sequence, written.span);
        // In the order of matching, so that a name is bound before it is used.
        const std::size_t n = written.items.size();
        for (std::size_t i = 0; i < n; ++i) {
            sequence.parts.push_back(Repeated(written.items[m_bLeftward ? n - 1 - i : i]));
        }
        if (m_bLeftward) std::reverse(sequence.parts.begin(), sequence.parts.end());
        if (sequence.parts.size() == 1) return std::move(sequence.parts.front());
        return sequence;
    }

private:
    Pattern Node(Pattern::Kind kind, const Span& span) {
        Pattern node;
        node.kind = kind;
        // What comes from a named pattern is shown where the rule uses it.
        node.span = m_useSpan.line > 0 ? m_useSpan : span;
        if (++m_nNodes == kMostNodes) {
            m_scope.Error(node.span,
                          "this rule is too large: with all named patterns written out "
                          "it has more than " +
                              std::to_string(kMostNodes) + " elements");
        }
        return node;
    }

    Pattern Repeated(const syntax::Item& item) {
        Pattern atom = Atom(item);
        const syntax::Repetition& repetition = item.repetition;
        if (repetition.span.line == 0) return atom;
        if (CanBeEmpty(atom)) {
            m_scope.Error(item.span, "what is repeated can match nothing: " +
                                         std::string(m_scope.sources().TextOf(item.span)));
        }
        Pattern repeat = Node(Pattern::Kind::repeat, item.span);
        repeat.least = repetition.least;
        repeat.most = repetition.most;
        repeat.bShortest = repetition.bShortest;
        repeat.parts.push_back(std::move(atom));
        return repeat;
    }

    Pattern Atom(const syntax::Item& item) {
        if (m_nNodes > kMostNodes) return {};  // reported when it was reached
        if (item.capture && item.kind != syntax::Item::Kind::word &&
            item.kind != syntax::Item::Kind::condition && item.kind != syntax::Item::Kind::any) {
            m_scope.Error(item.capture.span,
                          Quoted(item.capture.text + ":") + " takes one token: a name, [...] or .");
        }
        using Kind = syntax::Item::Kind;
        switch (item.kind) {
            case Kind::word: return Captured(item, NamedOrToken(item));
            case Kind::condition:
                return Captured(item, Token(ResolveCondition(m_scope, m_variables, m_place.tier,
                                                             item.condition),
                                            item.condition.span));
            case Kind::any: return Captured(item, Token({}, item.span));
            case Kind::sameAs: return SameAs(item);
            case Kind::group: return Resolve(item.pattern);
            case Kind::cross: return Cross(item);
            case Kind::in: return In(item);
            case Kind::lookAhead:
            case Kind::lookNot: return Look(item);
            case Kind::setMark:
            case Kind::atMark: return Mark(item);
            case Kind::edge: return Edge(item);
            case Kind::utteranceEdge: return Node(Pattern::Kind::utteranceEdge, item.span);
        }
        return {};
    }

    Pattern Token(Condition condition, const Span& span) {
        Pattern token = Node(Pattern::Kind::token, span);
        token.condition = std::move(condition);
        return token;
    }

    // The token is captured once it has been matched: a condition in it cannot ask for itself.
    Pattern Captured(const syntax::Item& item, Pattern pattern) {
        if (!item.capture) return pattern;
        if (pattern.kind != Pattern::Kind::token) {
            if (!TakesOneToken(pattern)) {
                m_scope.Error(item.span, Quoted(item.capture.text + ":") +
                                             " takes one token, and this is more or less");
                return pattern;
            }
            CaptureAll(pattern, m_variables.Bind(item.capture, true, m_place.tier));
            return pattern;
        }
        pattern.variable = m_variables.Bind(item.capture, true, m_place.tier);
        return pattern;
    }

    // A class with several branches captures in each.
    static void CaptureAll(Pattern& pattern, int variable) {
        if (pattern.kind == Pattern::Kind::token) pattern.variable = variable;
        for (Pattern& part : pattern.parts) CaptureAll(part, variable);
    }

    Pattern NamedOrToken(const syntax::Item& item) {
        const auto definition = m_scope.definitions.find(item.word.text);
        if (!item.word.bQuoted && definition != m_scope.definitions.end()) {
            return Inlined(item, definition->second);
        }
        const std::vector<int> tokens = m_scope.Cut(m_place.tier, item.word);
        if (tokens.size() == 1)
            return Token(IsToken(tokens.front(), item.word.span), item.word.span);
        Pattern sequence = Node(Pattern::Kind::sequence, item.word.span);
        for (const int token : tokens) {
            sequence.parts.push_back(Token(IsToken(token, item.word.span), item.word.span));
        }
        // Nothing could be read of it, which has been reported; that it matches nothing has not.
        if (tokens.empty()) sequence.parts.push_back(Token({}, item.word.span));
        return sequence;
    }

    Pattern Inlined(const syntax::Item& item, Definition& definition) {
        definition.bUsed = true;
        if (m_names.size() >= kDeepestNames) {
            m_scope.Error(definition.span,
                          "patterns stand in each other without end, or more than " +
                              std::to_string(kDeepestNames) + " deep");
            return Token({}, item.word.span);
        }
        m_names.push_back(item.word.text);
        const Span outer = m_useSpan;
        if (m_useSpan.line == 0) m_useSpan = item.word.span;
        Pattern pattern = Resolve(*definition.pPattern);
        m_useSpan = outer;
        m_names.pop_back();
        if (definition.bClass && !TakesOneToken(pattern)) {
            m_scope.Error(definition.span,
                          "a class is one token, whatever it matches; what is "
                          "longer or may be empty is a 'pattern'");
        }
        return pattern;
    }

    Pattern SameAs(const syntax::Item& item) {
        Condition condition;
        condition.kind = Condition::Kind::sameAs;
        condition.field = kNameField;
        condition.variable = m_variables.Use(item.word, true, m_place.tier);
        condition.span = item.span;
        return Token(std::move(condition), item.span);
    }

    Pattern Cross(const syntax::Item& item) {
        Pattern cross = Node(Pattern::Kind::cross, item.span);
        cross.tier = m_scope.TierCalled(item.word);
        if (cross.tier == kNoTier) return Token({}, item.span);
        const Place outer = m_place;
        m_place.tier = cross.tier;
        cross.parts.push_back(Resolve(item.pattern));
        m_place = outer;
        return cross;
    }

    Pattern In(const syntax::Item& item) {
        Pattern in = Node(Pattern::Kind::in, item.span);
        in.tier = m_scope.TierCalled(item.word);
        if (in.tier == kNoTier) return Token({}, item.span);
        if (in.tier == m_place.tier) {
            m_scope.Error(item.span,
                          "the token of this tier itself is meant; write its condition "
                          "without in()");
        }
        in.condition = ResolveCondition(m_scope, m_variables, in.tier, item.condition);
        return in;
    }

    Pattern Look(const syntax::Item& item) {
        const bool bNot = item.kind == syntax::Item::Kind::lookNot;
        Pattern look = Node(bNot ? Pattern::Kind::lookNot : Pattern::Kind::lookAhead, item.span);
        look.parts.push_back(Resolve(item.pattern));
        return look;
    }

    Pattern Mark(const syntax::Item& item) {
        const bool bSet = item.kind == syntax::Item::Kind::setMark;
        Pattern mark = Node(bSet ? Pattern::Kind::setMark : Pattern::Kind::atMark, item.span);
        mark.variable = bSet ? m_variables.Bind(item.word, false, m_place.tier)
                             : m_variables.Use(item.word, false, m_place.tier);
        return mark;
    }

    Pattern Edge(const syntax::Item& item) {
        Pattern edge = Node(Pattern::Kind::edge, item.span);
        if (item.word) {
            edge.tier = m_scope.model().FindTier(item.word.text);
            if (edge.tier != kNoTier) return edge;
            if (m_scope.tier(m_place.tier).FindToken(item.word.text) >= 0) {
                m_scope.Error(item.span, "there is no tier " + Quoted(item.word.text) +
                                             "; for the edge and then the token write '# " +
                                             item.word.text + "', with a blank");
            } else {
                m_scope.TierCalled(item.word);
            }
            return Token({}, item.span);
        }
        edge.tier = m_place.within;
        if (edge.tier == kNoTier) {
            std::string help;
            for (const Tier& tier : m_scope.model().tiers) {
                if (help.empty() && tier.kind == Tier::Kind::spans) help = "#" + tier.name;
            }
            m_scope.Error(item.span, "the edge of what? This block is not 'within' a tier" +
                                         (help.empty() ? "" : "; write " + help));
            return Token({}, item.span);
        }
        return edge;
    }

    Scope& m_scope;
    Variables& m_variables;
    Place m_place;
    Span m_useSpan{0, 0, 0, 0};
    std::vector<std::string> m_names;
    int m_nNodes = 0;
    bool m_bLeftward;
};

void AddBindings(const syntax::Sequence& sequence, std::vector<const syntax::Item*>& bindings) {
    for (const syntax::Item& item : sequence.items) {
        if (item.capture || item.kind == syntax::Item::Kind::setMark) bindings.push_back(&item);
        for (const syntax::Sequence& inner : item.pattern.alternatives) {
            // What is captured in another tier belongs there, and is bound when it is resolved.
            if (item.kind != syntax::Item::Kind::cross) AddBindings(inner, bindings);
        }
    }
}

}  // namespace

Pattern ResolvePattern(Scope& scope, Variables& variables, const Place& place,
                       const syntax::Pattern& written) {
    return PatternResolver(scope, variables, place).Resolve(written);
}

Pattern ResolveSide(Scope& scope, Variables& variables, const Place& place,
                    const syntax::Sequence& written, bool bLeftward) {
    return PatternResolver(scope, variables, place, bLeftward).Resolve(written);
}

std::vector<const syntax::Item*> BindingsOf(const syntax::Sequence& written) {
    std::vector<const syntax::Item*> bindings;
    AddBindings(written, bindings);
    return bindings;
}

}  // namespace mlds::rules
