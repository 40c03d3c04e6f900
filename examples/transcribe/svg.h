// The tiers as a drawing.
#ifndef TRANSCRIBE_SVG_H
#define TRANSCRIBE_SVG_H

#include <iosfwd>

#include "timeline.h"

namespace transcribe {

/// Draws the tiers as lanes over a time axis. There must be some time.
void WriteSvg(const std::vector<TimedTier>& timeline, const std::string& title, std::ostream& out);

}  // namespace transcribe

#endif
