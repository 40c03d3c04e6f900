// Test programs as graphs of typed instructions, apart from their text and their bytes.
//
// A notation of rules builds a Program, has it validated (validate.h) and lowered to bytes
// (image.h); what is lifted from bytes is a Program again.
#ifndef MLDS_TESTASM_MODEL_H
#define MLDS_TESTASM_MODEL_H

#include <array>
#include <string>
#include <vector>

#include "mlds/testasm/diagnostics.h"

namespace mlds {
struct OpcodeInfo;
enum class OperandKind;
}  // namespace mlds

namespace mlds_testasm {

using Bytes = std::array<unsigned char, 5>;

/// An instruction of a test: its place in Test::nodes. 0, the header, is never an operand and says
/// that there is none.
using NodeId = int;

/// The selector that stands for all fields.
inline constexpr int kWholeToken = 255;

/// What a number of an instruction is called. Only texts are made of it, never bytes.
enum class NameKind { number, stream, field, value, variable };
struct Naming {
    NameKind kind = NameKind::number;
    int stream = -1;  ///< the stream of a field or a value
    int field = -1;   ///< the field of a value

    bool operator==(const Naming&) const = default;
};

struct Node {
    /// The line of the opcode table; HeaderInfo() for headers. Null for five bytes that are no
    /// instruction.
    const mlds::OpcodeInfo* pInfo = nullptr;
    /// Links and numbers, where the table has them (what spans several bytes at the first).
    std::array<int, 4> operands{};
    /// What is no instruction, whole; of a header, byte 0.
    Bytes raw{};
    /// Made for an operand. Equal ones become one instruction, behind all others.
    bool bShared = false;
    Naming naming;
    std::string label;
    Place place;
    std::array<Place, 4> places{};  ///< of the operands
};

struct Test {
    Test();

    NodeId Add(Node node);
    /// A constant or a field made for an operand, or a ParentPtr that holds a limit.
    NodeId AddShared(int opcode, int number, Naming naming, Place place);
    const Node& header() const { return nodes.front(); }
    const Node& At(NodeId id) const { return nodes[static_cast<std::size_t>(id)]; }
    Node& At(NodeId id) { return nodes[static_cast<std::size_t>(id)]; }
    int size() const { return static_cast<int>(nodes.size()); }

    std::string name;
    std::vector<Node> nodes;  ///< the header first
    bool bFaulty = false;     ///< its text could not be read whole
};

struct Program {
    std::vector<Test> tests;
};

/// The operands of a header: stream, left context, right context, focus.
const mlds::OpcodeInfo& HeaderInfo();
enum HeaderOperand { headerStream, headerLeft, headerRight, headerFocus };

/// An instruction of the table; null for an unknown name.
const mlds::OpcodeInfo* FindMnemonic(const std::string& name);

bool IsLink(mlds::OperandKind kind);
/// True for the links that lead to an instruction which the interpreter executes.
bool IsExecuted(mlds::OperandKind kind);
/// True for instructions that hold a number for others.
bool IsConstant(const Node& node);
/// The place of an operand, or of its instruction.
Place PlaceOf(const Node& node, std::size_t operand);

}  // namespace mlds_testasm

#endif
