// What hosts call for every object of a walk, open to the compiler.
//
// These operations lead from one class to another and need all of them, so they stand behind the
// classes (mlds/classes/), and the families' headers (mlds/token.h ...) include both.
#ifndef MLDS_INLINE_H
#define MLDS_INLINE_H

#include "mlds/classes/stream.h"
#include "mlds/classes/syncmark.h"
#include "mlds/classes/token.h"

inline CToken* CStreamObj::GetNextToken() {
    return static_cast<CToken*>(Nearest(otToken, true));
}

inline CToken* CStreamObj::GetPrevToken() {
    return static_cast<CToken*>(Nearest(otToken, false));
}

inline CSyncMark* CStreamObj::GetNextSyncMark() {
    return static_cast<CSyncMark*>(Nearest(otSyncMark, true));
}

inline CSyncMark* CStreamObj::GetPrevSyncMark() {
    return static_cast<CSyncMark*>(Nearest(otSyncMark, false));
}

inline CSyncMark* CSyncMark::GetCorrespondingSyncMark(CStream* pStream) {
    if (pStream == nullptr) return nullptr;
    if (GetStream() == pStream) return this;
    return m_ppSyncList != nullptr ? m_ppSyncList[pStream->GetStreamIndex()] : nullptr;
}

#endif
