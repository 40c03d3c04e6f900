// Fences: whether a scan may leave a sync mark.
#ifndef MLDS_STREAM_FENCE_H
#define MLDS_STREAM_FENCE_H

#include "internals.h"

namespace mlds {

/// True if the mark's group has a member in a fenced stream, among the streams that existed when
/// the mark was made.
inline bool HasFencedMember(CSyncMark* pMark) {
    CSyncMark** ppList = Internals::SyncList(pMark);
    if (ppList == nullptr) return false;
    for (int i = 0, n = Internals::RecordedStreams(pMark); i < n; ++i) {
        if (ppList[i] != nullptr && Internals::IsFenced(Internals::StreamOf(ppList[i]))) {
            return true;
        }
    }
    return false;
}

/// True if the object is a sync mark that no scan may leave: a fenced stream has a mark there, and
/// the place is not the one that the running test may go on from.
bool IsHeldByFenceInContainer(CPlexa* pPlexa, CSyncMark* pMark);

inline bool IsHeldByFence(CStreamObj* p) {
    if (!Internals::IsSyncMark(p) || Internals::StreamOf(p) == nullptr) return false;
    CPlexa* pPlexa = Internals::PlexaOf(Internals::StreamOf(p));
    return pPlexa != nullptr && Internals::AnyFence(pPlexa) &&
           IsHeldByFenceInContainer(pPlexa, static_cast<CSyncMark*>(p));
}

}  // namespace mlds

#endif
