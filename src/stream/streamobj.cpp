// Stream objects: links, scans and the comparison of positions.
#include "mlds/stream.h"

#include "report/report.h"
#include "stream/absence.h"
#include "stream/memory.h"
#include "stream/ordernumbering.h"
#include "stream/scan.h"

using mlds::Internals;
using mlds::OrderNumbering;

CStreamObj::CStreamObj(CStream* pStream)
    // What is made for a copy of a stream is made for the stream: the copy may go at any time.
    : CStreamObj(pStream != nullptr ? Internals::OwnerOf(pStream) : nullptr,
                 pStream != nullptr ? Internals::IndexOf(pStream) : 0) {}

CStreamObj::CStreamObj(CStream* pStream, int streamIndex)
    : m_pStream(pStream),
      m_pNext(nullptr),
      m_pPrev(nullptr),
      m_type(otToken),
      m_nOrderIndex(0),
      m_cDisplay('\0'),
      m_nState(0),
      m_nStreamIndex(static_cast<std::uint8_t>(streamIndex)),
      m_bHasHandle(false),
      m_nEpoch(0) {}

CStreamObj::CStreamObj(const CStreamObj& other)
    : CStreamObjBase(other),
      m_pStream(other.m_pStream),
      m_pNext(other.m_pNext),
      m_pPrev(other.m_pPrev),
      m_type(other.m_type),
      m_nOrderIndex(OrderNumbering::IndexOf(const_cast<CStreamObj*>(&other))),
      m_cDisplay(other.m_cDisplay),
      m_nState(0),
      m_nStreamIndex(other.m_nStreamIndex),
      m_bHasHandle(false),
      m_nEpoch(0) {}

CStreamObj& CStreamObj::operator=(const CStreamObj& other) {
    if (this == &other) return *this;
    m_cDisplay = other.m_cDisplay;
    if (Internals::IsLinked(this)) return *this;  // its place is its own
    OrderNumbering::LeaveDetached(this);
    mlds::NoteEnd(this);
    if (m_bHasHandle && m_pStream != other.m_pStream) mlds::ForgetHandle(this);
    m_pStream = other.m_pStream;
    m_pNext = other.m_pNext;
    m_pPrev = other.m_pPrev;
    m_type = other.m_type;
    m_nOrderIndex = OrderNumbering::IndexOf(const_cast<CStreamObj*>(&other));
    m_nStreamIndex = other.m_nStreamIndex;
    return *this;
}

CStreamObj::~CStreamObj() {
    // Objects leave their stream first. One that was deleted in place must not stay behind in the
    // links of its neighbours.
    if (Internals::IsLinked(this)) OrderNumbering::Unlink(this, true);
    OrderNumbering::LeaveDetached(this);
    if (m_bHasHandle) mlds::ForgetHandle(this);
    mlds::NoteEnd(this);
    m_pStream = nullptr;
    m_pNext = nullptr;
    m_pPrev = nullptr;
}

void* CStreamObj::operator new(std::size_t size) noexcept {
    return mlds::AllocateBlock(size);
}

void CStreamObj::operator delete(void* p, std::size_t size) noexcept {
    mlds::FreeBlock(p, size);
}

CStreamObj* CStreamObj::GetAdjacentStreamObj(ScanDirectionType direction, bool bFenceCheck) {
    if (bFenceCheck && mlds::IsHeldByFence(this)) return nullptr;
    return Internals::Neighbour(this, direction == sdRight);
}

CStreamObj* CStreamObj::GetAdjacentStreamObj(ScanDirectionType direction, ObjectType type) {
    return GetAdjacentStreamObj(direction, type, false);
}

CStreamObj* CStreamObj::GetAdjacentStreamObj(ScanDirectionType direction, ObjectType type,
                                             bool bFenceCheck) {
    return mlds::NearestOf(this, direction, type, bFenceCheck);
}

CStreamObj* CStreamObj::NearestWhileStale(ObjectType type, bool bRight) {
    return mlds::NearestOf(this, bRight ? sdRight : sdLeft, type, false);
}

unsigned int CStreamObj::GetOrderIndex() {
    return OrderNumbering::IndexOf(this);
}

void CStreamObj::LinkBetween(CStreamObj* pLeft, CStreamObj* pRight) {
    if (m_pStream == nullptr || pLeft == nullptr) return;
    CPlexa* pPlexa = Internals::PlexaOf(m_pStream);
    if (!mlds::IsInsertable(pPlexa, this) || !mlds::BelongsTo(pPlexa, pLeft)) return;
    if (mlds::AreNeighbours(pLeft, pRight)) {
        OrderNumbering::Link(this, pLeft, pRight, m_pStream);
    } else if (mlds::AreDetachedNeighbours(pLeft, pRight) && this != pLeft && this != pRight) {
        OrderNumbering::LinkDetached(this, pLeft, pRight);
    }
}

void CStreamObj::UnLink() {
    if (Internals::IsLinked(this) && !Internals::IsSentinel(this)) OrderNumbering::Unlink(this);
    OrderNumbering::LeaveDetached(this);
}

bool CStreamObj::LeftOf(CStreamObj* p) {
    if (p == nullptr || p->m_pStream != m_pStream) return false;
    return OrderNumbering::IndexOf(this) < OrderNumbering::IndexOf(p);
}

bool CStreamObj::RightOf(CStreamObj* p) {
    return p != nullptr && p->LeftOf(this);
}
