// Scans along one chain, with and without respect for fences.
#ifndef MLDS_STREAM_SCAN_H
#define MLDS_STREAM_SCAN_H

#include "internals.h"
#include "stream/absence.h"
#include "stream/fence.h"

namespace mlds {

/// True if scans from this object have to look at fences at all.
inline bool FencesMatter(const CStreamObj* p) {
    const CStream* pStream = Internals::StreamOf(p);
    const CPlexa* pPlexa = pStream != nullptr ? Internals::PlexaOf(pStream) : nullptr;
    return pPlexa != nullptr && Internals::AnyFence(pPlexa);
}

/// The neighbour in the direction. Null at the end of the chain, where stale links may lead to what
/// is gone, and for a mark held by a fence.
inline CStreamObj* NeighbourOf(CStreamObj* p, ScanDirectionType direction, bool bFenceCheck) {
    if (bFenceCheck && IsHeldByFence(p)) return nullptr;
    return StepFrom(p, direction == sdRight);
}

/// NearestOf for an object that lies in no chain.
CStreamObj* NearestWhileStale(CStreamObj* p, bool bRight, ObjectType type, bool bFenceCheck);

/// The nearest object of a kind in the direction, under the same rules. The object found is not
/// checked itself.
inline CStreamObj* NearestOf(CStreamObj* p, ScanDirectionType direction, ObjectType type,
                             bool bFenceCheck) {
    const bool bRight = direction == sdRight;
    if (!Internals::IsInChain(p)) return NearestWhileStale(p, bRight, type, bFenceCheck);
    const bool bFences = bFenceCheck && FencesMatter(p);
    do {
        if (bFences && IsHeldByFence(p)) return nullptr;
        p = Internals::Neighbour(p, bRight);
    } while (p != nullptr && !Internals::IsOfType(p, type));
    return p;
}

}  // namespace mlds

#endif
