// Text to model: the operands of instructions.
#ifndef MLDS_TESTASM_OPERANDS_H
#define MLDS_TESTASM_OPERANDS_H

#include <map>
#include <memory>
#include <span>

#include "mlds/testasm/model.h"
#include "mlds/testasm/schema.h"
#include "scan.h"

namespace mlds_testasm {

/// Reads operands into the nodes of one test. Labels are taken as they come and resolved at the
/// end of the test, as are texts that only the other side of a comparison explains.
class Operands {
public:
    Operands(Test& test, const Schema& schema, Diagnostics& diagnostics)
        : m_test(test), m_schema(schema), m_diagnostics(diagnostics) {}

    /// Notes the label in front of node `id`, without leaving it.
    void ReadLabel(Line& line, NodeId id);
    /// All operands, to the end of the line.
    void ReadAll(Line& line, NodeId id);
    /// One operand.
    bool Read(Line& line, NodeId id, std::size_t i);
    void ReadBytes(Line& line, Bytes& bytes, std::size_t count);
    bool IsPending(NodeId id, std::size_t i) const;
    void Resolve();
    /// True once a name was met although nothing declares names of its kind: then all names are
    /// unknown, and saying it once is enough.
    bool bUndeclared() const { return m_bUndeclared; }

private:
    struct Pending {
        NodeId node;
        std::size_t operand;
        std::string text;
        bool bLabel;  // else a value
    };

    int KeywordOperand(const Line& line, const Node& node) const;
    bool ReadKeyword(Line& line, NodeId id, std::size_t i);
    bool ReadLink(Line& line, NodeId id, std::size_t i);
    bool ReadValue(Line& line, NodeId id, std::size_t i);
    bool ReadInteger(Line& line, int* pNumber, Naming* pNaming);
    bool ReadNumber(Line& line, const char* what, int low, int high, int* pNumber);
    bool ReadStream(Line& line, int* pStream);
    bool ReadField(Line& line, int* pField, int* pStream);
    bool ExpectedDeclared(Line& line, bool bAny, const char* one, const char* all);
    bool ReadVariable(Line& line, bool bMark, bool bToken, int* pVariable);
    void ResolveValue(const Pending& pending);

    Test& m_test;
    const Schema& m_schema;
    Diagnostics& m_diagnostics;
    std::map<std::string, NodeId> m_labels;
    std::vector<Pending> m_pending;
    bool m_bUndeclared = false;
};

}  // namespace mlds_testasm

#endif
