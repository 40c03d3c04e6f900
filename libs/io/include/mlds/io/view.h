// Which tiers of a container people are to see, and how.
#ifndef MLDS_IO_VIEW_H
#define MLDS_IO_VIEW_H

#include <functional>
#include <string>
#include <vector>

#include "mlds/mlds.h"

namespace mlds::io {

/// Two neighbouring marks of a stream and the token between them; null if there is none.
struct Interval {
    CSyncMark* pLeft = nullptr;
    CToken* pToken = nullptr;
    CSyncMark* pRight = nullptr;
};

/// One stream, as it is to be shown.
struct Lane {
    std::string name;
    CStream* pStream = nullptr;
    /// What is shown of a token, in UTF-8; without, its name. Never asked where there is no token.
    std::function<std::string(const Interval&)> label;
    /// Which tokens stand out in drawings; without, none.
    std::function<bool(CToken*)> highlighted;
    /// The characters as typed: long texts are broken behind its blanks.
    bool bText = false;
    /// Drawings have a line through all lanes where its tokens begin and end.
    bool bGuides = false;
};

/// The lanes from top to bottom. Everything refers to the container and is good while it is.
struct View {
    CPlexa& plexa;
    std::vector<Lane> lanes;
    /// Whose tokens are durations in milliseconds; null: the container's default time stream.
    CStream* pTime = nullptr;
};

/// All streams of a container under their own names.
View ViewOf(CPlexa& plexa);

/// All intervals between the sentinels of a stream, from left to right.
std::vector<Interval> Intervals(CStream* pStream);

/// What a lane shows of an interval, fit to be printed (see Cleaned); empty without a token.
std::string LabelOf(const Lane& lane, const Interval& interval);

}  // namespace mlds::io

#endif
