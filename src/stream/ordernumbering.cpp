// Order indices: midpoints, and whole-stream numberings that are put off until somebody looks.
#include "stream/ordernumbering.h"

#include <initializer_list>

#include "stream/absence.h"
#include "stream/placeaccess.h"

namespace mlds {

namespace {

constexpr std::uint32_t kLastIndex = 0xFFFFFFFFu;

// n is the number of steps from sentinel to sentinel; ten parts stay free at the right end.
std::uint32_t StepFor(std::uint32_t n) {
    return kLastIndex / (n + 10);
}

std::uint32_t Midpoint(std::uint32_t left, std::uint32_t right) {
    return left + ((right - left) >> 1);
}

}  // namespace

void OrderNumbering::SetLinks(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight) {
    p->m_pNext = pRight;
    p->m_pPrev = pLeft;
    pRight->m_pPrev = p;
    pLeft->m_pNext = p;
}

OrderNumbering::OrderNumbering(CSyncMark* pFirst, CSyncMark* pLast)
    : m_pFirst(pFirst), m_pLast(pLast) {
    pFirst->m_nOrderIndex = 0;
    pLast->m_nOrderIndex = kLastIndex;
    PlaceAccess::Set(pFirst, osLinked | osSentinel);
    PlaceAccess::Set(pLast, osLinked | osSentinel);
    pFirst->m_pNext = pLast;
    pLast->m_pPrev = pFirst;
}

OrderNumbering* OrderNumbering::CommonNumbering(CStreamObj* p, CStreamObj* pLeft,
                                                CStreamObj* pRight, const CStream* pVia) {
    if (Internals::StreamOf(p) != pVia || Internals::StreamOf(pLeft) != pVia ||
        Internals::StreamOf(pRight) != pVia || !IsInOwnChain(pLeft) || !IsInOwnChain(pRight)) {
        return nullptr;
    }
    OrderNumbering* pNumbering = Internals::Numbering(pVia);
    return pNumbering->m_bAtOnce ? nullptr : pNumbering;
}

void OrderNumbering::Link(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight,
                          const CStream* pVia) {
    if (Internals::IsAbsent(p)) [[unlikely]] {
        LeaveDetached(p);
        NoteReturn(p);
    }
    if (OrderNumbering* pNumbering = CommonNumbering(p, pLeft, pRight, pVia)) {
        pNumbering->LinkHere(p, pLeft, pRight);
    } else {
        LinkAcrossStreams(p, pLeft, pRight);
    }
}

void OrderNumbering::LinkHere(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight) {
    const std::uint32_t left = IndexOf(pLeft);
    const std::uint32_t right = IndexOf(pRight);
    SetLinks(p, pLeft, pRight);
    ++m_nLinked;
    PlaceAccess::Set(p, osLinked | osNumbered | osNewer);
    PlaceAccess::SetEpoch(p, m_nEpoch);
    const std::uint32_t middle = Midpoint(left, right);
    if (middle == left || middle == right) {
        NoteNumbering(p);
        return;
    }
    p->m_nOrderIndex = middle;
    if (m_pAnchor != nullptr && middle < m_pAnchor->m_nOrderIndex) ++m_nAnchorRank;
}

// The rank of the object linked last, which the anchor's rank does not take into account yet. Looks
// both ways at once, for the anchor and for the ends.
std::uint32_t OrderNumbering::CountRank(CStreamObj* p) const {
    CStreamObj* pLeft = p;
    CStreamObj* pRight = p;
    for (std::uint32_t steps = 1;; ++steps) {
        pLeft = Internals::Prev(pLeft);
        if (pLeft == m_pFirst) return steps;
        if (pLeft == m_pAnchor) return m_nAnchorRank + steps;
        pRight = Internals::Next(pRight);
        if (pRight == m_pLast) return m_nLinked + 1 - steps;
        if (pRight == m_pAnchor) return m_nAnchorRank + 1 - steps;
    }
}

void OrderNumbering::NoteNumbering(CStreamObj* p) {
    m_nAnchorRank = CountRank(p);
    m_pAnchor = p;
    if (++m_nEpoch == 0) {
        // Epochs of long ago would look current. This happens once in 2^32 numberings.
        RenumberNow();
        return;
    }
    m_bPending = true;
    m_nNumbered = m_nLinked;
    m_nStep = StepFor(m_nLinked + 1);
    Give(p, m_nAnchorRank);
}

void OrderNumbering::Give(CStreamObj* p, std::uint32_t rank) {
    p->m_nOrderIndex = rank * m_nStep;
    PlaceAccess::SetEpoch(p, m_nEpoch);
    PlaceAccess::Set(p, osLinked | osNumbered);
}

// Finds the index of a numbered object from that of a computed one a few steps away, or from an
// end.
bool OrderNumbering::SettleFromNearby(CStreamObj* p) {
    constexpr int kSteps = 8;
    CStreamObj* pLeft = p;
    CStreamObj* pRight = p;
    std::uint32_t nLeft = 0;  // numbered objects passed
    std::uint32_t nRight = 0;
    for (int i = 0; i < kSteps; ++i) {
        pLeft = Internals::Prev(pLeft);
        if (pLeft == m_pFirst) {
            Give(p, nLeft + 1);
            return true;
        }
        if (!IsNewer(pLeft)) {
            ++nLeft;
            if (Internals::Epoch(pLeft) == m_nEpoch) {
                Give(p, pLeft->m_nOrderIndex / m_nStep + nLeft);
                return true;
            }
        }
        pRight = Internals::Next(pRight);
        if (pRight == m_pLast) {
            Give(p, m_nNumbered - nRight);
            return true;
        }
        if (!IsNewer(pRight)) {
            ++nRight;
            if (Internals::Epoch(pRight) == m_nEpoch) {
                Give(p, pRight->m_nOrderIndex / m_nStep - nRight);
                return true;
            }
        }
    }
    return false;
}

void OrderNumbering::Settle() {
    std::uint32_t rank = 0;
    for (CStreamObj* p = Internals::Next(m_pFirst); p != m_pLast; p = Internals::Next(p)) {
        if (IsNewer(p)) continue;
        ++rank;
        if (Internals::Epoch(p) != m_nEpoch) Give(p, rank);
    }
    m_bPending = false;
}

void OrderNumbering::RenumberNow() {
    if (m_bAtOnce) {
        RenumberChain(m_pFirst);
        return;
    }
    m_nStep = StepFor(m_nLinked + 1);
    std::uint32_t rank = 0;
    for (CStreamObj* p = Internals::Next(m_pFirst); p != m_pLast; p = Internals::Next(p)) {
        Give(p, ++rank);
    }
    m_bPending = false;
}

void OrderNumbering::Unlink(CStreamObj* p, bool bGoes) {
    if ((Internals::State(p) & osNumbered) != 0) NumberingOf(p)->Leave(p);
    CStreamObj* pNext = Internals::Next(p);
    CStreamObj* pPrev = Internals::Prev(p);
    if (pPrev != nullptr) pPrev->m_pNext = pNext;
    if (pNext != nullptr) pNext->m_pPrev = pPrev;
    bGoes ? NoteGone(p) : NoteRemoval(p);
}

void OrderNumbering::Detach(CStreamObj* pFirst, CStreamObj* pLast, const CStream* pOrigin) {
    CStreamObj* pLeft = Internals::Prev(pFirst);
    CStreamObj* pRight = Internals::Next(pLast);
    const auto origin = static_cast<std::uint32_t>(Internals::IndexOf(pOrigin));
    OrderNumbering* pNumbering =
        (Internals::State(pFirst) & osNumbered) != 0 ? NumberingOf(pFirst) : nullptr;
    // Once for all, before the first leaves: a walk must not meet objects that have left.
    if (pNumbering != nullptr) pNumbering->SettleNow();
    for (CStreamObj* p = pFirst; p != pRight; p = Internals::Next(p)) {
        if (pNumbering != nullptr) pNumbering->Leave(p);
        NoteCut(p, origin);
    }
    pFirst->m_pPrev = nullptr;
    pLast->m_pNext = nullptr;
    pLeft->m_pNext = pRight;
    pRight->m_pPrev = pLeft;
}

void OrderNumbering::TakeOutOfDetached(CStreamObj* p) {
    JoinLoose(Internals::Prev(p), Internals::Next(p));
    NoteRemoval(p);
}

void OrderNumbering::JoinLoose(CStreamObj* pLeft, CStreamObj* pRight) {
    if (pLeft != nullptr) pLeft->m_pNext = pRight;
    if (pRight != nullptr) pRight->m_pPrev = pLeft;
}

void OrderNumbering::LinkDetached(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight) {
    LeaveDetached(p);
    SetLinks(p, pLeft, pRight);
    CStream* pStream = Internals::StreamOf(p);
    const std::uint32_t left = pLeft->m_nOrderIndex;
    const std::uint32_t right = pRight->m_nOrderIndex;
    const std::uint32_t origin = Internals::Epoch(pLeft);
    NoteCut(p, origin);
    // A stranger in the chain will be one in the stream that the chain goes back to.
    CPlexa* pPlexa = Internals::PlexaOf(pStream);
    if (pPlexa != nullptr && static_cast<std::uint32_t>(Internals::IndexOf(pStream)) != origin) {
        OrderNumbering* pNumbering =
            Internals::Numbering(Internals::Stream(pPlexa, static_cast<int>(origin)));
        if (!pNumbering->m_bAtOnce) pNumbering->NumberAtOnceFromNowOn();
    }
    p->m_nOrderIndex = Midpoint(left, right);
    // An exhausted gap numbers the stream anew as ever, though it does not reach what was cut out.
    if (p->m_nOrderIndex == left || p->m_nOrderIndex == right) {
        Internals::Numbering(pStream)->RenumberNow();
    }
}

void OrderNumbering::Attach(CStreamObj* pFirst, CStreamObj* pLast, CStreamObj* pLeft,
                            CStreamObj* pRight) {
    pLeft->m_pNext = pFirst;
    pFirst->m_pPrev = pLeft;
    pRight->m_pPrev = pLast;
    pLast->m_pNext = pRight;
    std::uint32_t n = 0;
    for (CStreamObj* p = pFirst; p != pRight; p = Internals::Next(p), ++n) {
        NoteReturn(p);
        PlaceAccess::Set(p, osLinked);
    }
    if (!IsInOwnChain(pLeft) || NumberingOf(pLeft)->m_bAtOnce) {
        while (Internals::Prev(pLeft) != nullptr) pLeft = Internals::Prev(pLeft);
        RenumberChain(pLeft);
        return;
    }
    OrderNumbering* pNumbering = NumberingOf(pLeft);
    pNumbering->m_nLinked += n;
    pNumbering->m_pAnchor = nullptr;
    pNumbering->RenumberNow();
}

void OrderNumbering::Leave(CStreamObj* p) {
    if (m_bPending && !IsNewer(p)) Settle();
    --m_nLinked;
    if (p == m_pAnchor) {
        m_pAnchor = nullptr;
    } else if (m_pAnchor != nullptr && p->m_nOrderIndex < m_pAnchor->m_nOrderIndex) {
        --m_nAnchorRank;
    }
}

void OrderNumbering::NumberAtOnceFromNowOn() {
    SettleNow();
    for (CStreamObj* p = Internals::Next(m_pFirst); p != m_pLast; p = Internals::Next(p)) {
        PlaceAccess::Set(p, osLinked);
    }
    m_pAnchor = nullptr;
    m_bAtOnce = true;
}

void OrderNumbering::LinkAcrossStreams(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight) {
    for (CStreamObj* pNeighbour : {pLeft, pRight}) {
        if (IsInOwnChain(pNeighbour) && !NumberingOf(pNeighbour)->m_bAtOnce) {
            NumberingOf(pNeighbour)->NumberAtOnceFromNowOn();
        }
    }
    const std::uint32_t left = IndexOf(pLeft);
    const std::uint32_t right = IndexOf(pRight);
    SetLinks(p, pLeft, pRight);
    PlaceAccess::Set(p, osLinked);
    p->m_nOrderIndex = Midpoint(left, right);
    if (p->m_nOrderIndex != left && p->m_nOrderIndex != right) return;
    CStreamObj* pStart = p;
    while (Internals::Prev(pStart) != nullptr) pStart = Internals::Prev(pStart);
    RenumberChain(pStart);
}

// Numbers the chain that begins with a start sentinel, counting its objects first.
void OrderNumbering::RenumberChain(CStreamObj* pStart) {
    std::uint32_t nSteps = 0;
    for (CStreamObj* p = pStart; Internals::Next(p) != nullptr; p = Internals::Next(p)) ++nSteps;
    const std::uint32_t step = StepFor(nSteps);
    std::uint32_t rank = 0;
    for (CStreamObj* p = Internals::Next(pStart); Internals::Next(p) != nullptr;
         p = Internals::Next(p)) {
        p->m_nOrderIndex = ++rank * step;
    }
}

}  // namespace mlds
