// Building and asking the graph of instructions.
#include "mlds/testasm/model.h"

#include "ruletest/opcodes.h"

using mlds::OpcodeInfo;
using mlds::OperandKind;

namespace mlds_testasm {

Test::Test() {
    nodes.emplace_back().pInfo = &HeaderInfo();
}

NodeId Test::Add(Node node) {
    nodes.push_back(std::move(node));
    return size() - 1;
}

NodeId Test::AddShared(int opcode, int number, Naming naming, Place place) {
    Node node;
    node.pInfo = mlds::FindOpcode(opcode);
    const bool bLink = IsLink(node.pInfo->operands[1]);
    node.operands[bLink ? 1 : 0] = number;
    if (bLink) node.operands[2] = kWholeToken;
    node.bShared = true;
    node.naming = naming;
    node.place = place;
    return Add(std::move(node));
}

const OpcodeInfo& HeaderInfo() {
    static constexpr OpcodeInfo info = {
        0,
        "test",
        false,
        {OperandKind::stream, OperandKind::maybe, OperandKind::maybe, OperandKind::pattern}};
    return info;
}

const OpcodeInfo* FindMnemonic(const std::string& name) {
    for (const OpcodeInfo& info : mlds::kOpcodeTable) {
        if (name == info.name) return &info;
    }
    return nullptr;
}

bool IsLink(OperandKind kind) {
    return IsExecuted(kind) || kind == OperandKind::limit || kind == OperandKind::varLink;
}

bool IsExecuted(OperandKind kind) {
    switch (kind) {
        case OperandKind::pattern:
        case OperandKind::value:
        case OperandKind::stream:
        case OperandKind::maybe:
        case OperandKind::maybeStream:
        case OperandKind::next: return true;
        default: return false;
    }
}

bool IsConstant(const Node& node) {
    return node.pInfo != nullptr && node.pInfo->operands[0] == OperandKind::integer;
}

Place PlaceOf(const Node& node, std::size_t operand) {
    return node.places[operand].line > 0 ? node.places[operand] : node.place;
}

}  // namespace mlds_testasm
