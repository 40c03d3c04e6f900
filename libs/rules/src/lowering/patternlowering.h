// Patterns as instructions.
#ifndef MLDS_RULES_PATTERNLOWERING_H
#define MLDS_RULES_PATTERNLOWERING_H

#include <map>

#include "lowering/testbuilder.h"
#include "model/patternfacts.h"

namespace mlds::rules {

/// An instruction for a condition on one token of a tier, for AngleBrkt; 0 if it always holds.
NodeId LowerCondition(TestBuilder& builder, const Condition& condition, TierId tier);

/// What comes behind a pattern.
struct Rest {
    NodeId next = 0;  ///< where a token was taken
    /// The same, where the pattern came first and took none.
    NodeId stillFirst = 0;
    /// True if there is nothing more: the end of an environment, of what is looked at.
    bool bNothing = false;
};

/// Lowers the patterns of one part of a rule, in one direction.
class PatternLowering {
public:
    struct Setting {
        TierId tier = kNoTier;
        /// Holds at a place that no token step may pass; 0: there is no such place.
        NodeId edge = 0;
        /// The tier in which edges are left alone.
        TierId within = kNoTier;
        bool bLeftward = false;
        Element::Part part = Element::Part::none;
    };
    PatternLowering(TestBuilder& builder, const Setting& setting)
        : m_builder(builder), m_setting(setting), m_tier(setting.tier), m_edge(setting.edge) {}

    /// The first instruction of the pattern, which leads to the rest. With `bFirst` the pattern's
    /// first token is the first of all, which may lie beyond an edge: the position is at that edge.
    NodeId Lower(const Pattern& pattern, const Rest& rest, bool bFirst);

private:
    enum class Meaning { holds, decides, staysWithin };

    Element ElementOf(const Pattern& pattern, Meaning meaning = Meaning::holds) const;
    /// Or, And or Adj of what is to be evaluated first and second in this direction.
    NodeId Pair(Opcode opcode, NodeId first, NodeId second, const Element& element,
                NodeId next = 0);
    NodeId LowerToken(const Pattern& pattern, NodeId next, bool bFirst);
    NodeId LowerSequence(const Pattern& pattern, Rest rest, bool bFirst);
    NodeId LowerChoice(const Pattern& pattern, const Rest& rest, bool bFirst);
    NodeId LowerRepeat(const Pattern& pattern, const Rest& rest, bool bFirst);
    NodeId LowerLoop(const Pattern& pattern, const Rest& rest, bool bFirst);
    NodeId Option(const Pattern& pattern, NodeId taken, NodeId passed);
    NodeId LowerLookNot(const Pattern& pattern, NodeId next, bool bFirst);
    NodeId LowerUtteranceEdge(const Pattern& pattern, NodeId next);
    NodeId LowerCross(const Pattern& pattern, const Rest& rest, bool bFirst);
    NodeId LowerIn(const Pattern& pattern, NodeId next);
    NodeId WayBack(TierId tier);
    /// Nothing follows, in this pattern.
    Rest End() { return {m_builder.Done(), m_builder.Done(), true}; }

    TestBuilder& m_builder;
    const Setting m_setting;
    TierId m_tier;
    NodeId m_edge;
    bool m_bNegated = false;
    std::map<TierId, NodeId> m_waysBack;
};

}  // namespace mlds::rules

#endif
