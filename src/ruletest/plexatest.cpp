// The interpreter of rule tests. It does not evaluate anything yet.
#include "mlds/plexatest.h"

CPlexaTest::CPlexaTest(CPlexa* pPlexa)
    : m_pPlexa(pPlexa),
      m_handlers{},
      m_pVarList(nullptr),
      m_pProgram(nullptr),
      m_nBase(0),
      m_pAdvanceMark(nullptr) {}

bool CPlexaTest::Test(const char*, unsigned char const (*const)[5], int) {
    return false;
}

CSyncMark* CPlexaTest::getSyncMarkItsOKtoAdvanceFrom() {
    return m_pAdvanceMark;
}
