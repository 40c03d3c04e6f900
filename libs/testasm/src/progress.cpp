// Repetitions and circles without progress, as far as they can be seen.
//
// A direction holds for everything below a focus or a context, so that each is looked at in its
// own direction.
#include <functional>
#include <set>

#include "mlds/testasm/validate.h"
#include "ruletest/opcodes.h"
#include "sequencefacts.h"

using mlds::Opcode;
using mlds::OperandKind;

namespace mlds_testasm {

namespace {

class Progress {
public:
    Progress(const Test& test, const Schema& schema, bool bRightward)
        : m_test(test),
          m_schema(schema),
          m_bRightward(bRightward),
          m_stays(test.nodes.size(), State::unknown),
          m_circles(test.nodes.size(), State::unknown) {}

    /// Calls for every instruction below: a repetition whose operand can match without moving, and
    /// an instruction that can come back to itself at the same position.
    using Found = std::function<void(NodeId, bool bCircle)>;
    void Look(NodeId root, const Found& found) {
        std::vector<bool> seen(m_test.nodes.size());
        std::vector<NodeId> toDo = {root};
        while (!toDo.empty()) {
            const NodeId id = toDo.back();
            toDo.pop_back();
            if (id == 0 || seen[static_cast<std::size_t>(id)]) continue;
            seen[static_cast<std::size_t>(id)] = true;
            const Node& node = m_test.At(id);
            const Opcode opcode = OpcodeOf(node);
            const bool bGreedy = opcode == Opcode::Stars || opcode == Opcode::StarsNoBkup;
            if (bGreedy && CanStay(node.operands[1])) found(id, false);
            FindCircles(id, found);
            for (std::size_t i = 0; i < 4; ++i) {
                if (IsExecuted(node.pInfo->operands[i])) toDo.push_back(node.operands[i]);
            }
        }
    }

private:
    enum class State { unknown, busy, no, yes };

    NodeId First(const Node& node) const { return node.operands[m_bRightward ? 1 : 2]; }
    NodeId Second(const Node& node) const { return node.operands[m_bRightward ? 2 : 1]; }

    /// True if it surely can match without moving; so can what is absent.
    bool CanStay(NodeId id) {
        if (id == 0) return true;
        const auto i = static_cast<std::size_t>(id);
        if (m_stays[i] == State::unknown) {
            m_stays[i] = State::busy;
            m_stays[i] = FindStay(m_test.At(id)) ? State::yes : State::no;
        }
        return m_stays[i] == State::yes;
    }

    bool FindStay(const Node& node) {
        const NodeId next = node.operands[3];
        switch (OpcodeOf(node)) {
            case Opcode::Anchor: return CanStay(node.operands[0]);
            case Opcode::Or:
                return (First(node) != 0 && CanStay(First(node))) || CanStay(Second(node));
            case Opcode::And: return CanStay(Second(node));
            case Opcode::Adj: return CanStay(First(node)) && CanStay(Second(node)) && CanStay(next);
            case Opcode::Plexa: return CanStay(node.operands[2]) && CanStay(next);
            case Opcode::StarsNoBkup: return next != 0 && CanStay(next);
            case Opcode::Tok: return next == 0;
            case Opcode::Eq:
            case Opcode::Ptr: return true;
            case Opcode::NotEq:
            case Opcode::Lt:
            case Opcode::Le:
            case Opcode::Gt:
            case Opcode::Ge: return !ReadsField(node);
            case Opcode::NameEq: return !ReadsField(node) && CanStay(next);
            case Opcode::ParentPtr:
            case Opcode::ParentPtr2: return IsMark(node.operands[1]) && CanStay(next);
            case Opcode::Not:
            case Opcode::Star:
            case Opcode::Stars:
            case Opcode::Qmark:
            case Opcode::Qmarks:
            case Opcode::AssignPtr:
            case Opcode::AssignTok:
            case Opcode::SyncTest: return CanStay(next);
            default: return false;
        }
    }

    bool IsMark(NodeId constant) const {
        const SchemaVariable* pVariable = m_schema.VariableAt(m_test.At(constant).operands[0]);
        return pVariable != nullptr && !pVariable->bToken;
    }

    // Values that lead back to themselves are found as circles.
    bool ReadsField(const Node& node) const {
        std::set<NodeId> seen;
        std::vector<NodeId> toDo = {node.operands[1], node.operands[2]};
        while (!toDo.empty()) {
            const NodeId id = toDo.back();
            toDo.pop_back();
            if (id == 0 || !seen.insert(id).second) continue;
            const Node& value = m_test.At(id);
            if (OpcodeOf(value) == Opcode::Field) return true;
            for (const std::size_t i : {1u, 2u}) {
                if (value.pInfo->operands[i] == OperandKind::value) {
                    toDo.push_back(value.operands[i]);
                }
            }
        }
        return false;
    }

    // Reports the instructions at which circles close.
    void FindCircles(NodeId id, const Found& found) {
        State& state = m_circles[static_cast<std::size_t>(id)];
        if (state == State::busy) found(id, true);
        if (id == 0 || state != State::unknown) return;
        state = State::busy;
        for (const NodeId below : ReachedAtOnce(m_test.At(id))) FindCircles(below, found);
        state = State::no;
    }

    // What an instruction can execute at the position where it begins. The rest after Stars is
    // guarded against circles.
    std::vector<NodeId> ReachedAtOnce(const Node& node) {
        const NodeId next = node.operands[3];
        switch (OpcodeOf(node)) {
            case Opcode::Adj:
                if (!CanStay(First(node))) return {First(node)};
                if (!CanStay(Second(node))) return {First(node), Second(node)};
                break;
            case Opcode::Plexa:
                if (!CanStay(node.operands[2])) return {node.operands[0], node.operands[2]};
                break;
            case Opcode::Stars:
            case Opcode::AngleBrkt: return {node.operands[1]};
            case Opcode::NameEq:
                if (ReadsField(node)) return {node.operands[1], node.operands[2]};
                break;
            case Opcode::ParentPtr:
            case Opcode::ParentPtr2:
                if (!IsMark(node.operands[1])) return {};
                return {next};
            case Opcode::Tok:
            case Opcode::AdjacencyTest: return {};
            default: break;
        }
        std::vector<NodeId> reached;
        for (std::size_t i = 0; i < 4; ++i) {
            if (IsExecuted(node.pInfo->operands[i])) reached.push_back(node.operands[i]);
        }
        return reached;
    }

    const Test& m_test;
    const Schema& m_schema;
    const bool m_bRightward;
    std::vector<State> m_stays;
    std::vector<State> m_circles;
};

}  // namespace

void CheckProgress(const Test& test, const Schema& schema, Diagnostics& diagnostics) {
    std::set<std::pair<NodeId, bool>> told;
    const Progress::Found found = [&](NodeId id, bool bCircle) {
        const Node& node = test.At(id);
        if (!told.insert({id, bCircle}).second) return;
        if (bCircle) {
            diagnostics.Warning(node.place,
                                "the test can come back here without having moved, for ever");
        } else if (static_cast<Opcode>(node.pInfo->number) == Opcode::StarsNoBkup) {
            diagnostics.Error(PlaceOf(node, 1),
                              "expected a pattern that moves: this one can match without, and "
                              "StarsNoBkup repeats it for ever");
        } else {
            diagnostics.Warning(PlaceOf(node, 1),
                                "expected a pattern that moves: Stars gives up when this one "
                                "matches without");
        }
    };
    const std::array<int, 4>& roots = test.header().operands;
    Progress(test, schema, !IsLeftward(test)).Look(roots[headerFocus], found);
    Progress(test, schema, false).Look(roots[headerLeft], found);
    Progress(test, schema, true).Look(roots[headerRight], found);
}

}  // namespace mlds_testasm
