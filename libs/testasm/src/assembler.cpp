// The assembler: from a text to instructions, and what is known about each.
#include <algorithm>
#include <cstdio>

#include "mlds/testasm/testasm.h"
#include "mlds/testasm/text.h"
#include "mlds/testasm/validate.h"

namespace mlds_testasm {

int Assembly::base(std::string_view test) const {
    for (const ImageTest& known : m_image.tests) {
        if (known.name == test) return known.base;
    }
    return -1;
}

Assembly Assembler::Assemble(std::string_view text, std::string file) const {
    Assembly result(m_schema, std::move(file));
    Diagnostics& diagnostics = result.m_diagnostics;
    result.m_program = ReadProgram(text, result.m_schema, diagnostics);
    Validate(result.m_program, result.m_schema, diagnostics);
    result.m_image = Lower(result.m_program, diagnostics);
    if (!result.ok()) {
        result.m_image = {};
        return result;
    }
    const std::vector<Bytes>& code = result.m_image.code;
    result.m_pInstructions = std::make_unique<unsigned char[][5]>(code.size());
    for (std::size_t i = 0; i < code.size(); ++i) {
        std::copy(code[i].begin(), code[i].end(), result.m_pInstructions[i]);
    }
    for (std::size_t i = 0; i < result.m_program.tests.size(); ++i) {
        const Test& test = result.m_program.tests[i];
        const TestWriter writer(test, result.m_schema);
        int index = 0;
        for (const NodeId id : result.m_image.tests[i].order) {
            const Node& node = test.At(id);
            result.m_info.push_back(
                {test.name, index++, node.place, node.label, writer.Instruction(id)});
        }
    }
    return result;
}

std::string Listing(const Assembly& assembly) {
    std::string text;
    for (int i = 0; i < assembly.size(); ++i) {
        const InstructionInfo& info = assembly.info(i);
        const unsigned char* bytes = assembly.instructions()[i];
        char row[64];
        std::snprintf(row, sizeof row, "%5d %4d  %02x %02x %02x %02x %02x  ", i, info.index,
                      bytes[0], bytes[1], bytes[2], bytes[3], bytes[4]);
        text += row + (info.label.empty() ? "" : info.label + ": ") + info.text + "\n";
    }
    return text;
}

}  // namespace mlds_testasm
