// What is wrong with a program, before anything runs it.
#include "mlds/testasm/validate.h"

#include <cstdint>
#include <optional>
#include <set>

#include "codec.h"
#include "mlds/testasm/image.h"
#include "mlds/testasm/text.h"
#include "ruletest/opcodes.h"
#include "sequencefacts.h"
#include "traps.h"

using mlds::Opcode;
using mlds::OperandKind;

namespace mlds_testasm {

namespace {

class TestValidator {
public:
    TestValidator(const Test& test, const Schema& schema, Diagnostics& diagnostics)
        : m_test(test),
          m_schema(schema),
          m_diagnostics(diagnostics),
          m_executed(test.nodes.size()),
          m_referred(test.nodes.size()) {}

    void Run() {
        const int nErrors = m_diagnostics.errors();
        if (!LinksAreWhole()) return;
        const NodeId focus = m_test.header().operands[headerFocus];
        if (focus != 0) Execute(focus);
        CheckFocus(focus);
        Execute(0);
        for (NodeId id = 0; id < m_test.size(); ++id) CheckNode(id);
        if (m_diagnostics.errors() > nErrors) return;
        CheckProgress(m_test, m_schema, m_diagnostics);
        CheckTraps(m_test, m_schema, m_diagnostics);
    }

private:
    // Programs that no text was read for may have any links.
    bool LinksAreWhole() {
        bool bWhole = true;
        for (const Node& node : m_test.nodes) {
            for (std::size_t i = 0; i < 4 && node.pInfo != nullptr; ++i) {
                const int link = node.operands[i];
                if (!IsLink(node.pInfo->operands[i]) || (link >= 0 && link < m_test.size())) {
                    continue;
                }
                Expected(node, i, "an instruction of this test");
                bWhole = false;
            }
        }
        return bWhole;
    }

    void Execute(NodeId first) {
        std::vector<NodeId> toDo = {first};
        while (!toDo.empty()) {
            const NodeId id = toDo.back();
            toDo.pop_back();
            if (m_executed[static_cast<std::size_t>(id)]) continue;
            m_executed[static_cast<std::size_t>(id)] = true;
            const Node& node = m_test.At(id);
            for (std::size_t i = 0; i < 4 && node.pInfo != nullptr; ++i) {
                const OperandKind kind = node.pInfo->operands[i];
                if (!IsLink(kind)) continue;
                m_referred[static_cast<std::size_t>(node.operands[i])] = true;
                // A header's stream is only read.
                const bool bRead = id == 0 && i == headerStream;
                if (IsExecuted(kind) && !bRead) toDo.push_back(node.operands[i]);
                if (kind == OperandKind::limit) Refer(m_test.At(node.operands[i]));
            }
        }
    }

    void Refer(const Node& limit) {
        if (limit.pInfo == nullptr || !IsLink(limit.pInfo->operands[1])) return;
        m_referred[static_cast<std::size_t>(limit.operands[1])] = true;
    }

    void CheckNode(NodeId id) {
        const Node& node = m_test.At(id);
        const bool bExecuted = m_executed[static_cast<std::size_t>(id)];
        const bool bReferred = m_referred[static_cast<std::size_t>(id)];
        if (!bExecuted && !bReferred && !node.bShared) {
            m_diagnostics.Warning(node.place,
                                  "nothing in test '" + Shortened(m_test.name) + "' leads here");
        }
        if (bExecuted && node.pInfo == nullptr) {
            m_diagnostics.Error(node.place,
                                "expected an instruction, as this is executed; found bytes that "
                                "are none");
        }
        // What is only referred to is no more than a number.
        if (node.pInfo == nullptr || (bReferred && !bExecuted)) return;
        for (std::size_t i = 0; i < 4; ++i) CheckOperand(id, i);
        CheckUse(node);
    }

    void CheckOperand(NodeId id, std::size_t i) {
        const Node& node = m_test.At(id);
        const OperandKind kind = node.pInfo->operands[i];
        const int operand = node.operands[i];
        if (IsLink(kind) && operand == 0) {
            const char* what = id == 0 && i == headerFocus ? "a focus" : Required(kind);
            if (*what != '\0') Expected(node, i, std::string(what) + ", found none");
            return;
        }
        switch (kind) {
            case OperandKind::pattern:
            case OperandKind::maybe:
            case OperandKind::next: return CheckTarget(node, i, false);
            case OperandKind::value: return CheckTarget(node, i, true);
            case OperandKind::stream:
            case OperandKind::maybeStream: return CheckStream(id, i);
            case OperandKind::limit: return CheckLimit(node, i);
            case OperandKind::varLink:
                if (!IsConstant(m_test.At(operand)))
                    return Expected(node, i, "a constant", operand);
                return CheckVariable(node, i, m_test.At(operand).operands[0], true, true);
            case OperandKind::tokenByte:
            case OperandKind::tokenShort: return CheckVariable(node, i, operand, false, true);
            case OperandKind::markShort:
            case OperandKind::markInt: return CheckVariable(node, i, operand, true, false);
            case OperandKind::selector: return CheckRange(node, i, 255);
            case OperandKind::field: return CheckRange(node, i, INT32_MAX);
            default: return;
        }
    }

    // What a link must lead to; empty for those that may be absent.
    static const char* Required(OperandKind kind) {
        switch (kind) {
            case OperandKind::pattern: return "a pattern";
            case OperandKind::value: return "a value";
            case OperandKind::stream: return "a stream";
            case OperandKind::varLink: return "a variable";
            default: return "";
        }
    }

    void CheckTarget(const Node& node, std::size_t i, bool bValue) {
        const Node& target = m_test.At(node.operands[i]);
        if (target.pInfo == nullptr || target.pInfo->bValue == bValue) return;
        Expected(node, i, bValue ? "a value" : "a pattern", node.operands[i]);
    }

    // Of a header's stream only the number is read, whatever the opcode.
    void CheckStream(NodeId id, std::size_t i) {
        const Node& node = m_test.At(id);
        const Node& target = m_test.At(node.operands[i]);
        CheckTarget(node, i, true);
        if (!IsConstant(target)) {
            if (id == 0 && target.pInfo != nullptr) {
                Expected(node, i, "a constant", node.operands[i]);
            }
            return;
        }
        const int stream = target.operands[0];
        const int streams = static_cast<int>(m_schema.streams.size());
        if (streams == 0 || (stream >= 0 && stream < streams)) return;
        Expected(node, i, "a stream that is declared, not number " + std::to_string(stream));
    }

    void CheckLimit(const Node& node, std::size_t i) {
        const Node& limit = m_test.At(node.operands[i]);
        const bool bLinks = limit.pInfo != nullptr && IsLink(limit.pInfo->operands[1]);
        const NodeId constant = bLinks ? limit.operands[1] : 0;
        if (!IsConstant(m_test.At(constant))) {
            return Expected(node, i, "an instruction with a constant as its second operand byte",
                            node.operands[i]);
        }
        const int variable = m_test.At(constant).operands[0];
        if (variable >= 0) CheckVariable(node, i, variable, true, false);
    }

    void CheckVariable(const Node& node, std::size_t i, int variable, bool bMark, bool bToken) {
        const OperandKind kind = node.pInfo->operands[i];
        const int highest = kind == OperandKind::tokenByte ? 255
                            : kind == OperandKind::markInt ? INT32_MAX
                                                           : 65535;
        const SchemaVariable* pVariable = m_schema.VariableAt(variable);
        const bool bKnown = m_schema.variables.empty() || pVariable != nullptr;
        if (variable < 0 || variable > highest || !bKnown) {
            Expected(node, i, "a variable, not number " + std::to_string(variable));
        } else if (pVariable != nullptr && !(pVariable->bToken ? bToken : bMark)) {
            Expected(node, i, bToken ? "a token variable" : "a mark variable");
        }
    }

    void CheckRange(const Node& node, std::size_t i, int high) {
        if (node.operands[i] >= 0 && node.operands[i] <= high) return;
        Expected(node, i, "a number from 0 to " + std::to_string(high));
    }

    void CheckUse(const Node& node) {
        const Node& right = m_test.At(IsLink(node.pInfo->operands[2]) ? node.operands[2] : 0);
        if (OpcodeOf(node) == Opcode::Div && IsConstant(right) && right.operands[0] == 0) {
            Expected(node, 2, "a divisor that is not 0");
        }
        if (OpcodeOf(node) == Opcode::StarsNoBkup && node.operands[3] == 0) {
            m_diagnostics.Warning(node.place,
                                  "expected 'then', without which StarsNoBkup never matches");
        }
    }

    // Byte 2 of the focus says the direction, whatever else it says.
    void CheckFocus(NodeId id) {
        const Node& focus = m_test.At(id);
        if (id == 0 || focus.pInfo == nullptr) return;
        const bool bAnchor = OpcodeOf(focus) == Opcode::Anchor;
        if (!bAnchor && Encode(focus, LayOut(m_test).indexOf)[2] == 1) {
            m_diagnostics.Error(PlaceOf(focus, 1),
                                "expected an Anchor as the focus, as this " +
                                    std::string(focus.pInfo->name) +
                                    " has the code for leftward, 1, as its byte 2");
        }
        for (NodeId other = 1; other < m_test.size(); ++other) {
            const Node& node = m_test.At(other);
            if (node.pInfo == nullptr || !m_executed[static_cast<std::size_t>(other)]) continue;
            if (OpcodeOf(node) == Opcode::Ptr || node.pInfo->operands[1] == OperandKind::varLink) {
                return;
            }
        }
        m_diagnostics.Warning(PlaceOf(m_test.header(), headerFocus),
                              "expected a Ptr in the focus, as nothing else gives a test its first "
                              "position");
    }

    void Expected(const Node& node, std::size_t i, const std::string& what, NodeId found = 0) {
        std::string message = "expected " + what;
        if (found != 0) {
            if (!m_writer) m_writer.emplace(m_test, m_schema);
            message += ", found " + Shortened(m_writer->Instruction(found));
        }
        if (node.pInfo == &HeaderInfo()) message += " (test '" + Shortened(m_test.name) + "')";
        if (node.pInfo != &HeaderInfo()) message += " (" + Syntax(*node.pInfo) + ")";
        m_diagnostics.Error(PlaceOf(node, i), message);
    }

    const Test& m_test;
    const Schema& m_schema;
    Diagnostics& m_diagnostics;
    std::vector<bool> m_executed;
    std::vector<bool> m_referred;
    std::optional<TestWriter> m_writer;
};

}  // namespace

void Validate(const Program& program, const Schema& schema, Diagnostics& diagnostics) {
    std::set<std::string> names;
    for (const Test& test : program.tests) {
        if (!names.insert(test.name).second) {
            diagnostics.Error(
                test.header().place,
                "expected a new name, as another test is called '" + Shortened(test.name) + "'");
        }
        if (!test.bFaulty) TestValidator(test, schema, diagnostics).Run();
    }
}

}  // namespace mlds_testasm
