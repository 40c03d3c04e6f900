// What the numbers of a lifted test are called, as far as their use shows it.
#include "codec.h"
#include "ruletest/opcodes.h"

using mlds::OperandKind;

namespace mlds_testasm {

namespace {

class Namer {
public:
    explicit Namer(Test& test) : m_test(test), m_visited(test.nodes.size()), m_used(m_visited) {}

    void Run() {
        const int stream = StreamBehind(m_test.header().operands[headerStream], -1);
        Visit(0, stream);
    }

private:
    // The stream that a link to a constant means.
    int StreamBehind(NodeId link, int otherwise) {
        const Node& node = m_test.At(link);
        return link != 0 && IsConstant(node) ? node.operands[0] : otherwise;
    }

    // A second use under another name takes the name away.
    void Name(NodeId id, Naming naming) {
        const auto i = static_cast<std::size_t>(id);
        if (id == 0 || !IsConstant(m_test.At(id))) return;
        Node& node = m_test.At(id);
        node.naming = m_used[i] && !(node.naming == naming) ? Naming{} : naming;
        m_used[i] = true;
    }

    void NameCompared(const Node& node) {
        if (node.pInfo->bValue || node.pInfo->operands[1] != OperandKind::value) return;
        for (const std::size_t i : {1u, 2u}) {
            const Node& field = m_test.At(node.operands[i]);
            if (field.pInfo == nullptr || field.pInfo->operands[0] != OperandKind::field) continue;
            Name(node.operands[3 - i], {NameKind::value, field.naming.stream, field.operands[0]});
        }
    }

    void Visit(NodeId id, int stream) {
        const auto i = static_cast<std::size_t>(id);
        if (m_visited[i]) return;
        m_visited[i] = true;
        Node& node = m_test.At(id);
        if (node.pInfo == nullptr) return;
        for (std::size_t k = 0; k < 4; ++k) {
            const int operand = node.operands[k];
            switch (node.pInfo->operands[k]) {
                case OperandKind::field:
                case OperandKind::selector: node.naming = {NameKind::field, stream}; break;
                case OperandKind::stream:
                case OperandKind::maybeStream: Name(operand, {NameKind::stream}); break;
                case OperandKind::varLink: Name(operand, {NameKind::variable}); break;
                case OperandKind::limit: NameLimit(operand); break;
                default: break;
            }
        }
        const bool bCrosses = id != 0 && node.pInfo->operands[0] == OperandKind::stream;
        const int target = bCrosses ? StreamBehind(node.operands[0], stream) : stream;
        for (std::size_t k = 0; k < 4; ++k) {
            const OperandKind kind = node.pInfo->operands[k];
            if (!IsExecuted(kind) || node.operands[k] == 0) continue;
            Visit(node.operands[k], kind == OperandKind::pattern ? target : stream);
        }
        NameCompared(node);
    }

    void NameLimit(NodeId limit) {
        const Node& node = m_test.At(limit);
        if (limit == 0 || node.pInfo == nullptr || !IsLink(node.pInfo->operands[1])) return;
        Name(node.operands[1], {NameKind::variable});
    }

    Test& m_test;
    std::vector<bool> m_visited;
    std::vector<bool> m_used;
};

}  // namespace

void NameNumbers(Test& test) {
    Namer(test).Run();
}

}  // namespace mlds_testasm
