// Streams: text and counts of a stretch.
#include <cstring>
#include <new>

#include "mlds/stream.h"
#include "stream/absence.h"
#include "stream/ordernumbering.h"
#include "stream/textbuffer.h"

using mlds::Internals;

namespace {

// A bound of a count: an object that is or was in a chain of the container; a token only of this
// stream.
bool IsBound(CStreamObj* p, CStream* pStream) {
    return Internals::HasPlace(p) && mlds::BelongsTo(Internals::PlexaOf(pStream), p) &&
           (Internals::IsSyncMark(p) || Internals::StreamOf(p) == pStream);
}

// Replaces a given bound by its counterpart in the stream.
bool ProjectBound(CSyncMark*& pBound, CStream* pStream) {
    if (pBound == nullptr) return true;
    if (!Internals::IsSyncMark(pBound)) return false;
    if (!mlds::BelongsTo(Internals::PlexaOf(pStream), pBound)) return false;
    pBound = Internals::CounterpartOrSelf(pBound, pStream);
    return pBound != nullptr;
}

}  // namespace

char* CStream::GetStr(CSyncMark* from, CSyncMark* to, bool bWithSyncMarks) {
    if (!m_bOwner) return Owner()->GetStr(from, to, bWithSyncMarks);
    if (m_pText == nullptr) return m_szSyncMark + 1;  // the container is gone: nothing
    m_pText[0] = '\0';
    CSyncMark* pFrom = from != nullptr ? from : m_pFirst;
    CSyncMark* pTo = to != nullptr ? to : m_pLast;
    if (!ProjectBound(pFrom, this) || !ProjectBound(pTo, this)) return m_pText;
    if (!Internals::HasPlace(pFrom)) return m_pText;
    std::size_t length = 0;
    for (CStreamObj* p = pFrom; p != nullptr; p = mlds::StepFrom(p, true)) {
        const char* item = "";
        if (Internals::IsToken(p)) {
            item = static_cast<CToken*>(p)->GetNameField();
            if (item == nullptr) item = "UNKNOWN";
        } else if (bWithSyncMarks) {
            item = m_szSyncMark;
        }
        const std::size_t itemLength = std::strlen(item);
        if (!GrowText(length, length + itemLength)) break;
        std::memcpy(m_pText + length, item, itemLength + 1);
        length += itemLength;
        if (p == pTo) break;
    }
    return m_pText;
}

// Makes room for a text of `needed` characters, keeping the first `length`.
bool CStream::GrowText(std::size_t length, std::size_t needed) {
    const auto capacity = static_cast<std::size_t>(m_nTextCapacity);
    if (needed < capacity) return true;
    const std::size_t steps = (needed - capacity) / mlds::kTextStep + 1;
    const std::size_t grown = capacity + steps * mlds::kTextStep;
    if (grown > 0x7FFFFFFF) return false;
    auto* pGrown = new (std::nothrow) char[grown];
    if (pGrown == nullptr) return false;
    std::memcpy(pGrown, m_pText, length + 1);
    delete[] m_pText;
    m_pText = pGrown;
    m_nTextCapacity = static_cast<int>(grown);
    return true;
}

int CStream::GetNumTokens(CSyncMark* from, CSyncMark* to, bool bProject) {
    if (bProject && (!ProjectBound(from, this) || !ProjectBound(to, this))) return -1;
    if (from != nullptr && !IsBound(from, this)) return -1;
    if (to != nullptr && !IsBound(to, this)) return -1;
    if (from == nullptr && to == nullptr) return m_nTokens;
    CStreamObj* pFrom = from != nullptr ? from : m_pFirst;
    CStreamObj* pTo = to != nullptr ? to : m_pLast;
    if (!pFrom->LeftOf(pTo)) return 0;
    int n = 0;
    for (CStreamObj* p = pFrom; p != nullptr && p != pTo; p = mlds::StepFrom(p, true)) {
        if (Internals::IsToken(p)) ++n;
    }
    return n;
}

int CStream::GetNumSyncMarks(CSyncMark* from, CSyncMark* to) {
    if (from != nullptr && !IsBound(from, this)) return -1;
    if (to != nullptr && !IsBound(to, this)) return -1;
    if (from == nullptr && to == nullptr) return m_nSyncMarks;
    CStreamObj* pFrom = from == nullptr || from == m_pFirst ? Internals::Next(m_pFirst) : from;
    CStreamObj* pTo = to == nullptr || to == m_pLast ? Internals::Prev(m_pLast) : to;
    // The closing bound counts as one, whatever it is.
    int n = 1;
    for (CStreamObj* p = pFrom; p != pTo; p = mlds::StepFrom(p, true)) {
        if (p == nullptr) return -1;  // the bounds were not in order
        if (Internals::IsSyncMark(p)) ++n;
    }
    return n;
}
