// Walking along a tier.
#ifndef TRANSCRIBE_INTERVAL_H
#define TRANSCRIBE_INTERVAL_H

#include <vector>

#include "mlds/mlds.h"

namespace transcribe {

/// Two neighbouring marks of a stream and the token between them; null if there is none.
struct Interval {
    CSyncMark* pLeft;
    CToken* pToken;
    CSyncMark* pRight;
};

/// The intervals between two marks of one stream, from left to right.
std::vector<Interval> Intervals(CSyncMark* pFrom, CSyncMark* pTo);

/// The outermost marks of an utterance in a stream, just inside the sentinels.
CSyncMark* FirstMark(CStream* pStream);
CSyncMark* LastMark(CStream* pStream);

/// All intervals of an utterance in a stream.
std::vector<Interval> Intervals(CStream* pStream);

}  // namespace transcribe

#endif
