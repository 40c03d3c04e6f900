// Praat's format for annotated time.
#ifndef TRANSCRIBE_TEXTGRID_H
#define TRANSCRIBE_TEXTGRID_H

#include <iosfwd>

#include "timeline.h"

namespace transcribe {

/// Writes a TextGrid with an interval tier for every tier, in seconds and UTF-8. There must be some
/// time.
void WriteTextGrid(const std::vector<TimedTier>& timeline, std::ostream& out);

}  // namespace transcribe

#endif
