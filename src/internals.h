// The library's own door to the private members of its classes, for reading.
//
// The public headers show only what hosts use. Inside, streams, marks and the container look at
// each other's links and tables through these functions. What is written stays with who keeps it
// true, by the compiler's rule:
//
//   links and order indices                             OrderNumbering (stream/ordernumbering.h)
//   whether an object is in a chain, or was             PlaceAccess (stream/placeaccess.h)
//   which group a mark is in                            SyncTable (stream/synctable.h)
//   what fields remember of their sets                  FieldAccess (stream/fieldaccess.h)
//   variable lists and live fences                      ListAccess (container/listaccess.h)
//   connections to a viewer                             ConversationAccess (viewer/conversation.h)
//   which objects have a handle                         HandleAccess (viewer/handles.cpp)
#ifndef MLDS_INTERNALS_H
#define MLDS_INTERNALS_H

#include "mlds/plexa.h"
#include "mlds/plexatest.h"
#include "mlds/varlist.h"

namespace mlds {

/// Bits of a stream object's state.
enum ObjectState : std::uint8_t {
    osLinked = 1,       // lies in the chain of a stream (the links of other objects are stale)
    osNumbered = 2,     // its order index follows its stream's numbering, see ordernumbering.h
    osNewer = 4,        // linked after the numbering that its epoch names
    osSentinel = 8,     // an end of a stream, linked for ever
    osDetached = 16,    // lies in a chain that was cut out of a stream: its links are true
    osRemoved = 32,     // was taken out and lives on: its links are stale, see absence.h
    osNamedAbroad = 64  // stale links of objects of other streams lead here; stays for ever
};

struct Internals {
    // Stream objects
    static_assert(CStreamObj::kInChain == (osLinked | osDetached));
    static CStreamObj* Next(const CStreamObj* p) { return p->m_pNext; }
    static CStreamObj* Prev(const CStreamObj* p) { return p->m_pPrev; }
    static CStreamObj* Neighbour(const CStreamObj* p, bool bRight) {
        return bRight ? p->m_pNext : p->m_pPrev;
    }
    static CStream* StreamOf(const CStreamObj* p) { return p->m_pStream; }
    static bool IsToken(const CStreamObj* p) { return p->m_type == otToken; }
    static bool IsOfType(const CStreamObj* p, ObjectType type) { return p->m_type == type; }
    static bool IsSyncMark(const CStreamObj* p) { return p->m_type == otSyncMark; }
    static std::uint8_t State(const CStreamObj* p) { return p->m_nState; }
    static std::uint32_t Epoch(const CStreamObj* p) { return p->m_nEpoch; }
    static bool IsLinked(const CStreamObj* p) { return (p->m_nState & osLinked) != 0; }
    /// In a stream's chain or in one that was cut out: the links are true.
    static bool IsInChain(const CStreamObj* p) { return (p->m_nState & CStreamObj::kInChain) != 0; }
    /// Taken out of a chain and not linked since: alone, or in a chain that was cut out.
    static bool IsAbsent(const CStreamObj* p) {
        return (p->m_nState & (osRemoved | osDetached)) != 0;
    }
    /// True if the order index says something: the object is in a chain, or was.
    static bool HasPlace(const CStreamObj* p) { return IsInChain(p) || IsAbsent(p); }
    static bool IsSentinel(const CStreamObj* p) { return (p->m_nState & osSentinel) != 0; }
    static int SlotOf(const CStreamObj* p) { return p->m_nStreamIndex; }
    static void Destroy(CStreamObj* p) { delete p; }

    // Sync marks
    static CSyncMark** SyncList(const CSyncMark* p) { return p->m_ppSyncList; }
    static int RecordedStreams(const CSyncMark* p) { return p->m_nNumStreams; }
    static void LeaveGroup(CSyncMark* p) { p->RemoveFromSyncList(); }
    static bool Tie(CSyncMark* p, CSyncMark* pOther, SyncTable*& pSpare) {
        return p->TieTo(pOther, pSpare);
    }
    static CSyncMark* Counterpart(CSyncMark* p, int stream) {
        return p->m_ppSyncList != nullptr ? p->m_ppSyncList[stream] : nullptr;
    }
    static CSyncMark* CounterpartOrSelf(CSyncMark* p, const CStream* pStream) {
        if (p->m_pStream == pStream) return p;
        return p->m_ppSyncList != nullptr ? p->m_ppSyncList[pStream->m_nIndex] : nullptr;
    }

    // Tokens
    static FieldSlots* Slots(const CToken* p) { return p->m_pSlots; }

    // Fields
    static CFieldValueSet* Set(CField* p, int i) { return p->m_pSets[i]; }
    static int NumSets(const CField* p) { return p->m_nSets; }

    // Streams
    static CStream* NewStream(CPlexa* pPlexa, int index);
    static bool IsComplete(const CStream* p) {
        return p->m_pText != nullptr && p->m_pFirst != nullptr && p->m_pLast != nullptr &&
               p->m_pNumbering != nullptr;
    }
    static int IndexOf(const CStream* p) { return p->m_nIndex; }
    /// The stream itself, or the one that it is a copy of.
    static CStream* OwnerOf(CStream* p) { return p->m_bOwner ? p : StreamOf(p->m_pFirst); }
    static CPlexa* PlexaOf(const CStream* p) { return p->m_pPlexa; }
    static CSyncMark* First(const CStream* p) { return p->m_pFirst; }
    static CSyncMark* Last(const CStream* p) { return p->m_pLast; }
    static const char* Name(const CStream* p) { return p->m_szName; }
    static OrderNumbering* Numbering(const CStream* p) { return p->m_pNumbering; }
    static int FieldIndex(CToken* p, const char* name) {
        return p->m_pStream != nullptr ? p->m_pStream->GetFieldIndex(name) : -1;
    }
    static CField* Field(const CStream* p, int i) { return p->m_pFields[i]; }
    static int NumFields(const CStream* p) { return p->m_nFields; }
    static bool IsFenced(const CStream* p) { return p->m_bFence; }
    static std::uint32_t Destroyed(const CStream* p) { return p->m_nDestroyed; }
    static void Abandon(CStream* p) { p->Abandon(); }

    // The container
    static const CPlexa* Home(const CPlexa* p) { return p->m_pHome; }
    static int NumStreams(const CPlexa* p) { return p->m_nStreams; }
    static CStream* Stream(const CPlexa* p, int i) { return p->m_pStreams[i]; }
    /// How many steps searches may still take: as many as they like, but for those of a test.
    static std::uint64_t& SearchSteps(CPlexa* p) { return p->m_nSearchSteps; }
    static bool AnyFence(const CPlexa* p) { return p->m_nFenced > 0; }
    static bool HasViewer(const CPlexa* p) { return p->m_socket.m_sendSocket != 0; }
    static bool IsDelayed(const CPlexa* p) { return p->m_bDelayDisplay; }
    static CSyncMark* AdvanceMark(const CPlexa* p) {
        return p->m_pTest != nullptr ? p->m_pTest->m_pAdvanceMark : nullptr;
    }
    static CVarList* TopVarList(const CPlexa* p) {
        return p->m_nVarLists > 0 ? p->m_pVarLists[p->m_nVarLists - 1] : nullptr;
    }

    // Variable lists
    static CPlexa* PlexaOf(const CVarList* p) { return p->m_pPlexa; }
    static const bool* Fences(const CVarList* p) { return p->m_bFences; }
    static const char* VarName(const CVarList* p, int i) { return p->m_szNames[i]; }
    static CStreamObj** BoundVar(const CVarList* p, int i) { return p->m_ppBound[i]; }
    static bool HasVarOfKind(const CVarList* p, int i, bool bToken) {
        return p->HasVarOfKind(i, bToken);
    }
    static VarType TypeOf(const CVarList* p, int i) { return p->m_types[i]; }
};

inline bool IsUsable(const CStreamObj* p) {
    return p != nullptr && Internals::IsLinked(p);
}

/// True if the stream or object was made for a stream of this container. Null belongs nowhere.
inline bool BelongsTo(const CPlexa* pPlexa, const CStream* pStream) {
    return pStream != nullptr && pPlexa != nullptr &&
           Internals::PlexaOf(pStream) == Internals::Home(pPlexa);
}

inline bool BelongsTo(const CPlexa* pPlexa, const CStreamObj* p) {
    return p != nullptr && BelongsTo(pPlexa, Internals::StreamOf(p));
}

/// True if the object can be linked into a stream of the container: a token or mark of one of its
/// streams that is not linked yet.
inline bool IsInsertable(const CPlexa* pPlexa, const CStreamObj* p) {
    return BelongsTo(pPlexa, p) && !Internals::IsLinked(p) &&
           (Internals::IsToken(p) || Internals::IsSyncMark(p));
}

/// True if both lie in a stream, pLeft immediately left of pRight.
inline bool AreNeighbours(CStreamObj* pLeft, CStreamObj* pRight) {
    return IsUsable(pLeft) && IsUsable(pRight) && Internals::Next(pLeft) == pRight;
}

/// The same within one chain that was cut out.
inline bool AreDetachedNeighbours(CStreamObj* pLeft, CStreamObj* pRight) {
    return pLeft != nullptr && pRight != nullptr && !Internals::IsLinked(pLeft) &&
           Internals::IsInChain(pLeft) && Internals::Next(pLeft) == pRight;
}

}  // namespace mlds

#endif
