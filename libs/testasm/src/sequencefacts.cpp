// What can be said of a pattern without running it.
//
// Tests are graphs with circles. Both facts begin with what holds of no pattern at all and grow
// until nothing changes any more.
#include "sequencefacts.h"

#include <algorithm>

using mlds::Opcode;
using mlds::OperandKind;

namespace mlds_testasm {

namespace {

// What Field gives where no token is left.
constexpr int kNoToken = -1;

}  // namespace

bool IsLeftward(const Test& test) {
    const Node& focus = test.At(test.header().operands[headerFocus]);
    return focus.pInfo->operands[1] == OperandKind::direction && focus.operands[1] == 1;
}

SequenceFacts::SequenceFacts(const Test& test, const Schema& schema, bool bRightward)
    : m_test(test),
      m_schema(schema),
      m_bRightward(bRightward),
      m_mayEnd(test.nodes.size()),
      m_least(test.nodes.size(), kManyTokens) {
    m_least[0] = 0;  // what is absent takes nothing
    for (bool bChanged = true; bChanged;) {
        bChanged = false;
        for (NodeId id = 1; id < test.size(); ++id) {
            const Node& node = test.At(id);
            if (node.pInfo == nullptr || node.pInfo->bValue) continue;
            const auto i = static_cast<std::size_t>(id);
            const bool bMayEnd = FindMayEnd(node);
            const int least = FindLeast(node);
            bChanged = bChanged || bMayEnd != m_mayEnd[i] || least != m_least[i];
            m_mayEnd[i] = bMayEnd;
            m_least[i] = least;
        }
    }
}

bool SequenceFacts::IsField(NodeId id) const {
    const Node& node = m_test.At(id);
    return id != 0 && node.pInfo != nullptr && OpcodeOf(node) == Opcode::Field;
}

bool SequenceFacts::TakesToken(const Node& parentPtr) const {
    const Node& variable = m_test.At(parentPtr.operands[1]);
    const SchemaVariable* pVariable = m_schema.VariableAt(variable.operands[0]);
    return pVariable != nullptr && pVariable->bToken;
}

bool SequenceFacts::FindMayEnd(const Node& node) const {
    const NodeId next = node.operands[3];
    switch (OpcodeOf(node)) {
        case Opcode::Anchor: return MayEnd(node.operands[0]);
        case Opcode::Or:
        case Opcode::And: return MayEnd(node.operands[1]) || MayEnd(node.operands[2]);
        case Opcode::Adj:
        case Opcode::Qmark:
        case Opcode::Qmarks:
        case Opcode::Stars:
            return next == 0 || MayEnd(next) || MayEnd(node.operands[1]) ||
                   (OpcodeOf(node) == Opcode::Adj && MayEnd(node.operands[2]));
        // Without a rest it matches nothing, and leaves the flag alone.
        case Opcode::Star: return next != 0 && (MayEnd(next) || MayEnd(node.operands[1]));
        case Opcode::RightContext:
        case Opcode::LeftContext:
        case Opcode::MoveRight:
        case Opcode::MoveLeft: return MayEnd(node.operands[2]);
        case Opcode::TimeMoveRight:
        case Opcode::TimeMoveLeft: return MayEnd(node.operands[1]);
        default: break;
    }
    // The others look at their operands with a flag of their own.
    if (node.pInfo->operands[3] != OperandKind::next) return false;
    return next == 0 || MayEnd(next);
}

int SequenceFacts::FindLeast(const Node& node) const {
    const NodeId next = node.operands[3];
    const int rest = LeastTokens(next);
    const auto more = [](int a, int b) { return std::min(a + b, kManyTokens); };
    switch (OpcodeOf(node)) {
        case Opcode::Anchor: return LeastTokens(node.operands[0]);
        case Opcode::Or:
            if (First(node) == 0) return LeastTokens(Second(node));
            return std::min(LeastTokens(First(node)), LeastTokens(Second(node)));
        case Opcode::And: return LeastTokens(Second(node));
        case Opcode::Adj: {
            const int first = LeastTokens(First(node));
            if (MayEnd(First(node))) return first;
            const int both = more(first, LeastTokens(Second(node)));
            return MayEnd(Second(node)) ? both : more(both, rest);
        }
        case Opcode::AngleBrkt: return more(1, rest);
        case Opcode::Tok: return next == 0 ? 0 : more(1, rest);
        case Opcode::ParentPtr:
        case Opcode::ParentPtr2: return TakesToken(node) ? more(1, rest) : rest;
        case Opcode::NameEq: {
            // With a constant that no missing token equals, the token is there.
            const bool bLeft = IsField(node.operands[1]);
            const Node& other = m_test.At(node.operands[bLeft ? 2 : 1]);
            const bool bTakes = (bLeft || IsField(node.operands[2])) && IsConstant(other) &&
                                other.operands[0] != kNoToken;
            return bTakes ? more(1, rest) : rest;
        }
        case Opcode::Star: return next == 0 ? 0 : std::min(rest, LeastTokens(node.operands[1]));
        // Nobody knows where these lead.
        case Opcode::RightContext:
        case Opcode::LeftContext:
        case Opcode::MoveRight:
        case Opcode::MoveLeft:
        case Opcode::TimeMoveRight:
        case Opcode::TimeMoveLeft: return 0;
        default: return rest;
    }
}

}  // namespace mlds_testasm
