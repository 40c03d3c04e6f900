// Text to model: tests and their lines.
#include <memory>

#include "declarations.h"
#include "mlds/testasm/text.h"
#include "operands.h"
#include "ruletest/opcodes.h"

namespace mlds_testasm {

namespace {

class Reader {
public:
    Reader(Schema& schema, Diagnostics& diagnostics)
        : m_schema(schema),
          m_diagnostics(diagnostics),
          m_bStreamsGiven(!schema.streams.empty()),
          m_bVariablesGiven(!schema.variables.empty()) {}

    Program Read(std::string_view text) {
        int number = 0;
        for (const std::string_view row : SplitLines(text)) {
            Line line(row, ++number, m_diagnostics);
            if (line.AtEnd()) continue;
            if (m_pOperands == nullptr) {
                ReadOutside(line);
            } else {
                ReadInside(line);
            }
            if (m_pOperands != nullptr && m_pOperands->bUndeclared()) return {};
        }
        if (m_pOperands != nullptr) {
            m_diagnostics.Error({number + 1, 1},
                                "expected 'end' of test '" + Shortened(m_test.name) + "'");
            EndTest();
        }
        return std::move(m_program);
    }

private:
    void ReadOutside(Line& line) {
        if (line.IsWord("test")) {
            BeginTest(line);
        } else if (m_program.tests.empty() && IsTakenDeclaration(line)) {
            line.Expected("no declaration, as the host or a schema file gives the names");
        } else if (!m_program.tests.empty() || !ReadDeclaration(line, m_schema, m_diagnostics)) {
            line.Expected(m_program.tests.empty() ? "'test' or a declaration" : "'test'");
        }
    }

    bool IsTakenDeclaration(const Line& line) const {
        if (line.IsWord("variable")) return m_bVariablesGiven;
        return m_bStreamsGiven &&
               (line.IsWord("stream") || line.IsWord("field") || line.IsWord("set"));
    }

    void BeginTest(Line& line) {
        m_test = Test();
        m_test.At(0).place = line.place();
        line.Next();
        m_nErrorsBefore = m_diagnostics.errors();
        m_pOperands = std::make_unique<Operands>(m_test, m_schema, m_diagnostics);
        if (!line.Name("the name of a test", &m_test.name)) return;
        m_test.At(0).places[headerStream] = line.place();
        if (line.AtEnd() || m_pOperands->Read(line, 0, headerStream)) line.ExpectEnd();
    }

    void EndTest() {
        m_pOperands->Resolve();
        m_pOperands = nullptr;
        m_test.bFaulty = m_diagnostics.errors() > m_nErrorsBefore;
        m_program.tests.push_back(std::move(m_test));
    }

    void ReadInside(Line& line) {
        const bool bLabel = line.Peek(1).kind == Lex::colon;
        if (!bLabel && line.IsWord("test")) {
            line.Expected("'end' of test '" + Shortened(m_test.name) + "'");
            EndTest();
            BeginTest(line);
        } else if (!bLabel && line.SkipWord("end")) {
            line.ExpectEnd();
            EndTest();
        } else if (bLabel || !ReadHeaderLink(line)) {
            ReadInstruction(line);
        }
    }

    bool ReadHeaderLink(Line& line) {
        static constexpr const char* kNames[] = {"", "left", "right", "focus"};
        for (std::size_t i = headerLeft; i <= headerFocus; ++i) {
            if (!line.IsWord(kNames[i])) continue;
            if (m_test.header().operands[i] != 0 || m_pOperands->IsPending(0, i)) {
                return line.Expected("one '" + std::string(kNames[i]) + "' in a test"), true;
            }
            line.Next();
            if (m_pOperands->Read(line, 0, i)) line.ExpectEnd();
            return true;
        }
        if (!line.SkipWord("byte0")) return false;
        m_pOperands->ReadBytes(line, m_test.At(0).raw, 1);
        return true;
    }

    void ReadInstruction(Line& line) {
        Node node;
        if (line.Peek(1).kind == Lex::colon) {
            m_pOperands->ReadLabel(line, m_test.size());
            node.label = line.Next().text;
            line.Next();
        }
        node.place = line.place();
        const bool bRaw = line.IsWord("Raw");
        node.pInfo = line.Is(Lex::word) ? FindMnemonic(line.Peek().text) : nullptr;
        if (node.pInfo == nullptr && !bRaw) line.Expected("an instruction");
        const bool bKnown = node.pInfo != nullptr;
        line.Next();
        // An instruction that cannot be read keeps its label.
        const NodeId id = m_test.Add(std::move(node));
        if (bRaw) {
            m_pOperands->ReadBytes(line, m_test.At(id).raw, 5);
        } else if (bKnown) {
            m_pOperands->ReadAll(line, id);
        }
    }

    Schema& m_schema;
    Diagnostics& m_diagnostics;
    const bool m_bStreamsGiven;
    const bool m_bVariablesGiven;
    Program m_program;
    Test m_test;
    std::unique_ptr<Operands> m_pOperands;  // null outside tests
    int m_nErrorsBefore = 0;                // when the test began
};

}  // namespace

Program ReadProgram(std::string_view text, Schema& schema, Diagnostics& diagnostics) {
    return Reader(schema, diagnostics).Read(text);
}

}  // namespace mlds_testasm
