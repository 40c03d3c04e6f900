// Objects that left a chain: what they remember, and what their end changes.
#include "stream/absence.h"

#include <initializer_list>

#include "stream/placeaccess.h"

namespace mlds {

void NoteRemoval(CStreamObj* p) {
    CStream* pStream = Internals::StreamOf(p);
    if (!Internals::IsAbsent(p)) ++PlaceAccess::Absent(pStream);
    PlaceAccess::Set(p, osRemoved);
    // Without a container nobody counts for neighbours of other streams: links lead nowhere then.
    const bool bAlone = Internals::PlexaOf(pStream) == nullptr;
    PlaceAccess::SetEpoch(p, Internals::Destroyed(pStream) - (bAlone ? 1 : 0));
    for (const bool bRight : {false, true}) {
        CStreamObj* pNamed = Internals::Neighbour(p, bRight);
        if (pNamed != nullptr && Internals::StreamOf(pNamed) != pStream) {
            PlaceAccess::SetNamedAbroad(pNamed);
        }
    }
}

void NoteCut(CStreamObj* p, std::uint32_t origin) {
    if (!Internals::IsAbsent(p)) ++PlaceAccess::Absent(Internals::StreamOf(p));
    PlaceAccess::Set(p, osDetached);
    PlaceAccess::SetEpoch(p, origin);
}

namespace {

void CountEverywhere(CPlexa* pPlexa) {
    for (int i = 0, n = Internals::NumStreams(pPlexa); i < n; ++i) {
        // While a container goes, its streams go one by one.
        if (CStream* pStream = Internals::Stream(pPlexa, i)) ++PlaceAccess::Destroyed(pStream);
    }
}

void CountEnd(CStreamObj* p) {
    CStream* pStream = Internals::StreamOf(p);
    ++PlaceAccess::Destroyed(pStream);
    if ((Internals::State(p) & osNamedAbroad) != 0 && Internals::PlexaOf(pStream) != nullptr) {
        CountEverywhere(Internals::PlexaOf(pStream));
    }
    PlaceAccess::Set(p, 0);
}

}  // namespace

void NoteGone(CStreamObj* p) {
    CountEnd(p);
}

void CountReturn(CStreamObj* p) {
    --PlaceAccess::Absent(Internals::StreamOf(p));
}

void NoteEnd(CStreamObj* p) {
    if (!Internals::IsAbsent(p)) return;
    CStream* pStream = Internals::StreamOf(p);
    CountEnd(p);
    // The last one that knows a stream whose container is gone takes it along.
    if (--PlaceAccess::Absent(pStream) == 0 && Internals::PlexaOf(pStream) == nullptr) {
        PlaceAccess::DestroyShell(pStream);
    }
}

}  // namespace mlds
