// Tiers over time.
#ifndef MLDS_IO_TIMELINE_H
#define MLDS_IO_TIMELINE_H

#include <string>
#include <vector>

#include "mlds/io/view.h"

namespace mlds::io {

/// A stretch of time, in milliseconds, and what a lane has there; nothing if the text is empty.
struct TimedLabel {
    double begin = 0;
    double end = 0;
    std::string text;
    bool bHighlighted = false;
};

struct TimedTier {
    std::string name;
    std::vector<TimedLabel> labels;
    bool bGuides = false;
};

struct Timeline {
    double end = 0;
    std::vector<TimedTier> tiers;
};

/// All lanes, each from 0 to the end without a gap. Where several tokens share a stretch of time
/// that nothing divides, like the letters of one phone, each gets a part of the same length. What
/// takes no time, like a silent letter, shows in front of what follows it. Without time stream, or
/// where nothing lasts, the end is 0 and there are no labels.
Timeline TimelineOf(const View& view);

}  // namespace mlds::io

#endif
