// What letters sound like beside others.
#include "letterrules.h"

#include <stdexcept>

#include "letters.h"
#include "mlds/testasm/plexaschema.h"
#include "rulestext.h"

namespace transcribe {

namespace {

mlds_testasm::Assembly Assemble(Tiers& tiers, CVarList& variables, CSyncMark** ppBegin,
                                CSyncMark** ppEnd) {
    variables.AddSyncMarkPtr("begin", ppBegin);
    variables.AddSyncMarkPtr("end", ppEnd);
    const mlds_testasm::Assembler assembler(mlds_testasm::SchemaOf(tiers.plexa, &variables));
    mlds_testasm::Assembly assembly = assembler.Assemble(kRulesText, kRulesFile);
    if (!assembly.ok()) throw std::runtime_error(assembly.diagnostics().Text());
    return assembly;
}

}  // namespace

LetterRules::LetterRules(Tiers& tiers, std::ostream* pTrace)
    : m_tiers(tiers),
      m_variables(&tiers.plexa),
      m_assembly(Assemble(tiers, m_variables, &m_pBegin, &m_pEnd)),
      m_trace(tiers, m_assembly, m_variables, pTrace),
      m_bTraced(pTrace != nullptr) {
    constexpr std::string_view kArrow = " -> ";
    for (const mlds_testasm::ImageTest& test : m_assembly.tests()) {
        const std::size_t arrow = test.name.find(kArrow);
        if (arrow == std::string::npos) throw std::runtime_error("no phones in rule " + test.name);
        m_rules.push_back({test.name, test.name.substr(arrow + kArrow.size()), test.base});
    }
    if (m_bTraced) tiers.plexa.SetTestObserver(&m_trace);
}

Sound LetterRules::SoundOf(const Interval& letter) {
    m_pBegin = letter.pLeft;
    m_pEnd = nullptr;
    if (m_bTraced) m_trace.BeginLetter(m_pBegin);
    for (const Rule& rule : m_rules) {
        if (m_pView != nullptr) m_pView->Poll();
        if (m_tiers.plexa.Test(rule.name.c_str(), m_assembly.instructions(), rule.base)) {
            m_lastRule = rule.name;
            return {rule.phones, m_pEnd};
        }
    }
    m_lastRule = "no rule";
    const char* phones = PhonesOf(*letter.pToken->GetNameField());
    if (m_bTraced) m_trace.NoRule(phones);
    return {phones, letter.pRight};
}

}  // namespace transcribe
