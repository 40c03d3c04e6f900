// Streams: linking objects into the chain and taking them out.
#include "mlds/okulog.h"
#include "mlds/stream.h"
#include "report/report.h"
#include "stream/ordernumbering.h"

using mlds::Internals;
using mlds::OrderNumbering;

namespace {

constexpr const char* kNextTo =
    "CStream::InsertStreamObj(CStreamObj * pStreamObj, int InsertWhere, CStreamObj * pAt)";
constexpr const char* kBetween =
    "CStream::InsertStreamObj(CStreamObj * pToBeInserted, CStreamObj * pStreamObjLeft, "
    "CStreamObj * pStreamObjRight)";

// A token was about to touch a sentinel. Hosts tell the cases apart by the line of the entry: the
// numbers are part of the interface, like the signatures, and do not follow this file.
bool RefuseAtSentinel(const char* signature, int line, const char* streamName) {
    if (okuLog.m_nLevel >= 1) {
        okuLog.logError("mlds", signature, "cstream", line, 1, 1750, streamName);
    }
    return false;
}

void CountAndReport(CStream* pStream, CStreamObj* p, int& nTokens, int& nSyncMarks) {
    ++(Internals::IsToken(p) ? nTokens : nSyncMarks);
    if (!pStream->m_bQuiet) mlds::ReportInserted(Internals::PlexaOf(pStream), p);
}

}  // namespace

bool CStream::InsertStreamObj(CStreamObj* pStreamObj, int InsertWhere, CStreamObj* pAt) {
    if (InsertWhere == iwPlaced) {
        if (pStreamObj == nullptr) return false;
        CountAndReport(this, pStreamObj, m_nTokens, m_nSyncMarks);
        return true;
    }
    if (InsertWhere != iwRightOf && InsertWhere != iwLeftOf) return false;
    if (!mlds::IsInsertable(m_pPlexa, pStreamObj)) return false;
    if (!mlds::IsUsable(pAt) || !mlds::BelongsTo(m_pPlexa, pAt)) return false;
    if (Internals::IsToken(pStreamObj)) {
        const bool bAtSentinel = pAt == m_pFirst || pAt == m_pLast;
        if (InsertWhere == iwLeftOf && (bAtSentinel || pAt == Internals::Next(m_pFirst))) {
            return RefuseAtSentinel(kNextTo, 1048, m_szName);
        }
        if (InsertWhere == iwRightOf && (bAtSentinel || pAt == Internals::Prev(m_pLast))) {
            return RefuseAtSentinel(kNextTo, 1060, m_szName);
        }
    }
    CStreamObj* pLeft = InsertWhere == iwRightOf ? pAt : Internals::Prev(pAt);
    CStreamObj* pRight = InsertWhere == iwRightOf ? Internals::Next(pAt) : pAt;
    if (pLeft == nullptr || pRight == nullptr) return false;
    OrderNumbering::Link(pStreamObj, pLeft, pRight, Owner());
    CountAndReport(this, pStreamObj, m_nTokens, m_nSyncMarks);
    return true;
}

bool CStream::InsertStreamObj(CStreamObj* pToBeInserted, CStreamObj* pStreamObjLeft,
                              CStreamObj* pStreamObjRight) {
    if (!mlds::IsInsertable(m_pPlexa, pToBeInserted)) return false;
    if (pStreamObjLeft == nullptr) {
        if (!mlds::IsUsable(pStreamObjRight)) return false;
        pStreamObjLeft = Internals::Prev(pStreamObjRight);
    } else if (pStreamObjRight == nullptr) {
        if (!mlds::IsUsable(pStreamObjLeft)) return false;
        pStreamObjRight = Internals::Next(pStreamObjLeft);
    }
    if (!mlds::AreNeighbours(pStreamObjLeft, pStreamObjRight)) return false;
    if (!mlds::BelongsTo(m_pPlexa, pStreamObjLeft)) return false;
    if (Internals::IsToken(pToBeInserted)) {
        if (Internals::IsToken(pStreamObjLeft) || Internals::IsToken(pStreamObjRight)) return false;
        if (pStreamObjLeft == m_pFirst) return RefuseAtSentinel(kBetween, 1149, m_szName);
        if (pStreamObjRight == m_pLast) return RefuseAtSentinel(kBetween, 1158, m_szName);
    }
    OrderNumbering::Link(pToBeInserted, pStreamObjLeft, pStreamObjRight, Owner());
    CountAndReport(this, pToBeInserted, m_nTokens, m_nSyncMarks);
    return true;
}

CStreamObj* CStream::RemoveStreamObj(CStreamObj* p, bool bDelete) {
    if (!mlds::IsUsable(p) || Internals::IsSentinel(p)) return nullptr;
    if (!mlds::BelongsTo(m_pPlexa, p)) return nullptr;
    --(Internals::IsSyncMark(p) ? m_nSyncMarks : m_nTokens);
    // Removals are reported even by a quiet stream: its viewer must not keep what is gone.
    mlds::ReportRemoved(m_pPlexa, p);
    OrderNumbering::Unlink(p, bDelete);
    if (bDelete) {
        Internals::Destroy(p);
        return nullptr;
    }
    if (Internals::IsSyncMark(p)) Internals::LeaveGroup(static_cast<CSyncMark*>(p));
    return p;
}

void CStream::DiscardStreamObj(CStreamObj* p) {
    if (p != nullptr && !Internals::IsLinked(p)) Internals::Destroy(p);
}
