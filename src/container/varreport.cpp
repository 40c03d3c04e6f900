// Reports of variables to the viewer.
#include "internals.h"
#include "report/report.h"

using mlds::Internals;

void CVarList::ReportVar(int code, int i) {
    if (m_pPlexa != nullptr) mlds::ReportVariable(m_pPlexa, code, this, i);
}

void CVarList::SendOutThisVarList(int code) {
    if (m_pPlexa == nullptr || !Internals::HasViewer(m_pPlexa)) return;
    const bool bDelayHere = !Internals::IsDelayed(m_pPlexa);
    if (bDelayHere) m_pPlexa->DelayMessageDisplay(true);
    for (int i = 0; i < m_nVars; ++i) ReportVar(code, i);
    if (bDelayHere) m_pPlexa->DelayMessageDisplay(false);
}
