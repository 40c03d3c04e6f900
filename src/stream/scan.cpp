// Scans that begin outside of every chain.
#include "stream/scan.h"

namespace mlds {

CStreamObj* NearestWhileStale(CStreamObj* p, bool bRight, ObjectType type, bool bFences) {
    do {
        if (bFences && IsHeldByFence(p)) return nullptr;
        p = StepFrom(p, bRight);
    } while (p != nullptr && !Internals::IsOfType(p, type));
    return p;
}

}  // namespace mlds
