// Order indices: midpoints, and whole-stream numberings that are put off until somebody looks.
#include "stream/ordernumbering.h"

#include <initializer_list>

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

void SetLinks(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight) {
    Internals::Next(p) = pRight;
    Internals::Prev(p) = pLeft;
    Internals::Prev(pRight) = p;
    Internals::Next(pLeft) = p;
}

}  // namespace

OrderNumbering::OrderNumbering(CSyncMark* pFirst, CSyncMark* pLast)
    : m_pFirst(pFirst), m_pLast(pLast) {
    Internals::Index(pFirst) = 0;
    Internals::Index(pLast) = kLastIndex;
    Internals::State(pFirst) = osLinked | osSentinel;
    Internals::State(pLast) = osLinked | osSentinel;
    Internals::Next(pFirst) = pLast;
    Internals::Prev(pLast) = pFirst;
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
    m_nLastRank = RankOfNew(pLeft, pRight);
    m_pLastLinked = p;
    Internals::State(p) = osLinked | osNumbered | osNewer;
    Internals::Epoch(p) = m_nEpoch;
    const std::uint32_t middle = Midpoint(left, right);
    if (middle == left || middle == right) {
        NoteNumbering(p);
    } else {
        Internals::Index(p) = middle;
    }
}

// 0 if the rank would have to be counted.
std::uint32_t OrderNumbering::RankOfNew(CStreamObj* pLeft, CStreamObj* pRight) const {
    if (pLeft == m_pFirst) return 1;
    if (pRight == m_pLast) return m_nLinked;
    if (m_nLastRank == 0) return 0;
    if (pLeft == m_pLastLinked) return m_nLastRank + 1;
    if (pRight == m_pLastLinked) return m_nLastRank;
    return 0;
}

// Looks both ways at once, so that the cost is the distance to the nearer end.
std::uint32_t OrderNumbering::CountRank(CStreamObj* p) const {
    CStreamObj* pLeft = p;
    CStreamObj* pRight = p;
    for (std::uint32_t steps = 1;; ++steps) {
        pLeft = Internals::Prev(pLeft);
        if (pLeft == m_pFirst) return steps;
        pRight = Internals::Next(pRight);
        if (pRight == m_pLast) return m_nLinked + 1 - steps;
    }
}

void OrderNumbering::NoteNumbering(CStreamObj* p) {
    if (++m_nEpoch == 0) {
        // Epochs of long ago would look current. This happens once in 2^32 numberings.
        RenumberNow();
        return;
    }
    if (m_nLastRank == 0) m_nLastRank = CountRank(p);
    m_bPending = true;
    m_nStep = StepFor(m_nLinked + 1);
    Give(p, m_nLastRank);
    if (Internals::Prev(p) != m_pFirst) Give(Internals::Prev(p), m_nLastRank - 1);
    if (Internals::Next(p) != m_pLast) Give(Internals::Next(p), m_nLastRank + 1);
}

void OrderNumbering::Give(CStreamObj* p, std::uint32_t rank) {
    Internals::Index(p) = rank * m_nStep;
    Internals::Epoch(p) = m_nEpoch;
    Internals::State(p) = osLinked | osNumbered;
}

void OrderNumbering::Settle() {
    std::uint32_t rank = 0;
    for (CStreamObj* p = Internals::Next(m_pFirst); p != m_pLast; p = Internals::Next(p)) {
        const bool bComputed = Internals::Epoch(p) == m_nEpoch;
        if (bComputed && (Internals::State(p) & osNewer) != 0) continue;
        ++rank;
        if (!bComputed) Give(p, rank);
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

void OrderNumbering::Unlink(CStreamObj* p) {
    std::uint8_t& state = Internals::State(p);
    if ((state & osNumbered) != 0) {
        OrderNumbering* pNumbering = NumberingOf(p);
        const bool bNewer = (state & osNewer) != 0 && Internals::Epoch(p) == pNumbering->m_nEpoch;
        if (pNumbering->m_bPending && !bNewer) pNumbering->Settle();
        --pNumbering->m_nLinked;
        pNumbering->m_pLastLinked = nullptr;
        pNumbering->m_nLastRank = 0;
    }
    state = 0;
    CStreamObj* pNext = Internals::Next(p);
    CStreamObj* pPrev = Internals::Prev(p);
    if (pPrev != nullptr) Internals::Next(pPrev) = pNext;
    if (pNext != nullptr) Internals::Prev(pNext) = pPrev;
}

void OrderNumbering::NumberAtOnceFromNowOn() {
    if (m_bPending) Settle();
    for (CStreamObj* p = Internals::Next(m_pFirst); p != m_pLast; p = Internals::Next(p)) {
        Internals::State(p) = osLinked;
    }
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
    Internals::State(p) = osLinked;
    Internals::Index(p) = Midpoint(left, right);
    if (Internals::Index(p) != left && Internals::Index(p) != right) return;
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
        Internals::Index(p) = ++rank * step;
    }
}

}  // namespace mlds
