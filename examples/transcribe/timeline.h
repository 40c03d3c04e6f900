// The tiers of an utterance over time.
#ifndef TRANSCRIBE_TIMELINE_H
#define TRANSCRIBE_TIMELINE_H

#include <string>
#include <vector>

#include "tiers.h"

namespace transcribe {

/// A stretch of time, in milliseconds, and what a tier has there; nothing if the text is empty. In
/// UTF-8.
struct TimedLabel {
    double begin;
    double end;
    std::string text;
    bool bStressed = false;
};

struct TimedTier {
    std::string name;
    std::vector<TimedLabel> labels;
};

/// All tiers, each from 0 to the end without a gap. Where several tokens share a stretch of time
/// that nothing divides, like the letters of one phone, each gets a part of the same length. What
/// takes no time, like a silent letter, shows in front of what follows it. Without any phone or
/// pause there are no labels.
std::vector<TimedTier> Timeline(Tiers& tiers);

}  // namespace transcribe

#endif
