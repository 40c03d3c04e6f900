// Messages in words.
#ifndef MLDS_VIEWER_TOOL_WORDS_H
#define MLDS_VIEWER_TOOL_WORDS_H

#include "mirror.h"

namespace mlds_viewer {

/// What a message says, told to somebody who knows the structure as it was before: "token a of
/// phone inserted behind mark 0x0000002a of phone". Names are as they are shown inside of lines.
std::string InWords(const Event& event, const Mirror& before);

/// The object that a message is about; 0 for none.
Id ObjectOf(const Event& event);

}  // namespace mlds_viewer

#endif
