// A mirror as plain text.
#ifndef MLDS_VIEWER_TOOL_TERMINAL_H
#define MLDS_VIEWER_TOOL_TERMINAL_H

#include "mirror.h"

namespace mlds_viewer {

/// The streams as aligned lines, "|" for every mark, cut into blocks of at most so many columns.
std::string TiersText(const Mirror& mirror, std::size_t nColumns);

/// The streams with their fields, a line each; the values of the fields behind them.
std::string StreamsText(const Mirror& mirror);
/// The variable lists and what their variables are bound to.
std::string VariablesText(const Mirror& mirror);
/// The tokens of a stream with their numbers, from 1.
std::string TokensText(const Mirror& mirror, int stream);
/// The fields of a token, a line each.
std::string FieldsText(const Mirror& mirror, Id token);

/// What fields of a type hold, in a word.
std::string TypeName(std::optional<int> type);

}  // namespace mlds_viewer

#endif
