// How a stream numbers its objects.
//
// An object linked between L and R gets the index midway between theirs. When no number is left
// between them, the whole stream is numbered anew: the k-th of n - 1 objects gets k times
// 0xFFFFFFFF / (n + 10). Material is nearly always inserted at one place, which uses up a gap every
// 15 to 25 objects, so numbering at once would make building a stream quadratic. Here a new
// numbering is only noted, and carried out when somebody reads an index that depends on it. Nobody
// can see the difference.
//
// Words: an object is *numbered* if it was linked when the latest numbering was noted; its rank
// then times the step is its index. It is *newer* if it was linked since; it has a midpoint. An
// index is *computed* when the object's epoch is the stream's. The *anchor* is the object whose
// insertion led to the latest numbering.
//
// Invariants, for the objects that carry osNumbered:
//  1. A newer object's index is computed (midpoints are taken of computed indices).
//  2. While no numbering is pending, every index is computed.
//  3. While one is pending, no numbered object has left: ranks counted now, newer objects left out,
//     are the ranks of the moment when it was noted.
//  4. Computed indices increase along the chain.
//  5. The anchor's index is computed, and m_nAnchorRank is its rank among all linked objects.
//     Whoever comes or goes compares indices with it.
//
// Costs: a numbering is noted for the steps between the new object and the anchor or the nearer
// end. An index that is not computed is first looked for nearby: the rank of a computed numbered
// object a few steps away tells it. So building at one place, or at several near each other, costs
// the same per object however long the stream is.
//
// A chain that holds objects of several streams, or was linked into through another stream, is
// numbered at once whenever a gap is used up; its objects do not carry osNumbered.
#ifndef MLDS_STREAM_ORDERNUMBERING_H
#define MLDS_STREAM_ORDERNUMBERING_H

#include "internals.h"

namespace mlds {

class OrderNumbering {
public:
    /// The numbering of the chain between two sentinels, which it links to each other.
    OrderNumbering(CSyncMark* pFirst, CSyncMark* pLast);

    /// Links an object between two neighbours, on behalf of the stream `pVia`.
    static void Link(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight, const CStream* pVia);
    /// Takes a linked object out of its chain; its own links and its index stay readable. With
    /// `bGoes` it is destroyed next.
    static void Unlink(CStreamObj* p, bool bGoes = false);

    /// Cuts the run of linked objects pFirst to pLast out of its chain, on behalf of the stream
    /// `pOrigin`. It is a chain of its own then, its objects keep their indices.
    static void Detach(CStreamObj* pFirst, CStreamObj* pLast, const CStream* pOrigin);
    /// Links two objects that are in no stream to each other; null ends a chain there.
    static void JoinLoose(CStreamObj* pLeft, CStreamObj* pRight);
    /// Takes an object out of the detached chain that it lies in, if it lies in one.
    static void LeaveDetached(CStreamObj* p) {
        if ((Internals::State(p) & osDetached) != 0) TakeOutOfDetached(p);
    }
    /// Links an object between two neighbours of a detached chain.
    static void LinkDetached(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight);
    /// Links a detached chain between two neighbours, and numbers the whole stream.
    static void Attach(CStreamObj* pFirst, CStreamObj* pLast, CStreamObj* pLeft,
                       CStreamObj* pRight);

    static std::uint32_t IndexOf(CStreamObj* p) {
        if ((Internals::State(p) & osNumbered) != 0) NumberingOf(p)->SettleFor(p);
        return p->m_nOrderIndex;
    }

    /// Carries out a numbering that is pending.
    void SettleNow() {
        if (m_bPending) Settle();
    }
    /// Numbers the whole stream at once.
    void RenumberNow();

private:
    static OrderNumbering* NumberingOf(CStreamObj* p) {
        return Internals::Numbering(Internals::StreamOf(p));
    }
    static bool IsInOwnChain(CStreamObj* p) {
        return (Internals::State(p) & (osNumbered | osSentinel)) != 0;
    }
    static OrderNumbering* CommonNumbering(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight,
                                           const CStream* pVia);
    static void LinkAcrossStreams(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight);
    static void SetLinks(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight);
    static void RenumberChain(CStreamObj* pStart);
    static void TakeOutOfDetached(CStreamObj* p);

    void LinkHere(CStreamObj* p, CStreamObj* pLeft, CStreamObj* pRight);
    std::uint32_t CountRank(CStreamObj* p) const;
    void NoteNumbering(CStreamObj* p);
    void Give(CStreamObj* p, std::uint32_t rank);
    void NumberAtOnceFromNowOn();
    void SettleFor(CStreamObj* p) {
        if (Internals::Epoch(p) != m_nEpoch && !SettleFromNearby(p)) Settle();
    }
    bool SettleFromNearby(CStreamObj* p);
    void Settle();
    void Leave(CStreamObj* p);
    bool IsNewer(CStreamObj* p) const {
        return Internals::Epoch(p) == m_nEpoch && (Internals::State(p) & osNewer) != 0;
    }

    CStreamObj* m_pFirst;
    CStreamObj* m_pLast;
    std::uint32_t m_nEpoch = 0;
    std::uint32_t m_nStep = 0;
    std::uint32_t m_nLinked = 0;
    std::uint32_t m_nNumbered = 0;  // linked when the latest numbering was noted
    std::uint32_t m_nAnchorRank = 0;
    CStreamObj* m_pAnchor = nullptr;
    bool m_bPending = false;
    bool m_bAtOnce = false;
};

}  // namespace mlds

#endif
