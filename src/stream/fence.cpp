// The fence check of scans.
#include "stream/fence.h"

namespace mlds {

bool IsHeldByFenceInContainer(CPlexa* pPlexa, CSyncMark* pMark) {
    CSyncMark* pFree = Internals::AdvanceMark(pPlexa);
    if (pFree != nullptr) {
        if (pMark == pFree) return false;
        if (Internals::StreamOf(pMark) != Internals::StreamOf(pFree) &&
            Internals::Counterpart(pMark, Internals::SlotOf(pFree)) == pFree) {
            return false;
        }
    }
    return HasFencedMember(pMark);
}

}  // namespace mlds
