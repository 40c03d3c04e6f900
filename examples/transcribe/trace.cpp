// What people debug rules with.
#include "trace.h"

#include <ostream>

#include "latin1.h"

namespace transcribe {

void Trace::BeginLetter(CSyncMark* pBegin) {
    m_pWordBegin = EdgeOfWord(pBegin, sdLeft);
    m_pWordEnd = EdgeOfWord(pBegin->GetNextSyncMark(), sdRight);
    int number = 1;
    for (CSyncMark* p = pBegin; p != m_pWordBegin; p = p->GetPrevSyncMark()) ++number;
    *m_pOut << "letter " << number << ' ' << ToUtf8(pBegin->GetNextToken()->GetNameField()) << ", "
            << Place(pBegin) << '\n';
}

void Trace::NoRule(const char* phones) {
    *m_pOut << "  no rule, by itself -> " << phones << '\n';
}

void Trace::BeforeTest(const char* name, int base) {
    *m_pOut << "  " << name;
    m_base = base;
    m_depth = 0;
    m_innermost.reset();
    m_failure.reset();
}

void Trace::AfterTest(bool bHolds) {
    *m_pOut << "\n    " << (bHolds ? "holds" : "fails");
    if (!bHolds && m_failure) {
        const mlds_testasm::InstructionInfo& info = m_assembly.info(m_failure->instruction);
        *m_pOut << " at " << m_failure->place << " in " << m_file << ':' << info.place.line << ' '
                << info.label << ": " << info.text;
    }
    for (int i = 0; bHolds && i < m_variables.GetNumVars(); ++i) {
        if (!m_variables.IsDirty(i)) continue;
        *m_pOut << ", ^" << m_variables.GetVarName(i) << " is " << Place(*m_variables.GetVarPtr(i));
    }
    *m_pOut << '\n';
}

void Trace::BeforeInstruction(const CPlexaTestStep&) {
    ++m_depth;
    m_innermost.reset();
}

// An operator fails after its operand has: the operand tells more. Values, which neither match nor
// fail, are the instructions without labels.
void Trace::AfterInstruction(const CPlexaTestStep& step, PTestFuncReturnType result) {
    --m_depth;
    const int instruction = m_base + step.index;
    if (m_assembly.info(instruction).label.empty()) return;
    if (result.truth) {
        m_innermost.reset();
    } else if (!m_innermost) {
        m_innermost = Failure{instruction, Place(step.position)};
    }
    if (m_depth == 0 && !m_failure) m_failure = m_innermost;
}

CSyncMark* Trace::EdgeOfWord(CSyncMark* pMark, ScanDirectionType direction) const {
    while (pMark->GetCorrespondingSyncMark(m_tiers.pWord) == nullptr) {
        pMark = direction == sdLeft ? pMark->GetPrevSyncMark() : pMark->GetNextSyncMark();
    }
    return pMark;
}

// The word, with a bar at the position.
std::string Trace::Place(CStreamObj* pPosition) const {
    std::string text;
    for (CSyncMark* p = m_pWordBegin;; p = p->GetNextSyncMark()) {
        if (p == pPosition) text += '|';
        if (p == m_pWordEnd) return ToUtf8(text);
        text += p->GetNextToken()->GetNameField();
    }
}

}  // namespace transcribe
