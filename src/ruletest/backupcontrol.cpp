// The guard against repetitions that go round in circles.
#include <algorithm>

#include "mlds/plexatest.h"

CPlexaTestBackupControl::CPlexaTestBackupControl() : m_nPairs(0) {}

void CPlexaTestBackupControl::ResetBackupControl() {
    m_nPairs = 0;
}

void CPlexaTestBackupControl::Push(CSyncMark* pMark, int instruction) {
    if (m_nPairs < kMaxPairs) {
        m_pMarks[m_nPairs] = pMark;
        m_instructions[m_nPairs] = instruction;
    }
    ++m_nPairs;
}

void CPlexaTestBackupControl::Pop() {
    if (m_nPairs > 0) --m_nPairs;
}

bool CPlexaTestBackupControl::CheckLoop(const CSyncMark* pMark, int instruction) {
    for (int i = std::min<int>(m_nPairs, kMaxPairs) - 1; i >= 0; --i) {
        if (m_pMarks[i] == pMark && m_instructions[i] == instruction) return true;
    }
    return false;
}
