// What the operations that place objects between marks share.
#ifndef MLDS_CONTAINER_PLACING_H
#define MLDS_CONTAINER_PLACING_H

#include "internals.h"

namespace mlds {

/// The object if it was placed; otherwise it is destroyed and the result is null. For objects that
/// the library made itself.
template <typename Object>
Object* KeepIfLinked(Object* p) {
    if (Internals::IsLinked(p)) return p;
    Internals::Destroy(p);
    return nullptr;
}

/// Carries a mark into the stream: its counterpart there, or else its projection, which may make
/// one. Null if there is no place for it, and for null.
inline CSyncMark* Carry(CPlexa* pPlexa, CStream* pStream, CSyncMark* pMark) {
    if (pMark == nullptr) return nullptr;
    CSyncMark* pCarried = pPlexa->ProjectSyncMark(pStream, pMark, nullptr);
    return pCarried != nullptr && Internals::IsLinked(pCarried) ? pCarried : nullptr;
}

/// Two marks carried into a stream, the left one first.
struct Bounds {
    CSyncMark* pLeft = nullptr;
    CSyncMark* pRight = nullptr;

    /// False if a mark that was given cannot be carried.
    bool Carry(CPlexa* pPlexa, CStream* pStream, CSyncMark* pGivenLeft, CSyncMark* pGivenRight) {
        pLeft = mlds::Carry(pPlexa, pStream, pGivenLeft);
        if (pLeft == nullptr && pGivenLeft != nullptr) return false;
        pRight = mlds::Carry(pPlexa, pStream, pGivenRight);
        return pRight != nullptr || pGivenRight == nullptr;
    }
};

/// A new mark of the stream, linked between two neighbours (either may be null, see
/// CStream::InsertStreamObj); null if it could not be placed.
inline CSyncMark* InsertNewMark(CStream* pStream, CStreamObj* pLeft, CStreamObj* pRight) {
    CSyncMark* pMark = new CSyncMark(pStream);
    if (pMark == nullptr) return nullptr;
    pStream->InsertStreamObj(pMark, pLeft, pRight);
    return KeepIfLinked(pMark);
}

/// The mark that closes a place opened by pLeft: its right neighbour if that is a mark, otherwise a
/// new one. Null if none could be placed.
inline CSyncMark* MarkRightOf(CStream* pStream, CSyncMark* pLeft) {
    CStreamObj* pNext = Internals::Next(pLeft);
    if (pNext != nullptr && Internals::IsSyncMark(pNext)) return static_cast<CSyncMark*>(pNext);
    return InsertNewMark(pStream, pLeft, nullptr);
}

/// The mirror image: the mark that opens a place closed by pRight.
inline CSyncMark* MarkLeftOf(CStream* pStream, CSyncMark* pRight) {
    CStreamObj* pPrev = Internals::Prev(pRight);
    if (pPrev != nullptr && Internals::IsSyncMark(pPrev)) return static_cast<CSyncMark*>(pPrev);
    return InsertNewMark(pStream, nullptr, pRight);
}

/// True if pRight is met walking right from pLeft.
bool LiesRightOf(CSyncMark* pRight, CSyncMark* pLeft);

/// Removes and destroys what lies right of pLeft, up to pRight. False if pRight is not met; what
/// lay right of pLeft is gone then, all but the end sentinel.
bool RemoveBetween(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight);

}  // namespace mlds

#endif
