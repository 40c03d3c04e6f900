// One test while it is made: instructions, what each was made for, and which are shared.
#ifndef MLDS_RULES_TESTBUILDER_H
#define MLDS_RULES_TESTBUILDER_H

#include <array>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "lowering/lowering.h"
#include "mlds/testasm/model.h"
#include "ruletest/opcodes.h"

namespace mlds::rules {

using mlds_testasm::NodeId;

struct BuiltTest {
    mlds_testasm::Test test;
    std::vector<Element> elements;  ///< by node
};

/// Makes the instructions of a test from its end: an instruction is made after those it leads to.
class TestBuilder {
public:
    using Operands = std::array<int, 4>;

    TestBuilder();

    /// An instruction made for a part of the rule. Selectors name fields of `tier`.
    NodeId Add(Opcode opcode, const Operands& operands, const Element& element,
               TierId tier = kNoTier);
    /// One that may serve several parts of a rule: equal ones are made once.
    NodeId AddOnce(Opcode opcode, const Operands& operands, TierId tier = kNoTier);
    /// Sets an operand of what others lead to already.
    void Link(NodeId id, std::size_t operand, NodeId to);

    /// What listings call an instruction; labels are unique in a test.
    void SetLabel(NodeId id, const char* label) { m_test.At(id).label = label; }

    NodeId Stream(TierId tier);
    NodeId FieldOf(TierId tier, int field);
    NodeId Value(TierId tier, int field, int value);
    NodeId Variable(int variable);

    /// Holds, moves nothing and leaves the completion flag alone. Every sequence ends here, so that
    /// the flag is never set and Adj, And and Or mean what they say.
    NodeId Done();

    struct Roots {
        TierId stream = kNoTier;
        NodeId left = 0;
        NodeId right = 0;
        NodeId focus = 0;
    };
    /// What these lead to, in the order in which one reads it.
    BuiltTest Finish(std::string name, const Span& place, const Roots& roots);

    /// True once so many instructions were made that it is no use to make more: no test can hold
    /// what they are needed for.
    bool bTooLong() const { return m_test.size() > kMostMade; }

private:
    static constexpr int kMostMade = 20'000;
    using Key = std::tuple<Opcode, Operands, mlds_testasm::NameKind, int, int>;

    NodeId Make(Opcode opcode, const Operands& operands, const mlds_testasm::Naming& naming);
    NodeId MakeOnce(Opcode opcode, const Operands& operands, const mlds_testasm::Naming& naming);
    NodeId Constant(Opcode opcode, int number, const mlds_testasm::Naming& naming);
    std::vector<NodeId> Reached(const Roots& roots) const;

    mlds_testasm::Test m_test;
    std::vector<Element> m_elements;
    std::map<Key, NodeId> m_made;
};

}  // namespace mlds::rules

#endif
