// The tokens between two marks of any streams, in one stream.
#ifndef MLDS_CONTAINER_TOKENRANGE_H
#define MLDS_CONTAINER_TOKENRANGE_H

#include "internals.h"

namespace mlds {

struct TokenRange {
    CSyncMark* pLeft = nullptr;  // the counterparts in the stream
    CSyncMark* pRight = nullptr;

    /// False if a mark is null, belongs elsewhere or has no counterpart in the stream.
    bool Find(const CPlexa* pPlexa, const CStream* pStream, CSyncMark* pFrom, CSyncMark* pTo) {
        if (!BelongsTo(pPlexa, pFrom) || !BelongsTo(pPlexa, pTo)) return false;
        pLeft = Internals::CounterpartOrSelf(pFrom, pStream);
        pRight = Internals::CounterpartOrSelf(pTo, pStream);
        return IsUsable(pLeft) && IsUsable(pRight);
    }

    /// Calls f with every token from left to right. False if the walk came to the end of the stream
    /// and not to the right mark.
    template <typename F>
    bool ForEach(F f) const {
        CStreamObj* p = pLeft;
        for (; p != nullptr && p != pRight; p = Internals::Next(p)) {
            if (Internals::IsToken(p)) f(static_cast<CToken*>(p));
        }
        return p != nullptr;
    }
};

}  // namespace mlds

#endif
