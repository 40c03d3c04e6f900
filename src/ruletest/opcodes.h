// The operand kinds of test instructions, and the opcode table as data.
#ifndef MLDS_RULETEST_OPCODES_H
#define MLDS_RULETEST_OPCODES_H

namespace mlds {

/// What the bytes of an instruction hold.
enum class OperandKind {
    none,         // nothing
    pattern,      // a link to a pattern; must not be 0
    value,        // a link to a value; must not be 0
    stream,       // a link to a value that is a stream's index; must not be 0
    maybe,        // a link to a pattern; may be 0
    maybeStream,  // a link to a value that is a stream's index; may be 0
    next,         // a link to the rest of the sequence; 0 at its end
    limit,        // a link to an instruction whose byte 2 links to a constant, a mark variable; may
                  // be 0
    varLink,      // a link to a constant that is a variable; must not be 0
    tokenByte,    // a token variable, one byte
    markShort,    // a mark variable, two bytes
    tokenShort,   // a token variable, two bytes
    markInt,      // a mark variable, four bytes
    integer,      // a number, four bytes
    field,        // a field's index, four bytes
    selector,     // a field's index, one byte; 255 for the whole token
    direction,    // 1 makes a focus run to the left
    flag          // not 0: yes
};

/// The opcodes by name.
enum class Opcode : int {
#define MLDS_OPCODE(number, name, handler, b1, b2, b3, b4) name = number,
#include "ruletest/opcodes.def"
#undef MLDS_OPCODE
};

/// One line of the table.
struct OpcodeInfo {
    int number;
    const char* name;
    bool bValue;  // gives a number
    OperandKind operands[4];
};

inline constexpr OpcodeInfo kOpcodeTable[] = {
#define MLDS_OPCODE_INFO(number, name, bValue, b1, b2, b3, b4) \
    {number, #name, bValue, {OperandKind::b1, OperandKind::b2, OperandKind::b3, OperandKind::b4}},
#define MLDS_OPCODE(number, name, handler, b1, b2, b3, b4) \
    MLDS_OPCODE_INFO(number, name, false, b1, b2, b3, b4)
#define MLDS_NUMBER(number, name, handler, b1, b2, b3, b4) \
    MLDS_OPCODE_INFO(number, name, true, b1, b2, b3, b4)
#include "ruletest/opcodes.def"
#undef MLDS_OPCODE
#undef MLDS_OPCODE_INFO
};

/// The line of an opcode; null if the opcode stands for nothing.
constexpr const OpcodeInfo* FindOpcode(int number) {
    for (const OpcodeInfo& info : kOpcodeTable) {
        if (info.number == number) return &info;
    }
    return nullptr;
}

}  // namespace mlds

#endif
