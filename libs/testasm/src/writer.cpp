// Model to text.
#include <set>

#include "mlds/testasm/image.h"
#include "mlds/testasm/text.h"
#include "ruletest/opcodes.h"
#include "scan.h"

using mlds::OperandKind;

namespace mlds_testasm {

namespace {

const char* Keyword(OperandKind kind) {
    switch (kind) {
        case OperandKind::next: return " then ";
        case OperandKind::limit: return " limit ";
        case OperandKind::direction: return " direction ";
        case OperandKind::flag: return " norecord ";
        default: return "";
    }
}

}  // namespace

TestWriter::TestWriter(const Test& test, const Schema& schema) : m_test(test), m_schema(schema) {
    std::set<std::string> taken;
    for (const Node& node : test.nodes) taken.insert(node.label);
    const Layout layout = LayOut(test);
    for (NodeId id = 0; id < test.size(); ++id) {
        std::string label = test.At(id).label;
        if (label.empty()) {
            label = "L" + std::to_string(layout.indexOf[static_cast<std::size_t>(id)]);
            while (taken.count(label) > 0) label += "_";
        }
        m_labels.push_back(std::move(label));
    }
}

std::string TestWriter::Text() const {
    std::string text = Header("\n    ") + "\n";
    for (NodeId id = 1; id < m_test.size(); ++id) {
        if (!m_test.At(id).bShared) text += Label(id) + ": " + Instruction(id) + "\n";
    }
    return text + "end\n";
}

std::string TestWriter::Header(const char* separator) const {
    const Node& header = m_test.header();
    std::string text = "test " + Quoted(m_test.name);
    if (header.operands[headerStream] != 0) text += " " + Link(header.operands[headerStream]);
    if (header.raw[0] != 0) text += separator + ("byte0 " + std::to_string(header.raw[0]));
    static constexpr const char* kNames[] = {"", "left ", "right ", "focus "};
    for (std::size_t i = headerLeft; i <= headerFocus; ++i) {
        if (header.operands[i] == 0) continue;
        text += separator + (kNames[i] + Link(header.operands[i]));
    }
    return text;
}

std::string TestWriter::Instruction(NodeId id) const {
    const Node& node = m_test.At(id);
    if (id == 0) return Header(" ");
    if (node.pInfo == nullptr) {
        std::string text = "Raw";
        for (const unsigned char byte : node.raw) text += " " + std::to_string(byte);
        return text;
    }
    std::string text = node.pInfo->name;
    std::string absent;
    for (std::size_t i = 0; i < 4; ++i) {
        const OperandKind kind = node.pInfo->operands[i];
        const bool bKeyword = *Keyword(kind) != '\0';
        const bool bSelector = kind == OperandKind::selector;
        const bool bAbsent = kind == OperandKind::none ||
                             ((bKeyword || IsLink(kind)) && node.operands[i] == 0) ||
                             (bSelector && node.operands[i] == kWholeToken);
        if (!bAbsent) {
            text += (bKeyword ? Keyword(kind) : absent + " ") + Operand(node, i);
            absent.clear();
        } else if (IsLink(kind) && !bKeyword) {
            absent += " _";
        }
    }
    return text;
}

std::string TestWriter::Operand(const Node& node, std::size_t i) const {
    const int number = node.operands[i];
    switch (node.pInfo->operands[i]) {
        case OperandKind::tokenByte:
        case OperandKind::tokenShort:
        case OperandKind::markShort:
        case OperandKind::markInt: return Variable(node, i);
        case OperandKind::integer: return Constant(node);
        case OperandKind::field:
        case OperandKind::selector: return FieldName(node.naming.stream, number);
        case OperandKind::direction:
        case OperandKind::flag: return std::to_string(number);
        default: return Link(number);
    }
}

std::string TestWriter::Link(NodeId id) const {
    const Node& node = m_test.At(id);
    if (!node.bShared) return Label(id);
    if (IsLink(node.pInfo->operands[1])) return Link(node.operands[1]);  // a limit
    return Operand(node, 0);
}

std::string TestWriter::Constant(const Node& node) const {
    const int number = node.operands[0];
    const Naming& naming = node.naming;
    if (naming.kind == NameKind::variable) return VariableName(number);
    const bool bStream = number >= 0 && number < static_cast<int>(m_schema.streams.size());
    if (naming.kind == NameKind::stream && bStream) {
        const std::string& name = m_schema.streams[static_cast<std::size_t>(number)].name;
        if (m_schema.FindStream(name) == number) return "%" + Quoted(name);
    }
    if (naming.kind == NameKind::value) {
        const std::string field = FieldName(naming.stream, naming.field);
        const auto value = m_schema.ValueText(naming.stream, naming.field, number);
        if (value && field[0] == '%') return field + ":" + Quoted(*value, true);
    }
    return std::to_string(number);
}

// A name is written only if it reads back as the same number.
std::string TestWriter::VariableName(int index) const {
    const SchemaVariable* pVariable = m_schema.VariableAt(index);
    if (pVariable == nullptr || m_schema.FindVariable(pVariable->name) != index) {
        return std::to_string(index);
    }
    return (pVariable->bToken ? "$" : "^") + Quoted(pVariable->name);
}

std::string TestWriter::Variable(const Node& node, std::size_t i) const {
    const SchemaVariable* pVariable = m_schema.VariableAt(node.operands[i]);
    const OperandKind kind = node.pInfo->operands[i];
    const bool bToken = kind == OperandKind::tokenByte || kind == OperandKind::tokenShort;
    if (pVariable == nullptr || pVariable->bToken != bToken) {
        return std::to_string(node.operands[i]);
    }
    return VariableName(node.operands[i]);
}

std::string TestWriter::FieldName(int stream, int field) const {
    const SchemaField* pField = m_schema.FieldAt(stream, field);
    if (pField == nullptr || m_schema.FindField(stream, pField->name) != field) {
        return std::to_string(field);
    }
    const std::string& name = m_schema.streams[static_cast<std::size_t>(stream)].name;
    if (m_schema.FindStream(name) != stream) return std::to_string(field);
    return "%" + Quoted(name) + "." + Quoted(pField->name);
}

std::string WriteProgram(const Program& program, const Schema& schema) {
    std::string text;
    for (const Test& test : program.tests) {
        text += (text.empty() ? "" : "\n") + TestWriter(test, schema).Text();
    }
    return text;
}

namespace {

const char* SyntaxOf(OperandKind kind) {
    switch (kind) {
        case OperandKind::pattern: return " pattern";
        case OperandKind::value: return " value";
        case OperandKind::stream: return " %stream";
        case OperandKind::maybe: return " [pattern]";
        case OperandKind::maybeStream: return " [%stream]";
        case OperandKind::next: return " [then pattern]";
        case OperandKind::limit: return " [limit ^mark]";
        case OperandKind::varLink: return " ^mark-or-$token";
        case OperandKind::tokenByte:
        case OperandKind::tokenShort: return " $token";
        case OperandKind::markShort:
        case OperandKind::markInt: return " ^mark";
        case OperandKind::integer: return " number";
        case OperandKind::field: return " %stream.field";
        case OperandKind::selector: return " [%stream.field]";
        case OperandKind::direction: return " [leftward]";
        case OperandKind::flag: return " [norecord]";
        case OperandKind::none: break;
    }
    return "";
}

}  // namespace

std::string Syntax(const mlds::OpcodeInfo& info) {
    std::string syntax = info.name;
    for (const OperandKind kind : info.operands) syntax += SyntaxOf(kind);
    return syntax;
}

std::string OpcodeTable() {
    std::string table = "| opcode | instruction | gives |\n|---|---|---|\n";
    for (const mlds::OpcodeInfo& info : mlds::kOpcodeTable) {
        table += "| " + std::to_string(info.number) + " | `" + Syntax(info) + "` | " +
                 (info.bValue ? "a number" : "a match") + " |\n";
    }
    return table;
}

}  // namespace mlds_testasm
