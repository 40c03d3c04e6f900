// Patterns as instructions, from their end: each is made with the rest that follows it, and the
// rest is shared by all ways that lead to it. A copy for each way would double with every option.
#include "lowering/patternlowering.h"

#include <algorithm>
#include <utility>

namespace mlds::rules {

using Kind = Pattern::Kind;

// What fails inside a "!" is what was hoped for, so nothing in there decides against the rule.
Element PatternLowering::ElementOf(const Pattern& pattern, Meaning meaning) const {
    return {m_setting.part, &pattern, meaning == Meaning::decides && !m_bNegated,
            meaning == Meaning::staysWithin};
}

// Or, And and Adj evaluate their last operand first in a leftward scan.
NodeId PatternLowering::Pair(Opcode opcode, NodeId first, NodeId second, const Element& element,
                             NodeId next) {
    if (m_setting.bLeftward) std::swap(first, second);
    return m_builder.Add(opcode, {0, first, second, next}, element);
}

NodeId PatternLowering::Lower(const Pattern& pattern, const Rest& rest, bool bFirst) {
    if (m_builder.bTooLong()) return m_builder.Done();
    // Without edges the first token is like the others, and need not be made twice.
    if (m_setting.edge == 0) bFirst = false;
    const NodeId next = bFirst ? rest.stillFirst : rest.next;
    switch (pattern.kind) {
        case Kind::token: return LowerToken(pattern, rest.next, bFirst);
        case Kind::sequence: return LowerSequence(pattern, rest, bFirst);
        case Kind::choice: return LowerChoice(pattern, rest, bFirst);
        case Kind::repeat: return LowerRepeat(pattern, rest, bFirst);
        case Kind::lookAhead:
            return Pair(Opcode::And, Lower(pattern.parts.at(0), End(), bFirst), next,
                        ElementOf(pattern));
        case Kind::lookNot: return LowerLookNot(pattern, next, bFirst);
        case Kind::setMark:
            return m_builder.Add(Opcode::AssignPtr, {0, kHostVariables + pattern.variable, 0, next},
                                 ElementOf(pattern));
        case Kind::atMark:
            return m_builder.Add(Opcode::ParentPtr,
                                 {0, m_builder.Variable(kHostVariables + pattern.variable),
                                  mlds_testasm::kWholeToken, next},
                                 ElementOf(pattern, Meaning::decides));
        case Kind::edge:
            return m_builder.Add(Opcode::SyncTest, {0, m_builder.Stream(pattern.tier), 0, next},
                                 ElementOf(pattern, Meaning::decides));
        case Kind::utteranceEdge: return LowerUtteranceEdge(pattern, next);
        case Kind::cross: return LowerCross(pattern, rest, bFirst);
        case Kind::in: return LowerIn(pattern, next);
    }
    return next;
}

NodeId PatternLowering::LowerToken(const Pattern& pattern, NodeId next, bool bFirst) {
    const bool bCaptures = pattern.variable >= 0;
    const auto capture = [&](NodeId then) {
        return m_builder.Add(Opcode::AssignTok, {0, kHostVariables + pattern.variable, 0, then},
                             ElementOf(pattern));
    };
    // AssignTok takes the token to the left of the position in both directions: behind the step to
    // the right, before the step to the left.
    if (bCaptures && !m_setting.bLeftward) next = capture(next);
    const NodeId condition = LowerCondition(m_builder, pattern.condition, m_tier);
    NodeId step = m_builder.Add(Opcode::AngleBrkt, {0, condition, 0, next},
                                ElementOf(pattern, Meaning::decides));
    if (bCaptures && m_setting.bLeftward) step = capture(step);
    if (m_edge == 0 || bFirst) return step;
    return m_builder.Add(Opcode::Not, {0, m_edge, 0, step},
                         ElementOf(pattern, Meaning::staysWithin));
}

// Each part is made for the two states in which it can be met: a token was taken before it, or
// none. Where only one can be, the other would be work for nothing.
NodeId PatternLowering::LowerSequence(const Pattern& pattern, Rest rest, bool bFirst) {
    std::vector<const Pattern*> parts;
    for (const Pattern& part : pattern.parts) parts.push_back(&part);
    if (m_setting.bLeftward) std::reverse(parts.begin(), parts.end());

    std::size_t couldBeFirst = 0;  // the parts that can be met before any token
    while (bFirst && couldBeFirst < parts.size()) {
        if (!CanBeEmpty(*parts[couldBeFirst++])) break;
    }
    std::size_t couldFollow = 0;  // the parts before those that can be met after one
    while (bFirst && couldFollow < parts.size()) {
        if (CanTake(*parts[couldFollow++])) break;
    }
    for (std::size_t i = parts.size(); i-- > 0;) {
        Rest here;
        if (i >= couldFollow) here.next = Lower(*parts[i], rest, false);
        if (i < couldBeFirst) here.stillFirst = Lower(*parts[i], rest, true);
        rest = here;
    }
    return bFirst ? rest.stillFirst : rest.next;
}

// The rest is tried behind each way, so a way that matches too much or too little is left again.
NodeId PatternLowering::LowerChoice(const Pattern& pattern, const Rest& rest, bool bFirst) {
    NodeId choice = 0;
    for (std::size_t i = pattern.parts.size(); i-- > 0;) {
        const NodeId way = Lower(pattern.parts[i], rest, bFirst);
        choice = choice == 0 ? way : Pair(Opcode::Or, way, choice, ElementOf(pattern));
    }
    return choice != 0 ? choice : bFirst ? rest.stillFirst : rest.next;
}

// What is tried first is what is wanted most: the long way, unless the short one is asked for.
NodeId PatternLowering::Option(const Pattern& pattern, NodeId taken, NodeId passed) {
    if (pattern.bShortest) std::swap(taken, passed);
    return Pair(Opcode::Or, taken, passed, ElementOf(pattern));
}

// So many copies as are required, then the others nested, each an option of the one before it:
// p{1,3} is p(p(p)?)?. Flat, p?p? would try the same lengths again and again.
NodeId PatternLowering::LowerRepeat(const Pattern& pattern, const Rest& rest, bool bFirst) {
    if (pattern.most < 0) return LowerLoop(pattern, rest, bFirst);
    const Pattern& part = pattern.parts.at(0);
    Rest tail = rest;
    const auto prepend = [&](bool bOption) {
        Rest longer;
        longer.next = Lower(part, tail, false);
        if (bFirst) longer.stillFirst = Lower(part, tail, true);
        if (bOption) {
            longer.next = Option(pattern, longer.next, rest.next);
            if (bFirst) longer.stillFirst = Option(pattern, longer.stillFirst, rest.stillFirst);
        }
        // What makes no instructions would be repeated a billion times before that is too long.
        const bool bLonger = longer.next != tail.next && !m_builder.bTooLong();
        tail = longer;
        return bLonger;
    };
    for (int i = pattern.least; i < pattern.most; ++i) {
        if (!prepend(true)) break;
    }
    for (int i = 0; i < pattern.least; ++i) {
        if (!prepend(false)) break;
    }
    return bFirst ? tail.stillFirst : tail.next;
}

// A circle in the graph: the part, behind it the choice of the part again or the rest. What is
// repeated takes a token, so that nobody goes round without moving.
NodeId PatternLowering::LowerLoop(const Pattern& pattern, const Rest& rest, bool bFirst) {
    const Pattern& part = pattern.parts.at(0);
    const NodeId again = Option(pattern, 0, 0);
    const NodeId body = Lower(part, {again, again}, false);
    const bool bBodyIsSecond = m_setting.bLeftward != pattern.bShortest;
    m_builder.Link(again, bBodyIsSecond ? 2 : 1, body);
    m_builder.Link(again, bBodyIsSecond ? 1 : 2, rest.next);

    // What is still to come where so many are required: the circle itself, entered at the part,
    // gives the last of them.
    const auto entry = [&](int required) {
        NodeId id = required == 0 ? again : body;
        for (int i = 1; i < required && !m_builder.bTooLong(); ++i) {
            id = Lower(part, {id, id}, false);
        }
        return id;
    };
    if (!bFirst) return entry(pattern.least);
    const NodeId more = entry(std::max(pattern.least - 1, 0));
    const NodeId first = Lower(part, {more, more}, true);
    return pattern.least > 0 ? first : Option(pattern, first, rest.stillFirst);
}

// The Not has a rest of its own, so that the position is its own as well and not where the pattern
// failed.
NodeId PatternLowering::LowerLookNot(const Pattern& pattern, NodeId next, bool bFirst) {
    const Element element = ElementOf(pattern, Meaning::decides);
    const bool bNegated = std::exchange(m_bNegated, true);
    const NodeId looked = Lower(pattern.parts.at(0), End(), bFirst);
    m_bNegated = bNegated;
    return m_builder.Add(Opcode::Not, {0, looked, 0, next}, element);
}

// AngleBrkt steps over empty places, which is what is wanted: no token may follow anywhere.
NodeId PatternLowering::LowerUtteranceEdge(const Pattern& pattern, NodeId next) {
    const NodeId any = m_builder.AddOnce(Opcode::AngleBrkt, {0, 0, 0, m_builder.Done()});
    return m_builder.Add(Opcode::Not, {0, any, 0, next}, ElementOf(pattern, Meaning::decides));
}

// Plexa always comes back to the tier that it came from, at the place where the pattern ended.
// Where nothing follows, that place need not be tied: a way back is looked for.
NodeId PatternLowering::LowerCross(const Pattern& pattern, const Rest& rest, bool bFirst) {
    const Pattern& part = pattern.parts.at(0);
    const TierId tier = std::exchange(m_tier, pattern.tier);
    const NodeId edge = m_edge;
    if (m_tier == m_setting.within) m_edge = 0;
    const auto cross = [&](const Rest& inside, NodeId next) {
        const NodeId crossed = Lower(part, inside, bFirst);
        return m_builder.Add(Opcode::Plexa, {m_builder.Stream(pattern.tier), 0, crossed, next},
                             ElementOf(pattern, Meaning::decides));
    };
    Rest inside = End();
    inside.bNothing = rest.bNothing;
    if (rest.bNothing) inside.next = inside.stillFirst = WayBack(tier);
    NodeId id = 0;
    if (!bFirst || rest.next == rest.stillFirst || !CanTake(part) || !CanBeEmpty(part)) {
        id = cross(inside, bFirst && !CanTake(part) ? rest.stillFirst : rest.next);
    } else {
        // One Plexa has one rest. What follows must know whether a token was taken.
        const NodeId never =
            m_builder.AddOnce(Opcode::Not, {0, m_builder.Done(), 0, m_builder.Done()});
        const NodeId taken = cross({inside.next, never, inside.bNothing}, rest.next);
        const NodeId none = cross({never, inside.stillFirst, inside.bNothing}, rest.stillFirst);
        id = Pair(Opcode::Or, taken, none, ElementOf(pattern));
    }
    m_tier = tier;
    m_edge = edge;
    return id;
}

// Steps on to the nearest place that is tied to a tier. The sentinels are, so that there is one.
NodeId PatternLowering::WayBack(TierId tier) {
    const auto [entry, bNew] = m_waysBack.emplace(tier, 0);
    if (!bNew) return entry->second;
    // Before the step: where the pattern ended at a tied place, nothing is stepped over.
    const NodeId way = m_builder.Add(Opcode::Or, {}, {});
    const NodeId back =
        m_builder.AddOnce(Opcode::SyncTest, {0, m_builder.Stream(tier), 0, m_builder.Done()});
    const NodeId step = m_builder.AddOnce(Opcode::AngleBrkt, {0, 0, 0, way});
    m_builder.Link(way, m_setting.bLeftward ? 2 : 1, back);
    m_builder.Link(way, m_setting.bLeftward ? 1 : 2, step);
    return entry->second = way;
}

// The boundary of the other tier at this place or behind one's back, and the token that reaches
// from there over the next token. The contexts ignore whether their operand holds, so it does.
NodeId PatternLowering::LowerIn(const Pattern& pattern, NodeId next) {
    const NodeId done = m_builder.Done();
    const NodeId condition = LowerCondition(m_builder, pattern.condition, pattern.tier);
    const Element decides = ElementOf(pattern, Meaning::decides);
    const NodeId token = m_builder.Add(Opcode::AngleBrkt, {0, condition, 0, done}, decides);
    const NodeId gap = m_builder.AddOnce(Opcode::AdjacencyTest, {0, 0, 0, done});
    const NodeId noGap = m_builder.Add(Opcode::Not, {0, gap, 0, token}, decides);
    const Opcode behind = m_setting.bLeftward ? Opcode::RightContext : Opcode::LeftContext;
    const NodeId boundary =
        m_builder.Add(behind, {0, m_builder.Stream(pattern.tier), done}, decides);
    const NodeId look = Pair(Opcode::Adj, boundary, noGap, ElementOf(pattern), done);
    return Pair(Opcode::And, look, next, ElementOf(pattern));
}

}  // namespace mlds::rules
