// Scans that begin outside of every chain.
#include "stream/scan.h"

namespace mlds {

CStreamObj* NearestWhileStale(CStreamObj* p, bool bRight, ObjectType type, bool bFenceCheck) {
    // An object that was never linked has no links, and its stream may be gone.
    if (!Internals::HasPlace(p)) return nullptr;
    const bool bFences = bFenceCheck && FencesMatter(p);
    do {
        if (bFences && IsHeldByFence(p)) return nullptr;
        p = StepFrom(p, bRight);
    } while (p != nullptr && !Internals::IsOfType(p, type));
    return p;
}

}  // namespace mlds
