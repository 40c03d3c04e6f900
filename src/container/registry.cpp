// The container's streams: adding, finding, ranking.
#include <cstring>

#include "internals.h"

using mlds::Internals;

int CPlexa::AddStream(const char* name) {
    // A copy of a container could not give its stream to the others.
    if (name == nullptr || m_nStreams == kMaxStreams || m_pHome != this) return -1;
    CStream* pAdded = Internals::NewStream(this, m_nStreams);
    if (pAdded == nullptr) return -1;
    m_pStreams[m_nStreams] = pAdded;
    pAdded->SetStreamName(name);
    return m_nStreams++;
}

CStream* CPlexa::pStream(int index) {
    return index >= 0 && index <= kMaxStreams ? m_pStreams[index] : nullptr;
}

CStream* CPlexa::pStream(const char* name) {
    if (name == nullptr) return nullptr;
    for (int i = 0; i < m_nStreams; ++i) {
        if (std::strcmp(Internals::Name(m_pStreams[i]), name) == 0) return m_pStreams[i];
    }
    return nullptr;
}

int CPlexa::GetNumStreams() {
    return m_nStreams;
}

CSyncMark* CPlexa::CreateSyncMark(CStream* pFor) {
    return pFor != nullptr ? new CSyncMark(pFor) : nullptr;
}

// By count, descending; streams of equal counts stay in table order.
void CPlexa::RankPopulatedStreams() {
    m_nRanked = 0;
    for (int i = 0; i < m_nStreams; ++i) {
        const int nSyncMarks = m_pStreams[i]->GetNumSyncMarks();
        if (nSyncMarks <= 2) continue;
        int at = m_nRanked++;
        for (; at > 0 && m_ranking[at - 1].nSyncMarks < nSyncMarks; --at) {
            m_ranking[at] = m_ranking[at - 1];
        }
        m_ranking[at] = {i, nSyncMarks};
    }
}
