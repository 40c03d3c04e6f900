// Objects that left a chain: what they remember, and what their end changes.
#include "stream/absence.h"

#include <initializer_list>

namespace mlds {

void NoteRemoval(CStreamObj* p) {
    CStream* pStream = Internals::StreamOf(p);
    if (!Internals::IsAbsent(p)) ++Internals::Absent(pStream);
    Internals::SetPlace(p, osRemoved);
    Internals::Epoch(p) = Internals::Destroyed(pStream);
    for (const bool bRight : {false, true}) {
        CStreamObj* pNamed = Internals::Neighbour(p, bRight);
        if (pNamed != nullptr && Internals::StreamOf(pNamed) != pStream) {
            Internals::SetNamedAbroad(pNamed);
        }
    }
}

void NoteCut(CStreamObj* p, std::uint32_t origin) {
    if (!Internals::IsAbsent(p)) ++Internals::Absent(Internals::StreamOf(p));
    Internals::SetPlace(p, osDetached);
    Internals::Epoch(p) = origin;
}

namespace {

void CountEverywhere(CPlexa* pPlexa) {
    for (int i = 0, n = Internals::NumStreams(pPlexa); i < n; ++i) {
        // While a container goes, its streams go one by one.
        if (CStream* pStream = Internals::Stream(pPlexa, i)) ++Internals::Destroyed(pStream);
    }
}

}  // namespace

void NoteEnd(CStreamObj* p) {
    if (!Internals::IsAbsent(p)) return;
    CStream* pStream = Internals::StreamOf(p);
    CPlexa* pPlexa = Internals::PlexaOf(pStream);
    ++Internals::Destroyed(pStream);
    if (pPlexa != nullptr && (Internals::State(p) & osNamedAbroad) != 0) CountEverywhere(pPlexa);
    Internals::SetPlace(p, 0);
    if (--Internals::Absent(pStream) == 0 && pPlexa == nullptr) Internals::DestroyShell(pStream);
}

}  // namespace mlds
