// One instruction as five bytes.
#include "codec.h"

#include <cstdint>

#include "ruletest/opcodes.h"

using mlds::OperandKind;

namespace mlds_testasm {

int WidthOf(OperandKind kind) {
    switch (kind) {
        case OperandKind::none: return 0;
        case OperandKind::markShort:
        case OperandKind::tokenShort: return 2;
        case OperandKind::markInt:
        case OperandKind::integer:
        case OperandKind::field: return 4;
        default: return 1;
    }
}

std::array<int, 4> PlacedOperands(const Node& node, const std::vector<int>& indexOf) {
    std::array<int, 4> operands = node.operands;
    for (std::size_t i = 0; i < 4; ++i) {
        if (!IsLink(node.pInfo->operands[i])) continue;
        operands[i] = indexOf[static_cast<std::size_t>(operands[i])];
    }
    return operands;
}

Bytes Encode(const Node& node, const std::vector<int>& indexOf) {
    if (node.pInfo == nullptr) return node.raw;
    const bool bHeader = node.pInfo == &HeaderInfo();
    Bytes bytes{bHeader ? node.raw[0] : static_cast<unsigned char>(node.pInfo->number)};
    const std::array<int, 4> operands = PlacedOperands(node, indexOf);
    for (std::size_t i = 0; i < 4; ++i) {
        auto rest = static_cast<std::uint32_t>(operands[i]);
        for (int at = WidthOf(node.pInfo->operands[i]); at > 0; --at, rest >>= 8) {
            bytes[i + static_cast<std::size_t>(at)] = static_cast<unsigned char>(rest);
        }
    }
    return bytes;
}

Node Decode(const Bytes& bytes, bool bHeader, int size, std::string* pWhy) {
    Node node;
    node.raw = bytes;
    node.pInfo = bHeader ? &HeaderInfo() : mlds::FindOpcode(bytes[0]);
    if (node.pInfo == nullptr) {
        *pWhy = "expected an opcode of the table, found " + std::to_string(bytes[0]);
        return node;
    }
    std::size_t i = 0;
    while (i < 4) {
        const OperandKind kind = node.pInfo->operands[i];
        const auto width = static_cast<std::size_t>(WidthOf(kind));
        std::uint32_t number = 0;
        for (std::size_t k = 1; k <= width; ++k) number = number << 8 | bytes[i + k];
        const std::string place = "byte " + std::to_string(i + 1) + " of " + node.pInfo->name;
        if (width == 0 && bytes[i + 1] != 0) {
            *pWhy = "expected 0 in " + place + ", found " + std::to_string(bytes[i + 1]);
        } else if (IsLink(kind) && static_cast<int>(number) >= size) {
            *pWhy = "expected a link below " + std::to_string(size) + " in " + place + ", found " +
                    std::to_string(number);
        } else {
            node.operands[i] = static_cast<std::int32_t>(number);
        }
        i += width > 0 ? width : 1;
    }
    if (!pWhy->empty() && !bHeader) node.pInfo = nullptr;
    return node;
}

}  // namespace mlds_testasm
