// What letters sound like beside others.
#include "letterrules.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "letters.h"
#include "mlds/testasm/plexaschema.h"
#include "require.h"
#include "rulestext.h"

namespace transcribe {

namespace {

mlds_testasm::Assembly Assemble(Tiers& tiers, CVarList& variables, CSyncMark** ppBegin,
                                CSyncMark** ppEnd, const RulesText& rules) {
    variables.AddSyncMarkPtr("begin", ppBegin);
    variables.AddSyncMarkPtr("end", ppEnd);
    const mlds_testasm::Assembler assembler(mlds_testasm::SchemaOf(tiers.plexa, &variables));
    mlds_testasm::Assembly assembly = assembler.Assemble(rules.text, rules.file);
    if (!assembly.ok()) throw RulesError(assembly.diagnostics().Text());
    return assembly;
}

// Why the library refused a text, as far as the text shows it.
std::string ReasonOfRefusal(const std::string& text) {
    if (std::ranges::count(text, '\'') % 2 != 0) return "a quote is not closed";
    if (std::ranges::count(text, '<') > std::ranges::count(text, '>')) {
        return "a list is not closed";
    }
    return "it is not in the notation that fills streams";
}

// What is wrong with the phones of a rule; empty if nothing is. Only the library knows what it
// makes of a text, so the text is tried out, in tiers that are empty before and after.
std::string FaultOfPhones(Tiers& tiers, const std::string& phones) {
    CSyncMark* pLeft = tiers.plexa.CreateSyncMark(tiers.pPhone);
    CSyncMark* pRight = tiers.plexa.CreateSyncMark(tiers.pPhone);
    Require(tiers.pPhone->InsertStreamObj(pLeft, tiers.pPhone->pGetFirstStreamObj(), nullptr) &&
                tiers.pPhone->InsertStreamObj(pRight, pLeft, nullptr),
            "InsertStreamObj");
    std::string fault;
    if (!tiers.plexa.InsertString(tiers.pPhone, phones.c_str(), pLeft, pRight)) {
        fault = ReasonOfRefusal(phones);
    } else {
        int number = 0;
        for (const Interval& interval : Intervals(pLeft, pRight)) {
            if (interval.pToken == nullptr) continue;
            ++number;
            const bool bKnown = interval.pToken->GetStream() == tiers.pPhone &&
                                interval.pToken->GetFieldValueIndex(0) >= 0;
            if (!bKnown) fault = "phone " + std::to_string(number) + " of it is not declared";
            if (!bKnown) break;
        }
    }
    tiers.plexa.CPlexaReset();
    return fault;
}

}  // namespace

RulesText OwnRules() {
    return {kRulesFile, kRulesText};
}

RulesText RulesFromFile(const std::string& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!(text << file.rdbuf()) && errno != 0)
        throw std::runtime_error(path + ": " + std::strerror(errno));
    return {path, text.str()};
}

std::string NamesForRules() {
    Tiers tiers;
    CVarList variables(&tiers.plexa);
    CSyncMark* pBegin = nullptr;
    CSyncMark* pEnd = nullptr;
    return WriteSchema(Assemble(tiers, variables, &pBegin, &pEnd, OwnRules()).schema());
}

LetterRules::LetterRules(Tiers& tiers, const RulesText& rules, std::ostream* pTrace)
    : m_tiers(tiers),
      m_file(rules.file),
      m_variables(&tiers.plexa),
      m_assembly(Assemble(tiers, m_variables, &m_pBegin, &m_pEnd, rules)),
      m_trace(tiers, m_assembly, m_file, m_variables, pTrace),
      m_bTraced(pTrace != nullptr) {
    ReadPhones();
    if (m_bTraced) tiers.plexa.SetTestObserver(&m_trace);
}

// Phones stand behind the arrow in a rule's name. They are looked at now, and not where a letter
// needs them for the first time: a rule that is seldom used may be as wrong as any other.
void LetterRules::ReadPhones() {
    constexpr std::string_view kArrow = " -> ";
    mlds_testasm::Diagnostics faults(m_file);
    for (const mlds_testasm::ImageTest& test : m_assembly.tests()) {
        const std::string rule = "rule \"" + mlds_testasm::Shortened(test.name) + '"';
        const mlds_testasm::Place place = m_assembly.info(test.base).place;
        const std::size_t arrow = test.name.find(kArrow);
        if (arrow == std::string::npos) {
            faults.Error(place, "expected ' -> ' and phones, found none in " + rule);
            continue;
        }
        const std::string phones = test.name.substr(arrow + kArrow.size());
        const std::string fault = FaultOfPhones(m_tiers, phones);
        if (!fault.empty()) {
            faults.Error(place, "expected phones, found \"" + mlds_testasm::Shortened(phones) +
                                    "\" in " + rule + ": " + fault);
        }
        m_rules.push_back({test.name, phones, test.base});
    }
    if (faults.errors() > 0) throw RulesError(faults.Text());
}

Sound LetterRules::SoundOf(const Interval& letter) {
    m_pBegin = letter.pLeft;
    m_pEnd = nullptr;
    if (m_bTraced) m_trace.BeginLetter(m_pBegin);
    for (const Rule& rule : m_rules) {
        if (m_pView != nullptr) m_pView->Poll();
        if (m_tiers.plexa.Test(rule.name.c_str(), m_assembly.instructions(), rule.base)) {
            m_lastRule = rule.name;
            // Otherwise the letter would be looked at again and again, or the rest left out.
            if (m_pEnd == nullptr || !m_pEnd->RightOf(letter.pLeft)) {
                const int line = m_assembly.info(rule.base).place.line;
                throw RulesError(m_file + ':' + std::to_string(line) + ": error: rule \"" +
                                 mlds_testasm::Shortened(rule.name) +
                                 "\" holds, but has not bound ^end behind the letter\n");
            }
            return {rule.phones, m_pEnd};
        }
    }
    m_lastRule = "no rule";
    const char* phones = PhonesOf(*letter.pToken->GetNameField());
    if (m_bTraced) m_trace.NoRule(phones);
    return {phones, letter.pRight};
}

}  // namespace transcribe
