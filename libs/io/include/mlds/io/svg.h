// Tiers as a drawing.
#ifndef MLDS_IO_SVG_H
#define MLDS_IO_SVG_H

#include <iosfwd>
#include <string>

#include "mlds/io/timeline.h"

namespace mlds::io {

/// Draws the tiers as lanes over a time axis, under a title. There must be some time.
void WriteSvg(const Timeline& timeline, const std::string& title, std::ostream& out);

}  // namespace mlds::io

#endif
