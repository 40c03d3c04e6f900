// What the members of a synchrony group share: one slot per stream.
//
// A mark points straight at the slots, so that finding its counterpart is one read. Every mark that
// points there is counted, also one that was displaced from its slot or copied from a member: the
// table lives until the last of them lets go, while a group that ends empties its slots at once.
#ifndef MLDS_STREAM_SYNCTABLE_H
#define MLDS_STREAM_SYNCTABLE_H

#include <cstddef>
#include <new>

#include "internals.h"
#include "stream/memory.h"

namespace mlds {

struct SyncTable {
    static constexpr int kSlots = 50;

    CSyncMark* slots[kSlots];
    std::uint32_t nMarks;  // how many point here
    std::uint16_t nUsed;   // slots from here on have never held a mark
    bool bEnded;           // the group has come to its end; only displaced marks point here

    /// An empty table that nobody points to; null when memory runs out.
    static SyncTable* Make() noexcept {
        void* p = AllocateBlock(sizeof(SyncTable));
        return p != nullptr ? new (p) SyncTable{} : nullptr;
    }
    /// Null is ignored.
    static void Free(SyncTable* pTable) noexcept { FreeBlock(pTable, sizeof(SyncTable)); }
    static SyncTable* Of(CSyncMark** ppSlots) {
        return reinterpret_cast<SyncTable*>(ppSlots);  // the slots are the first member
    }
    static void PointTo(CSyncMark* pMark, SyncTable* pTable) {
        ++pTable->nMarks;
        pMark->m_ppSyncList = pTable->slots;
    }
    static void Join(CSyncMark* pMark, SyncTable* pTable) {
        PointTo(pMark, pTable);
        const int slot = Internals::SlotOf(pMark);
        pTable->slots[slot] = pMark;
        if (slot >= pTable->nUsed) pTable->nUsed = static_cast<std::uint16_t>(slot + 1);
    }
    static void LetGo(CSyncMark* pMark) {
        SyncTable* pTable = Of(pMark->m_ppSyncList);
        pMark->m_ppSyncList = nullptr;
        if (--pTable->nMarks == 0) Free(pTable);
    }
};

}  // namespace mlds

#endif
