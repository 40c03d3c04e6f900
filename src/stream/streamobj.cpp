// Stream objects: links, scans and the comparison of positions.
#include "mlds/streamobj.h"

#include "stream/fence.h"
#include "stream/memory.h"
#include "stream/ordernumbering.h"

using mlds::Internals;
using mlds::OrderNumbering;

CStreamObj::CStreamObj(CStream* pStream)
    : m_pStream(pStream),
      m_pNext(nullptr),
      m_pPrev(nullptr),
      m_type(otToken),
      m_nOrderIndex(0),
      m_cDisplay('\0'),
      m_nState(0),
      m_nStreamIndex(pStream != nullptr ? static_cast<std::uint8_t>(Internals::IndexOf(pStream))
                                        : std::uint8_t{0}),
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
      m_nEpoch(0) {}

CStreamObj& CStreamObj::operator=(const CStreamObj& other) {
    if (this == &other || Internals::IsSentinel(this)) return *this;
    UnLink();
    m_pStream = other.m_pStream;
    m_pNext = other.m_pNext;
    m_pPrev = other.m_pPrev;
    m_type = other.m_type;
    m_nOrderIndex = OrderNumbering::IndexOf(const_cast<CStreamObj*>(&other));
    m_cDisplay = other.m_cDisplay;
    m_nStreamIndex = other.m_nStreamIndex;
    return *this;
}

CStreamObj::~CStreamObj() {
    // Objects leave their stream first. One that was deleted in place must not stay behind in the
    // links of its neighbours.
    if (Internals::IsLinked(this)) OrderNumbering::Unlink(this);
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

CStream* CStreamObj::GetStream() {
    return m_pStream;
}

bool CStreamObj::GetObjectType(ObjectType type) {
    return m_type == type;
}

ObjectType CStreamObj::GetObjectType() {
    return m_type;
}

CStreamObj* CStreamObj::GetNextStreamObj() {
    return m_pNext;
}

CStreamObj* CStreamObj::GetPrevStreamObj() {
    return m_pPrev;
}

CStreamObj* CStreamObj::GetAdjacentStreamObj(ScanDirectionType direction) {
    return Internals::Neighbour(this, direction == sdRight);
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
    // The links of an object that left its stream are stale; nothing is known about what they lead
    // to, so a scan does not begin there.
    if (!Internals::IsLinked(this)) return nullptr;
    const bool bRight = direction == sdRight;
    for (CStreamObj* p = this;;) {
        if (bFenceCheck && mlds::IsHeldByFence(p)) return nullptr;
        p = Internals::Neighbour(p, bRight);
        if (p == nullptr || p->m_type == type) return p;
    }
}

CToken* CStreamObj::GetNextToken() {
    return static_cast<CToken*>(GetAdjacentStreamObj(sdRight, otToken, false));
}

CToken* CStreamObj::GetPrevToken() {
    return static_cast<CToken*>(GetAdjacentStreamObj(sdLeft, otToken, false));
}

CSyncMark* CStreamObj::GetNextSyncMark() {
    return static_cast<CSyncMark*>(GetAdjacentStreamObj(sdRight, otSyncMark, false));
}

CSyncMark* CStreamObj::GetPrevSyncMark() {
    return static_cast<CSyncMark*>(GetAdjacentStreamObj(sdLeft, otSyncMark, false));
}

unsigned int CStreamObj::GetOrderIndex() {
    return OrderNumbering::IndexOf(this);
}

void CStreamObj::LinkBetween(CStreamObj* pLeft, CStreamObj* pRight) {
    if (m_pStream == nullptr || Internals::IsLinked(this)) return;
    if (!mlds::AreNeighbours(pLeft, pRight)) return;
    OrderNumbering::Link(this, pLeft, pRight, m_pStream);
}

void CStreamObj::UnLink() {
    if (Internals::IsLinked(this) && !Internals::IsSentinel(this)) OrderNumbering::Unlink(this);
}

bool CStreamObj::LeftOf(CStreamObj* p) {
    if (p == nullptr || p->m_pStream != m_pStream) return false;
    return OrderNumbering::IndexOf(this) < OrderNumbering::IndexOf(p);
}

bool CStreamObj::RightOf(CStreamObj* p) {
    return p != nullptr && p->LeftOf(this);
}
