// Where marks stand beside each other: what is needed to draw streams as aligned lanes.
#ifndef MLDS_VIEWER_TOOL_LAYOUT_H
#define MLDS_VIEWER_TOOL_LAYOUT_H

#include "mirror.h"

namespace mlds_viewer {

struct PlacedMark {
    Id id;
    std::size_t instant;
};

/// A stream. Synchronous marks of several streams stand for one instant. Instants are numbered so
/// that they grow along every stream, unless ties cross.
struct Lane {
    int stream;
    std::vector<PlacedMark> marks;
    // The tokens between marks i and i + 1: none, one, or several that touch.
    std::vector<std::vector<Id>> cells;
};

struct Layout {
    std::size_t nInstants = 0;
    std::vector<Lane> lanes;  // of the streams that have objects, in their order
};

Layout LayOut(const Mirror& mirror);

/// The smallest places of instants at which every cell has its width, which is taken as 1 if it is
/// less. `widths` has a number for every cell of every lane, lane by lane.
std::vector<std::size_t> Places(const Layout& layout, const std::vector<std::size_t>& widths);

}  // namespace mlds_viewer

#endif
