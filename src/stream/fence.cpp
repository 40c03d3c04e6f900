// The fence check of scans.
#include "stream/fence.h"

namespace mlds {

bool IsHeldByFenceInContainer(CPlexa* pPlexa, CSyncMark* pMark) {
    CSyncMark* pFree = Internals::AdvanceMark(pPlexa);
    if (pFree != nullptr) {
        CStream* pFreeStream = Internals::StreamOf(pFree);
        if (Internals::CounterpartOrSelf(pMark, pFreeStream) == pFree) return false;
    }
    return HasFencedMember(pMark);
}

}  // namespace mlds
