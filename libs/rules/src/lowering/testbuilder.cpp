// Making the instructions of one test.
#include "lowering/testbuilder.h"

#include <algorithm>
#include <utility>

namespace mlds::rules {

using mlds_testasm::NameKind;
using mlds_testasm::Naming;
using mlds_testasm::Node;

TestBuilder::TestBuilder() : m_elements(1) {}

NodeId TestBuilder::Make(Opcode opcode, const Operands& operands, const Naming& naming) {
    Node node;
    node.pInfo = FindOpcode(static_cast<int>(opcode));
    node.operands = operands;
    node.naming = naming;
    m_elements.emplace_back();
    return m_test.Add(std::move(node));
}

// The naming belongs to the key: 3 may be a letter here and a stress there, and a listing says
// which.
NodeId TestBuilder::MakeOnce(Opcode opcode, const Operands& operands, const Naming& naming) {
    const Key key(opcode, operands, naming.kind, naming.stream, naming.field);
    const auto [entry, bNew] = m_made.emplace(key, 0);
    if (bNew) entry->second = Make(opcode, operands, naming);
    return entry->second;
}

NodeId TestBuilder::Add(Opcode opcode, const Operands& operands, const Element& element,
                        TierId tier) {
    const NodeId id = Make(opcode, operands, {NameKind::field, tier});
    m_elements.back() = element;
    if (element.pPattern != nullptr) {
        m_test.At(id).place = {element.pPattern->span.line, element.pPattern->span.column};
    }
    return id;
}

NodeId TestBuilder::AddOnce(Opcode opcode, const Operands& operands, TierId tier) {
    return MakeOnce(opcode, operands, {NameKind::field, tier});
}

void TestBuilder::Link(NodeId id, std::size_t operand, NodeId to) {
    m_test.At(id).operands[operand] = to;
}

// The assembler puts what is shared behind all others, and writes it as an operand.
NodeId TestBuilder::Constant(Opcode opcode, int number, const Naming& naming) {
    const NodeId id = MakeOnce(opcode, {number}, naming);
    m_test.At(id).bShared = true;
    return id;
}

NodeId TestBuilder::Stream(TierId tier) {
    return Constant(Opcode::Stream, tier, {NameKind::stream});
}

NodeId TestBuilder::FieldOf(TierId tier, int field) {
    return Constant(Opcode::Field, field, {NameKind::field, tier});
}

NodeId TestBuilder::Value(TierId tier, int field, int value) {
    return Constant(Opcode::Enum, value, {NameKind::value, tier, field});
}

NodeId TestBuilder::Variable(int variable) {
    return Constant(Opcode::ConstInt, variable, {NameKind::variable});
}

// Both operands of this Or are absent, and an Or whose last alternative is absent holds.
NodeId TestBuilder::Done() {
    return AddOnce(Opcode::Or, {});
}

// Depth first, so that the way through a pattern reads from top to bottom; without recursion,
// because a chain may have thousands of instructions before it is refused. What no root leads to
// was made for nothing: the rest behind a pattern that always takes a token, say.
std::vector<NodeId> TestBuilder::Reached(const Roots& roots) const {
    std::vector<NodeId> order;
    std::vector<bool> seen(m_test.nodes.size());
    seen[0] = true;
    std::vector<NodeId> toDo = {roots.left, roots.right, roots.focus};
    while (!toDo.empty()) {
        const NodeId id = toDo.back();
        toDo.pop_back();
        if (seen[static_cast<std::size_t>(id)]) continue;
        seen[static_cast<std::size_t>(id)] = true;
        order.push_back(id);
        const Node& node = m_test.At(id);
        for (std::size_t i = 4; i-- > 0;) {
            if (mlds_testasm::IsLink(node.pInfo->operands[i])) toDo.push_back(node.operands[i]);
        }
    }
    return order;
}

BuiltTest TestBuilder::Finish(std::string name, const Span& place, const Roots& roots) {
    // Made before the header is looked at: making it may move the header.
    const NodeId stream = Stream(roots.stream);
    m_test.nodes.front().operands = {stream, roots.left, roots.right, roots.focus};
    std::vector<NodeId> order = {0, stream};
    for (const NodeId id : Reached(roots)) order.push_back(id);
    // Where sequences end is no place of any of them.
    const NodeId done = Done();
    SetLabel(done, "done");
    const auto last = std::find(order.begin(), order.end(), done);
    if (last != order.end()) std::rotate(last, last + 1, order.end());

    // Links lead to new places, behind the header or before, as loops need it.
    std::vector<NodeId> newId(m_test.nodes.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        newId[static_cast<std::size_t>(order[i])] = static_cast<NodeId>(i);
    }
    BuiltTest built;
    built.test.nodes.clear();
    for (const NodeId id : order) {
        Node& node = built.test.nodes.emplace_back(m_test.At(id));
        for (std::size_t i = 0; i < 4; ++i) {
            if (!mlds_testasm::IsLink(node.pInfo->operands[i])) continue;
            node.operands[i] = newId[static_cast<std::size_t>(node.operands[i])];
        }
        built.elements.push_back(m_elements[static_cast<std::size_t>(id)]);
    }
    built.test.name = std::move(name);
    built.test.nodes.front().place = {place.line, place.column};
    return built;
}

}  // namespace mlds::rules
