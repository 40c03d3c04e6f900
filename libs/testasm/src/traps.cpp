// Patterns that match or fail otherwise than they read: their truth is ignored, the rest of their
// sequence is skipped, or they hold of tokens that are not there.
#include "traps.h"

#include <set>
#include <tuple>

#include "mlds/testasm/text.h"
#include "sequencefacts.h"

using mlds::Opcode;
using mlds::OperandKind;

namespace mlds_testasm {

namespace {

class Traps {
public:
    using Told = std::set<std::tuple<int, int>>;
    Traps(const Test& test, const Schema& schema, bool bRightward, Told& told,
          Diagnostics& diagnostics)
        : m_test(test),
          m_facts(test, schema, bRightward),
          m_told(told),
          m_diagnostics(diagnostics),
          m_seen{std::vector<bool>(test.nodes.size()), std::vector<bool>(test.nodes.size())} {}

    void Look(NodeId root) {
        m_toDo = {{root, false}};
        while (!m_toDo.empty()) {
            const auto [id, bToken] = m_toDo.back();
            m_toDo.pop_back();
            const auto i = static_cast<std::size_t>(id);
            if (id == 0 || m_seen[bToken][i]) continue;
            m_seen[bToken][i] = true;
            const Node& node = m_test.At(id);
            if (node.pInfo->bValue) continue;
            CheckContext(id);
            CheckAdj(id);
            CheckComparison(id, bToken);
            Below(node, bToken);
        }
    }

private:
    // `bToken`: a token is known to follow where the instruction begins.
    void Below(const Node& node, bool bToken) {
        const Opcode opcode = OpcodeOf(node);
        const bool bAnd = opcode == Opcode::And;
        for (std::size_t i = 0; i < 4; ++i) {
            if (!IsExecuted(node.pInfo->operands[i])) continue;
            bool bBelow = false;
            switch (opcode) {
                case Opcode::AngleBrkt: bBelow = i == 1; break;
                case Opcode::Adj: bBelow = bToken && i == m_facts.first(); break;
                case Opcode::And:
                case Opcode::Or:
                case Opcode::Not:
                case Opcode::Anchor:
                case Opcode::AssignPtr:
                case Opcode::AssignTok: bBelow = bToken; break;
                default: break;
            }
            // Without a token the other operand of And fails.
            if (bAnd && m_facts.LeastTokens(node.operands[3 - i]) > 0) bBelow = true;
            m_toDo.push_back({node.operands[i], bBelow});
        }
    }

    void CheckContext(NodeId id) {
        const Node& node = m_test.At(id);
        const Opcode opcode = OpcodeOf(node);
        if (opcode != Opcode::LeftContext && opcode != Opcode::RightContext) return;
        std::set<NodeId> seen;
        if (!CanBeRefused(node.operands[2], seen)) return;
        const std::string name = node.pInfo->name;
        Warn(id, 2,
             "expected a pattern that tests nothing, as " + name +
                 " goes on where this one fails, too: write '" + name +
                 " %stream t' with 't: Or', and test before or behind it");
    }

    // True if a test decides whether the pattern matches. Steps fail where a tier ends, which is no
    // test; what is optional or repeated may fail.
    bool CanBeRefused(NodeId id, std::set<NodeId>& seen) const {
        if (id == 0 || !seen.insert(id).second) return false;
        const Node& node = m_test.At(id);
        const auto refused = [&](std::size_t i) { return CanBeRefused(node.operands[i], seen); };
        switch (OpcodeOf(node)) {
            case Opcode::Or:
                return m_facts.Second(node) != 0 && refused(m_facts.second()) &&
                       (m_facts.First(node) == 0 || refused(m_facts.first()));
            case Opcode::And: return refused(1) || refused(2);
            case Opcode::Adj: return refused(1) || refused(2) || refused(3);
            case Opcode::Anchor: return refused(0);
            case Opcode::AngleBrkt: return node.operands[1] != 0 || refused(3);
            case Opcode::Plexa: return refused(2) || refused(3);
            case Opcode::MoveRight:
            case Opcode::MoveLeft: return refused(2);
            case Opcode::TimeMoveRight:
            case Opcode::TimeMoveLeft: return refused(1);
            // Of contexts the truth is the step; what they ignore is looked at by itself.
            case Opcode::RightContext:
            case Opcode::LeftContext: return false;
            case Opcode::Star:
            case Opcode::Stars:
            case Opcode::StarsNoBkup:
            case Opcode::Qmark:
            case Opcode::Qmarks:
            case Opcode::AssignPtr:
            case Opcode::AssignTok: return refused(3);
            default: return true;
        }
    }

    void CheckAdj(NodeId id) {
        const Node& node = m_test.At(id);
        if (OpcodeOf(node) != Opcode::Adj) return;
        const NodeId second = m_facts.Second(node);
        const NodeId next = node.operands[3];
        std::size_t ending = 0;
        if (m_facts.MayEnd(m_facts.First(node)) && (second != 0 || next != 0)) {
            ending = m_facts.first();
        } else if (m_facts.MayEnd(second) && next != 0) {
            ending = m_facts.second();
        } else {
            return;
        }
        Warn(id, ending,
             "expected an element that does not end the sequence: where " +
                 Described(node.operands[ending]) +
                 " matches, what Adj has behind it is skipped; let 'then' lead to that, or to an "
                 "'Or' without operands");
    }

    // The instruction, for a message.
    std::string Described(NodeId id) const {
        const Node& node = m_test.At(id);
        const std::string label = node.label.empty() ? "" : Shortened(node.label) + ": ";
        return "'" + label + node.pInfo->name + "'";
    }

    // A missing token reads as -1, and the second Field reads the token behind the first one's.
    void CheckComparison(NodeId id, bool bToken) {
        const Node& node = m_test.At(id);
        const OperandKind kind = node.pInfo->operands[1];
        if (kind != OperandKind::value || !m_facts.IsField(node.operands[1]) ||
            !m_facts.IsField(node.operands[2])) {
            return;
        }
        const char* where = nullptr;
        switch (OpcodeOf(node)) {
            case Opcode::Eq:
            case Opcode::NameEq:
            case Opcode::Le:
                if (!bToken) where = "where no token is left (-1 is -1)";
                break;
            case Opcode::NotEq:
            case Opcode::Gt:
            case Opcode::Ge: where = "where only one token is left (the other reads as -1)"; break;
            default: break;
        }
        if (where == nullptr) return;
        Warn(id, 1,
             "expected one Field at most: these two read two tokens, and hold " +
                 std::string(where) +
                 "; name the first token by 'AssignTok $token' and let 'Tok $token %stream.field' "
                 "compare, or test in an AngleBrkt that both are there");
    }

    void Warn(NodeId id, std::size_t operand, const std::string& message) {
        if (!m_told.insert({id, static_cast<int>(operand)}).second) return;
        m_diagnostics.Warning(PlaceOf(m_test.At(id), operand), message);
    }

    const Test& m_test;
    const SequenceFacts m_facts;
    Told& m_told;
    Diagnostics& m_diagnostics;
    std::vector<bool> m_seen[2];
    std::vector<std::pair<NodeId, bool>> m_toDo;
};

}  // namespace

void CheckTraps(const Test& test, const Schema& schema, Diagnostics& diagnostics) {
    Traps::Told told;
    const std::array<int, 4>& roots = test.header().operands;
    Traps right(test, schema, true, told, diagnostics);
    Traps left(test, schema, false, told, diagnostics);
    (IsLeftward(test) ? left : right).Look(roots[headerFocus]);
    left.Look(roots[headerLeft]);
    right.Look(roots[headerRight]);
    CheckOverlap(test, schema, diagnostics);
}

}  // namespace mlds_testasm
