// The engine's texts and ours. An engine writes names in UTF-8 or in Latin-1 and does not say
// which; here everything is shown and typed in UTF-8.
#ifndef MLDS_VIEWER_TOOL_TEXT_H
#define MLDS_VIEWER_TOOL_TEXT_H

#include <optional>
#include <string>
#include <string_view>

namespace mlds_viewer {

/// The text in UTF-8, taken as Latin-1 unless it is UTF-8 already. Control characters become
/// visible: a name cannot break a line or write to a terminal.
std::string Shown(std::string_view engineText);

/// What the engine calls a text that somebody typed, in the given encoding; nothing if it has
/// characters that the encoding lacks or is no UTF-8.
std::optional<std::string> Typed(std::string_view utf8, bool bLatin1);

/// True for what cannot be UTF-8: an engine that writes so is taken to use Latin-1.
bool IsLatin1(std::string_view engineText);

/// Between UTF-8 and one number a character; empty if the text is no such text.
std::u32string Wide(std::string_view utf8);
std::string Narrow(std::u32string_view wide);

}  // namespace mlds_viewer

#endif
