// The assembler for rule tests: text in, the instructions that CPlexa::Test runs out.
//
//     #include "mlds/testasm/plexaschema.h"
//     #include "mlds/testasm/testasm.h"
//
//     mlds_testasm::Assembler assembler(mlds_testasm::SchemaOf(plexa, &variables));
//     mlds_testasm::Assembly rules = assembler.Assemble(text, "rules.mta");
//     if (!rules.ok()) std::cerr << rules.diagnostics().Text();
//     const int base = rules.base("c_before_e");       // once
//     plexa.Test("c_before_e", rules.instructions(), base);
//     rules.info(base + step.index)                    // in an observer: what runs, and its line
//
// The language is described in docs/testasm.md. The parts underneath: schema.h (names), model.h
// (the program as a graph), text.h (text to model and back), validate.h, image.h (model to bytes
// and back), file.h (bytes in a file).
#ifndef MLDS_TESTASM_TESTASM_H
#define MLDS_TESTASM_TESTASM_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mlds/testasm/diagnostics.h"
#include "mlds/testasm/image.h"
#include "mlds/testasm/model.h"
#include "mlds/testasm/schema.h"

namespace mlds_testasm {

/// What is known about one instruction, beside its bytes.
struct InstructionInfo {
    std::string test;   ///< the test it belongs to
    int index = 0;      ///< in that test; 0 is its header
    Place place;        ///< of the instruction, or of the operand that it was made for
    std::string label;  ///< empty if it has none
    std::string text;   ///< as in listings, "Eq %inp.name %inp.name:'c'"
};

/// The outcome of an assembly. If there were errors it has no instructions and no tests. Movable;
/// the instructions stay where they are as long as it or what it was moved to lives.
class Assembly {
public:
    bool ok() const { return m_diagnostics.errors() == 0; }
    /// Errors, and warnings.
    const Diagnostics& diagnostics() const { return m_diagnostics; }

    /// All tests' instructions, for CPlexa::Test.
    unsigned char const (*instructions() const)[5] { return m_pInstructions.get(); }
    int size() const { return static_cast<int>(m_info.size()); }
    /// The index of a test's header; -1 if there is no such test.
    int base(std::string_view test) const;
    /// The tests with their names and bases, in the order of the text.
    const std::vector<ImageTest>& tests() const { return m_image.tests; }
    /// By index in instructions(). Throws std::out_of_range.
    const InstructionInfo& info(int index) const { return m_info.at(static_cast<size_t>(index)); }

    const Image& image() const { return m_image; }
    const Program& program() const { return m_program; }
    /// What the text was read with: the assembler's schema and the text's own declarations.
    const Schema& schema() const { return m_schema; }

private:
    friend class Assembler;

    Assembly(Schema schema, std::string file)
        : m_schema(std::move(schema)), m_diagnostics(std::move(file)) {}

    Schema m_schema;
    Diagnostics m_diagnostics;
    Program m_program;
    Image m_image;
    std::unique_ptr<unsigned char[][5]> m_pInstructions;
    std::vector<InstructionInfo> m_info;
};

class Assembler {
public:
    /// Without streams in the schema the text declares them, likewise with variables.
    explicit Assembler(Schema schema = {}) : m_schema(std::move(schema)) {}

    /// `file` is what the diagnostics call the text.
    Assembly Assemble(std::string_view text, std::string file) const;

private:
    Schema m_schema;
};

/// The instructions with their indices, bytes and texts, one a line.
std::string Listing(const Assembly& assembly);

}  // namespace mlds_testasm

#endif
