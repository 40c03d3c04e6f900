// Tiers as text.
#ifndef MLDS_IO_ALIGNED_H
#define MLDS_IO_ALIGNED_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "mlds/io/view.h"

namespace mlds::io {

/// Prints every lane on a line of its own, in UTF-8, "|" for every mark. Synchronous marks stand in
/// one column. What is wider than `width` columns is cut into blocks, behind a blank of the text
/// where possible.
void PrintAligned(const View& view, std::ostream& out, std::size_t width = 100);

/// What stands between the tokens of PrintTokens.
struct Between {
    std::string_view tokens = " ";
    std::string_view groups = "  ";
};

/// The tokens of a lane in one line. Groups, such as words, are divided where a token of `pGroups`
/// begins or ends; null: there is one group.
std::string TokenLine(const Lane& lane, CStream* pGroups, const Between& between = {});

}  // namespace mlds::io

#endif
