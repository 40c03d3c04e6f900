// Streams: sections that lose their ties, are cut out, put back and compared.
#include "mlds/stream.h"
#include "stream/absence.h"
#include "stream/fieldslots.h"
#include "stream/ordernumbering.h"

using mlds::Internals;
using mlds::OrderNumbering;

namespace {

// The counterpart of a bound in the stream; null if there is none, for marks of elsewhere and for
// one that lies in no chain.
CSyncMark* BoundIn(CStream* pStream, CSyncMark* pBound) {
    if (!mlds::BelongsTo(Internals::PlexaOf(pStream), pBound) || !Internals::IsSyncMark(pBound)) {
        return nullptr;
    }
    CSyncMark* pMark = Internals::CounterpartOrSelf(pBound, pStream);
    return pMark != nullptr && Internals::IsInChain(pMark) ? pMark : nullptr;
}

// The same for a place where a stream is changed: chains that were cut out stay as they are.
CSyncMark* LinkedBoundIn(CStream* pStream, CSyncMark* pBound) {
    CSyncMark* pMark = BoundIn(pStream, pBound);
    return mlds::IsUsable(pMark) ? pMark : nullptr;
}

bool IsReachedFrom(CStreamObj* p, CStreamObj* pTo) {
    while (p != nullptr && p != pTo) p = Internals::Next(p);
    return p != nullptr;
}

struct Section {
    CSyncMark* pFrom;
    CSyncMark* pTo;

    /// What lies between two marks of any streams, as a section of this one.
    Section(CStream* pStream, CSyncMark* from, CSyncMark* to)
        : pFrom(BoundIn(pStream, from)), pTo(BoundIn(pStream, to)) {}

    bool Exists(CStream* pStream) const {
        return pFrom != nullptr && pTo != nullptr && pFrom != pTo &&
               Internals::PlexaOf(pStream)->Context(pFrom, pTo, sdRight) &&
               IsReachedFrom(pFrom, pTo);
    }
};

// What a detached chain counts for, as the stream counts what lies between two bounds: the last
// object as a sync mark and not as a token, whatever it is; no tokens between bounds of different
// streams; and -1 of both where a bound is a token of another stream. Cutting out and putting back
// agree on that, and nothing else would leave the counters as they were.
struct ChainCount {
    int nSyncMarks = -1;
    int nTokens = -1;

    ChainCount(const CStream* pStream, CStreamObj* pFirst, CStreamObj* pLast) {
        if (IsForeignToken(pStream, pFirst) || IsForeignToken(pStream, pLast)) return;
        nSyncMarks = 1;
        nTokens = 0;
        for (CStreamObj* p = pFirst; p != pLast; p = Internals::Next(p)) {
            ++(Internals::IsToken(p) ? nTokens : nSyncMarks);
        }
        if (!pFirst->LeftOf(pLast)) nTokens = 0;
    }

private:
    static bool IsForeignToken(const CStream* pStream, CStreamObj* p) {
        return Internals::IsToken(p) && Internals::StreamOf(p) != pStream;
    }
};

// True for objects that a caller holds and that hang together: a single one of the stream, or a run
// of a chain that was cut out of it. Tokens of other streams may lie in such a chain.
bool IsDetachedChain(const CStream* pStream, CStreamObj* pFirst, CStreamObj* pLast) {
    if (pFirst == pLast && pFirst != nullptr && !Internals::IsInChain(pFirst)) {
        return Internals::StreamOf(pFirst) == pStream;
    }
    // Links are only followed from objects that lie in such a chain.
    for (CStreamObj* p = pFirst; p != nullptr && mlds::WasCutFrom(p, pStream);
         p = Internals::Next(p)) {
        if (p == pLast) return true;
    }
    return false;
}

// Cuts a run out of the detached chain around it. The rest is one chain again, or two where tokens
// would touch.
void Isolate(CStreamObj* pFirst, CStreamObj* pLast) {
    if ((Internals::State(pFirst) & mlds::osDetached) == 0) return;
    CStreamObj* pBefore = Internals::Prev(pFirst);
    CStreamObj* pBehind = Internals::Next(pLast);
    const bool bTokensMeet = pBefore != nullptr && pBehind != nullptr &&
                             Internals::IsToken(pBefore) && Internals::IsToken(pBehind);
    OrderNumbering::JoinLoose(pBefore, bTokensMeet ? nullptr : pBehind);
    if (bTokensMeet) OrderNumbering::JoinLoose(nullptr, pBehind);
}

bool IsMark(const CStreamObj* p) {
    return p != nullptr && Internals::IsSyncMark(p);
}

// Where a token would meet a token, a new mark goes between; null if it cannot.
CStreamObj* Separate(CStream* pStream, CStreamObj* pLeft, CStreamObj* pRight) {
    CSyncMark* pMark = new CSyncMark(pStream);
    if (pMark != nullptr && !pStream->InsertStreamObj(pMark, pLeft, pRight)) {
        Internals::Destroy(pMark);
        return nullptr;
    }
    return pMark;
}

}  // namespace

void CStream::DeSyncSection(CSyncMark* pFrom, CSyncMark* pTo) {
    const Section section(this, pFrom, pTo);
    if (!section.Exists(this)) return;
    for (CStreamObj* p = Internals::Next(section.pFrom); p != section.pTo; p = Internals::Next(p)) {
        if (IsMark(p)) Internals::LeaveGroup(static_cast<CSyncMark*>(p));
    }
}

bool CStream::ExciseSection(CSyncMark* pFrom, CSyncMark* pTo, CStreamObj** ppFirst,
                            CStreamObj** ppLast, BufferSyncMarkInsertionType type) {
    const Section section(this, pFrom, pTo);
    if (ppFirst == nullptr || ppLast == nullptr || !section.Exists(this)) return false;
    if (!mlds::IsUsable(section.pFrom)) return false;
    if (Internals::Next(section.pFrom) == section.pTo) return false;
    DeSyncSection(section.pFrom, section.pTo);
    *ppFirst = Internals::Next(section.pFrom);
    *ppLast = Internals::Prev(section.pTo);
    OrderNumbering::Detach(*ppFirst, *ppLast, Owner());
    const ChainCount count(Owner(), *ppFirst, *ppLast);
    m_nSyncMarks -= count.nSyncMarks;
    m_nTokens -= count.nTokens;
    if (type == bsmDeleteLeft) RemoveStreamObj(section.pFrom, true);
    if (type == bsmDeleteRight) RemoveStreamObj(section.pTo, true);
    return true;
}

bool CStream::InsertSection(CStreamObj* pFirst, CStreamObj* pLast, CSyncMark** ppLeft,
                            CSyncMark** ppRight) {
    if (pLast == nullptr || !IsDetachedChain(Owner(), pFirst, pLast)) return false;
    if (ppLeft == nullptr && ppRight == nullptr) return false;
    if (ppLeft != nullptr) *ppLeft = LinkedBoundIn(this, *ppLeft);
    if (ppRight != nullptr) *ppRight = LinkedBoundIn(this, *ppRight);
    CStreamObj* pLeft = ppLeft != nullptr ? *ppLeft : nullptr;
    CStreamObj* pRight = ppRight != nullptr ? *ppRight : nullptr;
    if (ppLeft == nullptr && pRight != nullptr) {
        pLeft = Internals::Prev(pRight);
        if (pLeft != nullptr && !IsMark(pLeft) && !IsMark(pFirst)) {
            pLeft = Separate(this, pLeft, pRight);
        }
    }
    if (ppRight == nullptr && pLeft != nullptr) {
        pRight = Internals::Next(pLeft);
        if (pRight != nullptr && !IsMark(pRight) && !IsMark(pLast)) {
            pRight = Separate(this, pLeft, pRight);
        }
    }
    if (!mlds::AreNeighbours(pLeft, pRight)) return false;
    if (!IsMark(pLeft) && !IsMark(pFirst)) return false;
    if (!IsMark(pRight) && !IsMark(pLast)) return false;
    Isolate(pFirst, pLast);
    const ChainCount count(Owner(), pFirst, pLast);
    OrderNumbering::Attach(pFirst, pLast, pLeft, pRight);
    m_nSyncMarks += count.nSyncMarks;
    m_nTokens += count.nTokens;
    return true;
}

namespace {

// One of two sections that are compared, from its present place on.
struct Walk {
    CSyncMark* p;
    CSyncMark* pEnd;

    Walk(CStream* pStream, CSyncMark* from, CSyncMark* to)
        : p(BoundIn(pStream, from != nullptr ? from : pStream->pGetFirstStreamObj())),
          pEnd(BoundIn(pStream, to != nullptr ? to : pStream->pGetLastStreamObj())) {}

    bool IsWhole() const { return p != nullptr && pEnd != nullptr; }
    bool IsExhausted() const { return p == nullptr || !p->LeftOf(pEnd); }
    CToken* Token() const { return p->GetNextToken(); }
    void Step() { p = p->UptoTokens(sdRight, 1); }
};

bool HoldEqualValues(CToken* pToken, CToken* pOther, int nFields) {
    for (int i = 0; i < nFields; ++i) {
        const mlds::FieldSlot* pSlot = mlds::SlotAt(pToken, i);
        const mlds::FieldSlot* pOtherSlot = mlds::SlotAt(pOther, i);
        if (pSlot == nullptr && pOtherSlot == nullptr) continue;  // older than the field
        if (pSlot == nullptr || pOtherSlot == nullptr) return false;
        if (!mlds::SlotsAgree(*pSlot, *pOtherSlot)) return false;
    }
    return true;
}

}  // namespace

bool CStream::CompareSection(CSyncMark* pFrom1, CSyncMark* pTo1, CSyncMark* pFrom2,
                             CSyncMark* pTo2) {
    if (pFrom1 == nullptr && pTo1 == nullptr) return false;
    if (pFrom2 == nullptr && pTo2 == nullptr) return false;
    Walk first(this, pFrom1, pTo1);
    Walk second(this, pFrom2, pTo2);
    if (!first.IsWhole() || !second.IsWhole()) return false;
    while (!first.IsExhausted() && !second.IsExhausted()) {
        CToken* pToken = first.Token();
        CToken* pOther = second.Token();
        // A second section behind the last token of the stream equals any.
        if (pOther == nullptr) return true;
        if (pToken == nullptr) return false;
        if (Internals::StreamOf(pToken) != Internals::StreamOf(pOther)) return false;
        if (!HoldEqualValues(pToken, pOther, m_nFields)) return false;
        first.Step();
        second.Step();
    }
    return first.IsExhausted() == second.IsExhausted();
}
