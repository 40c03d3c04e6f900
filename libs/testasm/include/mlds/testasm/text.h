// The text form of test programs, see docs/testasm.md.
#ifndef MLDS_TESTASM_TEXT_H
#define MLDS_TESTASM_TEXT_H

#include <string>
#include <string_view>

#include "mlds/testasm/model.h"
#include "mlds/testasm/schema.h"

namespace mlds_testasm {

/// Reads the tests of a text. Declarations before the first test go into the schema, as long as it
/// has none of their kind from elsewhere.
Program ReadProgram(std::string_view text, Schema& schema, Diagnostics& diagnostics);

/// The tests as a text that reads back as the same instructions in the same places.
std::string WriteProgram(const Program& program, const Schema& schema);

/// Instructions of one test as they stand in its text.
class TestWriter {
public:
    TestWriter(const Test& test, const Schema& schema);

    /// "Adj vowel coda then end". For a header, "test NAME %stream" with its links.
    std::string Instruction(NodeId id) const;
    const std::string& Label(NodeId id) const { return m_labels[static_cast<std::size_t>(id)]; }
    /// The whole test.
    std::string Text() const;

private:
    std::string Header(const char* separator) const;
    std::string Operand(const Node& node, std::size_t i) const;
    std::string Link(NodeId id) const;
    std::string Constant(const Node& node) const;
    std::string Variable(const Node& node, std::size_t i) const;
    std::string VariableName(int index) const;
    std::string FieldName(int stream, int field) const;

    const Test& m_test;
    const Schema& m_schema;
    std::vector<std::string> m_labels;
};

/// How an instruction is written, "Not pattern [then pattern]".
std::string Syntax(const mlds::OpcodeInfo& info);

/// The opcode table as a Markdown table.
std::string OpcodeTable();

}  // namespace mlds_testasm

#endif
