// A context that runs back over the focus.
//
// Both contexts begin where the focus ended. Behind a rightward focus the left context meets the
// focus's own tokens first, and has to pass them before it sees what is left of them.
#include <algorithm>
#include <set>
#include <tuple>

#include "sequencefacts.h"
#include "traps.h"

using mlds::Opcode;
using mlds::OperandKind;

namespace mlds_testasm {

namespace {

// A test is made of at most 256 instructions, each with at most three operands that became
// instructions of their own. Longer ones are refused, and are not worth a deep recursion.
constexpr int kMostNodes = 4 * 256;

// What a comparison compares, whatever it is called: two tests of the same are the same.
using Compared = std::tuple<int, int, int, int>;

class Overlap {
public:
    Overlap(const Test& test, const Schema& schema, bool bRightward)
        : m_test(test),
          m_focusFacts(test, schema, bRightward),
          m_facts(test, schema, !bRightward),
          m_entered(test.nodes.size(), -1),
          m_ends(test.nodes.size()) {}

    // The tokens that the focus surely takes, one next to the other up to its end.
    int FocusTokens() {
        const NodeId focus = m_test.header().operands[headerFocus];
        bool bStraight = true;
        ForAllBelow(focus, [&](NodeId id) {
            const Node& node = m_test.At(id);
            switch (OpcodeOf(node)) {
                case Opcode::Plexa:
                case Opcode::RightContext:
                case Opcode::LeftContext:
                case Opcode::MoveRight:
                case Opcode::MoveLeft:
                case Opcode::TimeMoveRight:
                case Opcode::TimeMoveLeft: bStraight = false; break;
                case Opcode::Tok: m_tokens.insert(node.operands[0]); break;
                case Opcode::AssignTok: m_tokens.insert(node.operands[1]); break;
                case Opcode::Ptr: m_starts.insert(node.operands[0]); break;
                case Opcode::AssignPtr: m_assigned.insert(node.operands[1]); break;
                default: break;
            }
            if (IsComparison(node)) m_compared.insert(ComparedBy(node));
        });
        return bStraight ? m_focusFacts.LeastTokens(focus) : 0;
    }

    /// The first instruction, in the order of the text, that tests nothing but the focus's last
    /// `nTokens` tokens; 0 if there is none. `*pPassed` says how many it has passed.
    NodeId Find(NodeId context, int nTokens, int* pPassed) {
        m_nTokens = nTokens;
        Walk(context, 0);
        for (NodeId id = 1; id < m_test.size(); ++id) {
            const int passed = m_entered[static_cast<std::size_t>(id)];
            if (passed < 0 || passed >= nTokens || !Tests(m_test.At(id))) continue;
            *pPassed = passed;
            return id;
        }
        return 0;
    }

private:
    template <class Visit>
    void ForAllBelow(NodeId root, Visit visit) const {
        std::set<NodeId> seen = {0};
        std::vector<NodeId> toDo = {root};
        while (!toDo.empty()) {
            const NodeId id = toDo.back();
            toDo.pop_back();
            if (!seen.insert(id).second) continue;
            visit(id);
            const Node& node = m_test.At(id);
            for (std::size_t i = 0; i < 4; ++i) {
                if (IsExecuted(node.pInfo->operands[i])) toDo.push_back(node.operands[i]);
            }
        }
    }

    static bool IsComparison(const Node& node) {
        return !node.pInfo->bValue && node.pInfo->operands[1] == OperandKind::value;
    }
    Compared ComparedBy(const Node& node) const {
        const Node& left = m_test.At(node.operands[1]);
        const Node& right = m_test.At(node.operands[2]);
        return {left.pInfo->number, left.operands[0], right.pInfo->number, right.operands[0]};
    }
    bool ReadsField(const Node& node) const {
        return m_facts.IsField(node.operands[1]) || m_facts.IsField(node.operands[2]);
    }

    // True for what decides something at the place where it is entered. What tests the same as the
    // focus does passes the focus by its name.
    bool Tests(const Node& node) const {
        switch (OpcodeOf(node)) {
            case Opcode::SyncTest: return true;
            case Opcode::Tok: return m_tokens.count(node.operands[0]) == 0;
            case Opcode::Ptr: return IsStart(node.operands[0]);
            case Opcode::ParentPtr:
            case Opcode::ParentPtr2: {
                const int variable = m_test.At(node.operands[1]).operands[0];
                return m_facts.TakesToken(node) ? m_tokens.count(variable) == 0 : IsStart(variable);
            }
            case Opcode::AngleBrkt: return OnlyOthersAreCompared(node.operands[1]);
            default:
                return IsComparison(node) && ReadsField(node) &&
                       m_compared.count(ComparedBy(node)) == 0;
        }
    }

    // The mark where the focus began, which nobody finds at the focus's other end.
    bool IsStart(int mark) const { return m_starts.count(mark) > 0 && m_assigned.count(mark) == 0; }

    bool OnlyOthersAreCompared(NodeId condition) const {
        bool bCompares = false;
        bool bSame = false;
        ForAllBelow(condition, [&](NodeId id) {
            const Node& node = m_test.At(id);
            if (!IsComparison(node)) return;
            bCompares = true;
            bSame = bSame || m_compared.count(ComparedBy(node)) > 0;
        });
        return bCompares && !bSame;
    }

    int Passed(int passed, int more) const { return std::min(passed + more, m_nTokens); }

    // Executes a pattern behind so many tokens, and gives the most that can have been passed at its
    // end. Notes the most with which each instruction is entered: where there is doubt, the focus
    // counts as passed.
    int Walk(NodeId id, int passed) {
        if (id == 0) return passed;
        const auto i = static_cast<std::size_t>(id);
        std::vector<int>& ends = m_ends[i];
        if (ends.empty()) ends.resize(kManyTokens + 1, -1);
        int& end = ends[static_cast<std::size_t>(passed)];
        if (end >= 0) return end;
        end = m_nTokens;  // for who comes back here
        m_entered[i] = std::max(m_entered[i], passed);
        return end = WalkOn(m_test.At(id), passed);
    }

    int WalkOn(const Node& node, int passed) {
        const NodeId next = node.operands[3];
        switch (OpcodeOf(node)) {
            case Opcode::Anchor: return Walk(node.operands[0], passed);
            case Opcode::Or:
                return std::max(Walk(node.operands[1], passed), Walk(node.operands[2], passed));
            case Opcode::And:
                Walk(m_facts.First(node), passed);
                return Walk(m_facts.Second(node), passed);
            case Opcode::Adj:
                passed = Walk(m_facts.First(node), passed);
                return Walk(next, Walk(m_facts.Second(node), passed));
            case Opcode::Not: {
                const int failed = Walk(node.operands[1], passed);
                return next == 0 ? failed : Walk(next, passed);
            }
            case Opcode::Qmark:
            case Opcode::Qmarks: return Walk(next, Walk(node.operands[1], passed));
            // The condition belongs to the AngleBrkt, which is what is reported.
            case Opcode::AngleBrkt: return Walk(next, Passed(passed, 1));
            case Opcode::Tok: return next == 0 ? passed : Walk(next, Passed(passed, 1));
            case Opcode::ParentPtr:
            case Opcode::ParentPtr2:
                return Walk(next, Passed(passed, m_facts.TakesToken(node) ? 1 : 0));
            case Opcode::Star:
            case Opcode::Stars:
            case Opcode::StarsNoBkup:
                Walk(node.operands[1], m_nTokens);
                return Walk(next, m_nTokens);
            case Opcode::AssignPtr:
            case Opcode::AssignTok:
            case Opcode::SyncTest:
            case Opcode::AdjacencyTest: return Walk(next, passed);
            case Opcode::Eq:
            case Opcode::Ptr: return passed;
            default: break;
        }
        if (!IsComparison(node)) return Walk(next, m_nTokens);  // leads to another tier
        return Walk(next, Read(node.operands[2], Read(node.operands[1], passed)));
    }

    // A comparison steps over each token that it reads.
    int Read(NodeId value, int passed) const {
        if (m_facts.IsField(value)) return Passed(passed, 1);
        return IsConstant(m_test.At(value)) ? passed : m_nTokens;
    }

    const Test& m_test;
    const SequenceFacts m_focusFacts;
    const SequenceFacts m_facts;  // in the direction of the context
    int m_nTokens = 0;
    std::set<int> m_tokens;  // variables of the focus
    std::set<int> m_starts;
    std::set<int> m_assigned;
    std::set<Compared> m_compared;
    std::vector<int> m_entered;
    std::vector<std::vector<int>> m_ends;
};

}  // namespace

void CheckOverlap(const Test& test, const Schema& schema, Diagnostics& diagnostics) {
    const bool bLeftward = IsLeftward(test);
    const NodeId context = test.header().operands[bLeftward ? headerRight : headerLeft];
    if (context == 0 || test.size() > kMostNodes) return;
    Overlap overlap(test, schema, !bLeftward);
    const int nTokens = overlap.FocusTokens();
    int passed = 0;
    const NodeId id = nTokens > 0 ? overlap.Find(context, nTokens, &passed) : 0;
    if (id == 0) return;
    const std::string side = bLeftward ? "right" : "left";
    const std::string end = bLeftward ? "left" : "right";
    diagnostics.Warning(test.At(id).place,
                        "expected a test of what is " + side + " of the focus: the " + side +
                            " context begins at the focus's " + end + " end; step over its " +
                            (nTokens == 1 ? "token" : std::to_string(nTokens) + " tokens") +
                            " first, by 'AngleBrkt then ...' for each" +
                            (passed == 0 ? "" : ", not over " + std::to_string(passed) + " only"));
}

}  // namespace mlds_testasm
