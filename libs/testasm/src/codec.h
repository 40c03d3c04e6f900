// What lowering and lifting are made of: one instruction as five bytes, and names for numbers.
#ifndef MLDS_TESTASM_CODEC_H
#define MLDS_TESTASM_CODEC_H

#include <string>

#include "mlds/testasm/model.h"

namespace mlds_testasm {

/// The number of bytes that an operand takes; 0 for one that is not there.
int WidthOf(mlds::OperandKind kind);

/// Operands with indices of instructions in place of nodes.
std::array<int, 4> PlacedOperands(const Node& node, const std::vector<int>& indexOf);

Bytes Encode(const Node& node, const std::vector<int>& indexOf);

/// An instruction of a test of `size` instructions. If Encode would not make the same bytes of it,
/// `pWhy` gets the reason, and the bytes are kept as they are; a header loses the links that lead
/// out of the test.
Node Decode(const Bytes& bytes, bool bHeader, int size, std::string* pWhy);

/// Names the numbers of a lifted test, as far as their use shows what they are. A field is taken
/// for one of the stream that the test is evaluated in at that point; where the position was moved
/// into another stream, as RightContext does it, this names another field of the same index. A
/// number with several uses stays one.
void NameNumbers(Test& test);

}  // namespace mlds_testasm

#endif
