// Running the tests of a model made by hand.
#include "modelmaker.h"

namespace mlds_test {

Lowering::Lowering(const mlds::rules::Model& model,
                   const std::vector<mlds::rules::Variable>& variables)
    : marks(variables.size()),
      m_schema(SchemaOf(model, variables)),
      m_variables(variables),
      m_lowered(Lower(model, m_sources, m_diagnostics)) {}

std::string Lowering::Faults() const {
    mlds_testasm::Diagnostics diagnostics("rules");
    Validate(m_lowered.program, m_schema, diagnostics);
    return diagnostics.Text();
}

std::string Lowering::Listing(int test) const {
    const auto i = static_cast<std::size_t>(test);
    return mlds_testasm::TestWriter(m_lowered.program.tests.at(i), m_schema).Text();
}

bool Lowering::Run(CPlexa& plexa, int test, CSyncMark* pAt) {
    CVarList variables(&plexa);
    variables.AddSyncMarkPtr("at", &pAt);
    variables.AddSyncMarkPtr("end", &pEnd);
    // Without a token of the host's, what is captured ends with the test.
    CToken* pNoToken = nullptr;
    for (std::size_t i = 0; i < m_variables.size(); ++i) {
        marks[i] = nullptr;
        if (m_variables[i].bToken) {
            variables.AddTokenPtr(m_variables[i].name.c_str(), &pNoToken);
        } else {
            variables.AddSyncMarkPtr(m_variables[i].name.c_str(), &marks[i]);
        }
    }
    const mlds::rules::LoweredTest& lowered = m_lowered.tests.at(static_cast<std::size_t>(test));
    return plexa.Test(lowered.name.c_str(), m_lowered.code.get(), lowered.base);
}

bool Lowering::Apply(CPlexa& plexa, int block, int rule, CSyncMark* pAt) {
    const mlds::rules::LoweredRule& tests =
        m_lowered.rules.at(static_cast<std::size_t>(block)).at(static_cast<std::size_t>(rule));
    bool bHolds = false;
    for (std::size_t i = 0; i < tests.where.size() && !bHolds; ++i) {
        pEnd = nullptr;
        bHolds = Run(plexa, tests.where[i], pAt);
    }
    CSyncMark* const pFound = pEnd;
    const std::vector<CSyncMark*> found = marks;
    for (std::size_t i = 0; i < tests.except.size() && bHolds; ++i) {
        pEnd = pFound;
        bHolds = !Run(plexa, tests.except[i], pAt);
    }
    marks = found;
    return bHolds;
}

}  // namespace mlds_test
