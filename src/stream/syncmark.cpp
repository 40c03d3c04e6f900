// Sync marks: synchrony groups, moves along one stream, visited stamps.
#include "mlds/syncmark.h"

#include <utility>

#include "stream/absence.h"
#include "stream/fence.h"
#include "stream/synctable.h"

using mlds::Internals;
using mlds::SyncTable;

CSyncMark::CSyncMark(CStream* pStream)
    : CSyncMarkBase(pStream),
      m_ppSyncList(nullptr),
      m_nSearchNumber(0),
      m_nNumStreams(pStream != nullptr ? Internals::NumStreams(Internals::PlexaOf(pStream)) : 0) {
    m_type = otSyncMark;
    m_cDisplay = '|';
}

CSyncMark::CSyncMark(const CSyncMark& other)
    : CSyncMarkBase(other),
      m_ppSyncList(nullptr),
      m_nSearchNumber(other.m_nSearchNumber),
      m_nNumStreams(other.m_nNumStreams) {
    if (other.m_ppSyncList != nullptr) SyncTable::PointTo(this, SyncTable::Of(other.m_ppSyncList));
}

CSyncMark& CSyncMark::operator=(const CSyncMark& other) {
    if (this == &other || Internals::IsLinked(this)) return *this;
    RemoveFromSyncList();
    CSyncMarkBase::operator=(other);
    m_nSearchNumber = other.m_nSearchNumber;
    m_nNumStreams = other.m_nNumStreams;
    if (other.m_ppSyncList != nullptr) SyncTable::PointTo(this, SyncTable::Of(other.m_ppSyncList));
    return *this;
}

CSyncMark::~CSyncMark() {
    RemoveFromSyncList();
}

bool CSyncMark::IsSynchronous(int streamIndex) {
    return m_ppSyncList != nullptr && streamIndex >= 0 && streamIndex < SyncTable::kSlots &&
           m_ppSyncList[streamIndex] != nullptr;
}

bool CSyncMark::IsSynchronous(CStream* pStream) {
    return pStream != nullptr && IsSynchronous(Internals::IndexOf(pStream));
}

bool CSyncMark::IsSynchronous(CSyncMark* pOther) {
    return pOther != nullptr && Internals::StreamOf(pOther) != nullptr &&
           Internals::CounterpartOrSelf(this, Internals::StreamOf(pOther)) == pOther;
}

bool CSyncMark::IsSynchronousWithFence() {
    return mlds::HasFencedMember(this);
}

CSyncMark* CSyncMark::GetCorrespondingSyncMark(int streamIndex) {
    if (Internals::StreamOf(this) != nullptr && Internals::SlotOf(this) == streamIndex) return this;
    if (streamIndex < 0 || streamIndex >= SyncTable::kSlots) return nullptr;
    return Internals::Counterpart(this, streamIndex);
}

namespace {

// Moves the members of one group into the other. A mark displaced from the first keeps its table,
// which is empty from then on.
bool Merge(SyncTable* pFrom, SyncTable* pInto) {
    for (int i = 0; i < pFrom->nUsed; ++i) {
        if (pFrom->slots[i] != nullptr && pInto->slots[i] != nullptr) return false;
    }
    ++pFrom->nMarks;  // keeps the table while its members leave it
    pFrom->bEnded = true;
    for (int i = 0; i < pFrom->nUsed; ++i) {
        CSyncMark* pMember = pFrom->slots[i];
        if (pMember == nullptr) continue;
        pFrom->slots[i] = nullptr;
        SyncTable::LetGo(pMember);
        SyncTable::Join(pMember, pInto);
    }
    if (--pFrom->nMarks == 0) SyncTable::Free(pFrom);
    return true;
}

}  // namespace

bool CSyncMark::SetToSynchronous(CSyncMark* pOther) {
    SyncTable* pNoSpare = nullptr;
    return TieTo(pOther, pNoSpare);
}

// The spare, if there is one, is used where a new table is needed, and is null then.
bool CSyncMark::TieTo(CSyncMark* pOther, SyncTable*& pSpare) {
    if (pOther == this) return true;
    if (pOther == nullptr) return false;
    CStream* pStream = Internals::StreamOf(this);
    CStream* pOtherStream = Internals::StreamOf(pOther);
    if (pStream == nullptr || pOtherStream == nullptr || pStream == pOtherStream) return false;
    if (Internals::PlexaOf(pStream) != Internals::PlexaOf(pOtherStream)) return false;
    if (Internals::Counterpart(this, Internals::SlotOf(pOther)) == pOther) return true;

    LeaveEndedGroup();
    pOther->LeaveEndedGroup();
    CSyncMark** ppOtherList = pOther->m_ppSyncList;
    if (m_ppSyncList != nullptr && ppOtherList != nullptr) {
        return Merge(SyncTable::Of(ppOtherList), SyncTable::Of(m_ppSyncList));
    }
    if (m_ppSyncList != nullptr) {
        SyncTable::Join(pOther, SyncTable::Of(m_ppSyncList));
        return true;
    }
    if (ppOtherList != nullptr) {
        SyncTable::Join(this, SyncTable::Of(ppOtherList));
        return true;
    }
    SyncTable* pTable = pSpare != nullptr ? std::exchange(pSpare, nullptr) : SyncTable::Make();
    if (pTable == nullptr) return false;
    SyncTable::Join(this, pTable);
    SyncTable::Join(pOther, pTable);
    return true;
}

// A displaced mark whose former group has ended is alone.
void CSyncMark::LeaveEndedGroup() {
    if (m_ppSyncList != nullptr && SyncTable::Of(m_ppSyncList)->bEnded) SyncTable::LetGo(this);
}

bool CSyncMark::SetToSynchronous(CSyncMark* pOther, bool bReplace) {
    if (!bReplace || pOther == this) return SetToSynchronous(pOther);
    if (!mlds::IsUsable(pOther)) return false;
    CStream* pStream = Internals::StreamOf(this);
    CStream* pOtherStream = Internals::StreamOf(pOther);
    if (pStream == nullptr || pStream == pOtherStream) return false;
    if (Internals::PlexaOf(pStream) != Internals::PlexaOf(pOtherStream)) return false;
    // Everything that can run out is had before anything changes.
    CSyncMark* pFresh = new CSyncMark(pOtherStream);
    SyncTable* pSpare = SyncTable::Make();
    if (pFresh == nullptr || pSpare == nullptr) {
        CStream::DiscardStreamObj(pFresh);
        SyncTable::Free(pSpare);
        return false;
    }
    CStreamObj* pLeft = Internals::Prev(pOther);
    CStreamObj* pRight = Internals::Next(pOther);
    // A sentinel stays; the fresh mark then stands beside it.
    pOtherStream->RemoveStreamObj(pOther, true);
    pOtherStream->InsertStreamObj(pFresh, pLeft, pRight);
    const bool bTied = TieTo(pFresh, pSpare);
    SyncTable::Free(pSpare);
    return bTied;
}

void CSyncMark::RemoveFromSyncList() {
    if (m_ppSyncList == nullptr) return;
    SyncTable* pTable = SyncTable::Of(m_ppSyncList);
    pTable->slots[Internals::SlotOf(this)] = nullptr;
    int nLeft = 0;
    int last = 0;
    for (int i = 0; i < pTable->nUsed; ++i) {
        if (pTable->slots[i] == nullptr) continue;
        last = i;
        ++nLeft;
    }
    if (nLeft <= 1) pTable->bEnded = true;
    if (nLeft == 1) {
        CSyncMark* pLast = pTable->slots[last];
        pTable->slots[last] = nullptr;
        SyncTable::LetGo(pLast);
    }
    SyncTable::LetGo(this);
}

CSyncMark* CSyncMark::UptoTokens(ScanDirectionType direction, int n) {
    if (n < 0) return this;
    const ScanDirectionType back = direction == sdRight ? sdLeft : sdRight;
    CStreamObj* pBefore = nullptr;
    CStreamObj* p = this;
    for (int i = 0;; ++i) {
        CStreamObj* pToken = p->GetAdjacentStreamObj(direction, otToken);
        if (pToken == nullptr) return nullptr;
        pBefore = mlds::StepFrom(pToken, back == sdRight);
        if (i == n) break;
        p = pToken->GetAdjacentStreamObj(direction, otSyncMark);
        if (p == nullptr) return nullptr;
    }
    // Between a mark and the nearest token there are only marks, but links of an object that was
    // taken out may lead to a token that has got a token in front of it since.
    return pBefore != nullptr && Internals::IsSyncMark(pBefore) ? static_cast<CSyncMark*>(pBefore)
                                                                : nullptr;
}

CSyncMark* CSyncMark::OverTokens(ScanDirectionType direction, int n) {
    CStreamObj* p = this;
    for (int i = 0; i < n; ++i) {
        CStreamObj* pToken = p->GetAdjacentStreamObj(direction, otToken);
        if (pToken == nullptr) return nullptr;
        p = mlds::StepFrom(pToken, direction == sdRight);
        if (p == nullptr) return nullptr;
    }
    return Internals::IsSyncMark(p) ? static_cast<CSyncMark*>(p) : nullptr;
}

CSyncMark* CSyncMark::BySyncMarks(ScanDirectionType direction) {
    return static_cast<CSyncMark*>(GetAdjacentStreamObj(direction, otSyncMark));
}

bool CSyncMark::TestSearchNumber(unsigned int n) {
    if (m_nSearchNumber == n) return true;
    m_nSearchNumber = n;
    return false;
}

void CSyncMark::TouchSearchNumber(unsigned int n) {
    m_nSearchNumber = n;
}
