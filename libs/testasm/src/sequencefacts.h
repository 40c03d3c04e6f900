// What can be said of a pattern without running it: how many tokens it takes at least, and whether
// it may end the sequence that it stands in.
#ifndef MLDS_TESTASM_SRC_SEQUENCEFACTS_H
#define MLDS_TESTASM_SRC_SEQUENCEFACTS_H

#include <vector>

#include "mlds/testasm/model.h"
#include "mlds/testasm/schema.h"
#include "ruletest/opcodes.h"

namespace mlds_testasm {

inline mlds::Opcode OpcodeOf(const Node& node) {
    return static_cast<mlds::Opcode>(node.pInfo->number);
}

/// True if the focus runs to the left. The test must be valid.
bool IsLeftward(const Test& test);

/// Beyond so many tokens nobody counts: a rule's focus is shorter.
inline constexpr int kManyTokens = 8;

/// The facts about all instructions of a valid test, for one direction.
class SequenceFacts {
public:
    SequenceFacts(const Test& test, const Schema& schema, bool bRightward);

    /// True if the pattern, where it matches, may set the completion flag, so that an Adj around it
    /// does nothing behind it.
    bool MayEnd(NodeId id) const { return m_mayEnd[static_cast<std::size_t>(id)]; }
    /// The fewest tokens between where the pattern begins and where it ends, at most kManyTokens.
    int LeastTokens(NodeId id) const { return m_least[static_cast<std::size_t>(id)]; }

    /// The operand of Or, And or Adj that is evaluated first, as an index of operands.
    std::size_t first() const { return m_bRightward ? 1 : 2; }
    std::size_t second() const { return m_bRightward ? 2 : 1; }
    NodeId First(const Node& node) const { return node.operands[first()]; }
    NodeId Second(const Node& node) const { return node.operands[second()]; }
    /// True for a ParentPtr that steps over a token.
    bool TakesToken(const Node& parentPtr) const;
    bool IsField(NodeId id) const;

private:
    bool FindMayEnd(const Node& node) const;
    int FindLeast(const Node& node) const;

    const Test& m_test;
    const Schema& m_schema;
    const bool m_bRightward;
    std::vector<bool> m_mayEnd;
    std::vector<int> m_least;
};

}  // namespace mlds_testasm

#endif
