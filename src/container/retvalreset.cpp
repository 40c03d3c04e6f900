// The guard of tentatively advanced sync mark pointers.
#include "mlds/varlist.h"

CRetValResetObj::CRetValResetObj(CSyncMark** pp)
    : m_bResult(true), m_ppTarget(pp), m_pSaved(pp != nullptr ? *pp : nullptr) {}

CRetValResetObj::~CRetValResetObj() {
    if (!m_bResult && m_ppTarget != nullptr) *m_ppTarget = m_pSaved;
}
