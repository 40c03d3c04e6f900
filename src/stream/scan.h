// Scans along one chain, with and without respect for fences.
#ifndef MLDS_STREAM_SCAN_H
#define MLDS_STREAM_SCAN_H

#include "internals.h"
#include "stream/fence.h"

namespace mlds {

/// True if scans from this object have to look at fences at all.
inline bool FencesMatter(const CStreamObj* p) {
    const CStream* pStream = Internals::StreamOf(p);
    return pStream != nullptr && Internals::AnyFence(Internals::PlexaOf(pStream));
}

/// The neighbour in the direction. Null at the end of the chain, for an object that is in no
/// chain, whose links are stale, and for a mark held by a fence.
inline CStreamObj* NeighbourOf(CStreamObj* p, ScanDirectionType direction, bool bFenceCheck) {
    if (!Internals::IsInChain(p)) return nullptr;
    if (bFenceCheck && IsHeldByFence(p)) return nullptr;
    return Internals::Neighbour(p, direction == sdRight);
}

/// The nearest object of a kind in the direction, under the same rules. The object found is not
/// checked itself.
inline CStreamObj* NearestOf(CStreamObj* p, ScanDirectionType direction, ObjectType type,
                             bool bFenceCheck) {
    if (!Internals::IsInChain(p)) return nullptr;
    const bool bRight = direction == sdRight;
    const bool bFences = bFenceCheck && FencesMatter(p);
    do {
        if (bFences && IsHeldByFence(p)) return nullptr;
        p = Internals::Neighbour(p, bRight);
    } while (p != nullptr && !Internals::IsOfType(p, type));
    return p;
}

}  // namespace mlds

#endif
