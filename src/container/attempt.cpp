// Refusals: noting them, and saying what they were.
#include "container/attempt.h"

#include <algorithm>
#include <climits>
#include <cstdio>

#include "mlds/okulog.h"

namespace mlds {

Attempt::Attempt(CPlexa* pPlexa, const char* signature, int line)
    : m_pPlexa(pPlexa), m_szSignature(signature), m_nLine(line) {
    if (m_pPlexa->m_nAttempts++ == 0) m_pPlexa->m_szRefusal = nullptr;
}

Attempt::~Attempt() {
    const bool bOutermost = --m_pPlexa->m_nAttempts == 0;
    if (!bOutermost || m_pPlexa->m_szRefusal == nullptr) return;
    if (m_szSignature == nullptr || okuLog.m_nLevel < 4) return;
    okuLog.logDebug("mlds", m_szSignature, "mlds", m_nLine, 1, "%s", m_pPlexa->LastError());
}

bool Attempt::Refuse(const char* reason, std::string_view part) {
    return RefuseAt(-1, reason, part);
}

// A reason that an inner call gave is the better one.
bool Attempt::RefuseAt(std::ptrdiff_t offset, const char* reason, std::string_view part) {
    if (m_pPlexa->m_szRefusal == nullptr) {
        m_pPlexa->m_szRefusal = reason;
        m_pPlexa->m_nRefusedAt = -1;
        const std::size_t n =
            part.copy(m_pPlexa->m_szRefusedPart, sizeof CPlexa::m_szRefusedPart - 1);
        m_pPlexa->m_szRefusedPart[n] = '\0';
    }
    if (m_pPlexa->m_nRefusedAt < 0) {
        m_pPlexa->m_nRefusedAt =
            static_cast<int>(std::clamp<std::ptrdiff_t>(offset, -1, INT_MAX - 1));
    }
    return false;
}

void Attempt::ShiftBy(std::ptrdiff_t offset) {
    if (m_pPlexa->m_szRefusal == nullptr || m_pPlexa->m_nRefusedAt < 0) return;
    m_pPlexa->m_nRefusedAt = static_cast<int>(
        std::clamp<std::ptrdiff_t>(m_pPlexa->m_nRefusedAt + offset, 0, INT_MAX - 1));
}

}  // namespace mlds

const char* CPlexa::LastError() {
    if (m_szRefusal == nullptr) return "";
    char* p = m_szLastError;
    std::size_t room = sizeof m_szLastError;
    if (m_nRefusedAt >= 0) {
        const int n = std::snprintf(p, room, "character %d: ", m_nRefusedAt + 1);
        p += n;
        room -= static_cast<std::size_t>(n);
    }
    // The reasons are ours, and hold no more than one %s.
    std::string_view reason = m_szRefusal;
    const std::size_t at = reason.find("%s");
    if (at == std::string_view::npos) {
        std::snprintf(p, room, "%s", m_szRefusal);
    } else {
        std::snprintf(p, room, "%.*s%s%s", static_cast<int>(at), m_szRefusal, m_szRefusedPart,
                      m_szRefusal + at + 2);
    }
    return m_szLastError;
}
