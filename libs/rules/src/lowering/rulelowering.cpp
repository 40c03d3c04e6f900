// The header, the focus and the environments of a test.
#include "lowering/rulelowering.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>

#include "lowering/patternlowering.h"

namespace mlds::rules {

namespace {

// The variables of a rule that a pattern binds, and those that it asks for.
struct Bindings {
    std::set<int> bound;
    std::set<int> asked;

    void Collect(const Condition& condition) {
        if (condition.kind == Condition::Kind::sameAs) asked.insert(condition.variable);
        for (const Condition& part : condition.parts) Collect(part);
    }
    void Collect(const Pattern& pattern) {
        if (pattern.kind == Pattern::Kind::atMark) {
            asked.insert(pattern.variable);
        } else if (pattern.variable >= 0) {
            bound.insert(pattern.variable);
        }
        Collect(pattern.condition);
        for (const Pattern& part : pattern.parts) Collect(part);
    }
    // True if this asks for what the other alone binds.
    bool Needs(const Bindings& other) const {
        return std::any_of(asked.begin(), asked.end(), [&](int variable) {
            return other.bound.count(variable) > 0 && bound.count(variable) == 0;
        });
    }
};

// The interpreter evaluates one context and then the other, and never comes back to the first for
// another way through it.
struct Sides {
    Bindings left;
    Bindings right;  ///< with the focus

    Sides(const Rule& rule, const Environment& environment) {
        left.Collect(environment.left);
        right.Collect(rule.focus);
        right.Collect(environment.right);
    }
};

// Empty parentheses, however nested.
bool IsNothing(const Pattern& pattern) {
    return pattern.kind == Pattern::Kind::sequence &&
           std::all_of(pattern.parts.begin(), pattern.parts.end(), IsNothing);
}

// The condition that the first token has to meet, if the pattern begins with one whatever way it
// goes.
std::optional<Condition> FirstCondition(const Pattern& pattern) {
    switch (pattern.kind) {
        case Pattern::Kind::token: return pattern.condition;
        case Pattern::Kind::sequence:
            for (const Pattern& part : pattern.parts) {
                if (!IsNothing(part)) return FirstCondition(part);
            }
            return std::nullopt;
        case Pattern::Kind::repeat:
            if (pattern.least == 0) return std::nullopt;
            return FirstCondition(pattern.parts.at(0));
        case Pattern::Kind::choice: {
            Condition any;
            any.kind = Condition::Kind::any;
            for (const Pattern& part : pattern.parts) {
                std::optional<Condition> condition = FirstCondition(part);
                if (!condition) return std::nullopt;
                any.parts.push_back(std::move(*condition));
            }
            return any;
        }
        default: return std::nullopt;
    }
}

// The element that FirstCondition speaks of.
const Pattern& FirstElement(const Pattern& pattern) {
    if (pattern.kind == Pattern::Kind::repeat) return FirstElement(pattern.parts.at(0));
    if (pattern.kind != Pattern::Kind::sequence) return pattern;
    const auto part = std::find_if_not(pattern.parts.begin(), pattern.parts.end(), IsNothing);
    return part == pattern.parts.end() ? pattern : FirstElement(*part);
}

// What the tests of rules and of spans have in common: a tier to scan, an edge to stay within.
class RuleLowering {
public:
    RuleLowering(TierId tier, TierId within) : m_tier(tier), m_within(within) {}

    TestBuilder& builder() { return m_builder; }
    void SetEdge(NodeId edge) {
        m_edge = edge;
        m_builder.SetLabel(edge, "edge");
    }
    Rest End() { return {m_builder.Done(), m_builder.Done(), true}; }

    NodeId Lower(const Pattern& pattern, Element::Part part, const Rest& rest, bool bFirst) {
        const bool bLeftward = part == Element::Part::left;
        return PatternLowering(m_builder, {m_tier, m_edge, m_within, bLeftward, part})
            .Lower(pattern, rest, bFirst);
    }

    // Puts the position at ^at: a test has none until Ptr takes one from a variable. With a look at
    // the first token, most tests fail before they evaluate two environments.
    NodeId Begin(const Pattern& pattern, Element::Part part) {
        const std::optional<Condition> first = FirstCondition(pattern);
        const Element element = {part};
        const NodeId at = m_builder.Add(Opcode::Ptr, {varAt}, element);
        m_builder.SetLabel(at, "at");
        if (!first) return at;
        const NodeId condition = LowerCondition(m_builder, *first, m_tier);
        // Where it does not fit, the first element of the pattern is what failed.
        const NodeId token = m_builder.Add(Opcode::AngleBrkt, {0, condition, 0, m_builder.Done()},
                                           {part, &FirstElement(pattern), true});
        const NodeId peek = m_builder.Add(Opcode::And, {0, token}, element);
        m_builder.SetLabel(peek, "peek");
        return m_builder.Add(Opcode::Adj, {0, at, peek, m_builder.Done()}, element);
    }

    // The same for a test whose left environment goes first, which the direction of the header's
    // focus decides. A look at the first token would look left here, so there is none, and what
    // Anchor could record is not wanted.
    NodeId BeginLeftward() {
        const NodeId at = m_builder.Add(Opcode::Ptr, {varAt}, {Element::Part::focus});
        return m_builder.Add(Opcode::Anchor, {at, 1, 1}, {Element::Part::focus});
    }

    NodeId SetEnd(NodeId next, Element::Part part) {
        return m_builder.Add(Opcode::AssignPtr, {0, varEnd, 0, next}, {part});
    }

    // Another environment of a focus that was found: it must not end elsewhere this time.
    NodeId AtEnd(NodeId next, Element::Part part) {
        return m_builder.Add(Opcode::ParentPtr,
                             {0, m_builder.Variable(varEnd), mlds_testasm::kWholeToken, next},
                             {part});
    }

private:
    const TierId m_tier;
    const TierId m_within;
    NodeId m_edge = 0;
    TestBuilder m_builder;
};

}  // namespace

bool NeedEachOther(const Rule& rule, const Environment& environment) {
    const Sides sides(rule, environment);
    return sides.left.Needs(sides.right) && sides.right.Needs(sides.left);
}

// Focus and right environment are one sequence from ^at, so that a focus with options is tried
// again where its environment fails; the left environment starts at ^at as well.
BuiltTest LowerEnvironment(const Block& block, const Rule& rule, const Environment& environment,
                           EnvironmentUse use, std::string name, bool* pTooLong) {
    using Part = Element::Part;
    RuleLowering lowering(block.from, block.within);
    TestBuilder& builder = lowering.builder();
    if (block.within != kNoTier) {
        lowering.SetEdge(builder.AddOnce(Opcode::SyncTest,
                                         {0, builder.Stream(block.within), 0, builder.Done()}));
    }
    // The focus of the header only finds the place. It would end where its pattern first ends, and
    // not try again for the sake of a context.
    TestBuilder::Roots roots;
    roots.stream = block.from;
    // The first token beside an insertion lies beyond the edge if the position is at one.
    const bool bRightIsFirst = rule.bInsertion && !rule.bBehindToken;
    const bool bLeftIsFirst = rule.bInsertion && rule.bBehindToken;
    const NodeId right =
        lowering.Lower(environment.right, Part::right, lowering.End(), bRightIsFirst);
    const bool bWhere = use == EnvironmentUse::where;
    if (rule.bInsertion) {
        roots.right = bWhere ? lowering.SetEnd(right, Part::focus) : right;
    } else {
        const NodeId end =
            bWhere ? lowering.SetEnd(right, Part::focus) : lowering.AtEnd(right, Part::focus);
        roots.right = lowering.Lower(rule.focus, Part::focus, {end, end}, true);
    }
    if (!IsNothing(environment.left)) {
        roots.left = lowering.Lower(environment.left, Part::left, lowering.End(), bLeftIsFirst);
    }
    // Captures of the left environment have to be there when the right one asks for them.
    const Sides sides(rule, environment);
    if (sides.right.Needs(sides.left)) {
        roots.focus = lowering.BeginLeftward();
    } else if (rule.bInsertion) {
        const Pattern nothing;
        roots.focus = lowering.Begin(bRightIsFirst ? environment.right : nothing, Part::right);
    } else {
        roots.focus = lowering.Begin(rule.focus, Part::focus);
    }
    *pTooLong = builder.bTooLong();
    return builder.Finish(std::move(name), rule.span, roots);
}

// A run ends at any empty place, which a token step alone would go over.
BuiltTest LowerSpan(const Tier& tier, const SpanPattern& span, std::string name, bool* pTooLong) {
    using Part = Element::Part;
    RuleLowering lowering(tier.spanned, kNoTier);
    TestBuilder& builder = lowering.builder();
    lowering.SetEdge(builder.AddOnce(Opcode::AdjacencyTest, {0, 0, 0, builder.Done()}));
    TestBuilder::Roots roots;
    roots.stream = tier.spanned;
    const NodeId end = lowering.SetEnd(builder.Done(), Part::focus);
    roots.right = lowering.Lower(span.pattern, Part::focus, {end, end}, true);
    roots.focus = lowering.Begin(span.pattern, Part::focus);
    *pTooLong = builder.bTooLong();
    return builder.Finish(std::move(name), span.span, roots);
}

}  // namespace mlds::rules
