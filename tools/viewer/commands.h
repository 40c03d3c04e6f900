// What can be typed.
#ifndef MLDS_VIEWER_TOOL_COMMANDS_H
#define MLDS_VIEWER_TOOL_COMMANDS_H

#include <optional>
#include <string>

#include "viewer.h"

namespace mlds_viewer {

/// Carries out a command line; what is to be printed, or nothing if the program is to end.
std::optional<std::string> CarryOut(const std::string& line, Viewer& viewer, std::size_t nColumns);

/// A journal entry as a line: its number, its code, and what it says.
std::string EntryText(const Entry& entry);

}  // namespace mlds_viewer

#endif
