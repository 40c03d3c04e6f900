// Walks of the operations that place and remove what lies between two marks.
#include "container/placing.h"

namespace mlds {

bool LiesRightOf(CSyncMark* pRight, CSyncMark* pLeft) {
    for (CStreamObj* p = Internals::Next(pLeft); p != nullptr; p = Internals::Next(p)) {
        if (p == pRight) return true;
    }
    return false;
}

bool RemoveBetween(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight) {
    for (CStreamObj* p = Internals::Next(pLeft); p != nullptr;) {
        if (p == pRight) return true;
        CStreamObj* pNext = Internals::Next(p);
        pStream->RemoveStreamObj(p, true);
        p = pNext;
    }
    return false;
}

}  // namespace mlds
