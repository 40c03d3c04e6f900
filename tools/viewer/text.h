// The engine's texts and ours. An engine writes names in UTF-8 or in Latin-1 and does not say
// which; here everything is shown and typed in UTF-8.
#ifndef MLDS_VIEWER_TOOL_TEXT_H
#define MLDS_VIEWER_TOOL_TEXT_H

#include <optional>
#include <string>
#include <string_view>

namespace mlds_viewer {

/// The text in UTF-8, taken as Latin-1 unless it is UTF-8 already. Control characters become
/// visible: a name cannot break a line, turn it around, or write to a terminal.
std::string Shown(std::string_view engineText);

/// The same with at most so many characters. Of longer texts it is the beginning with an ellipsis;
/// how much longer they are does not count for the time it takes.
std::string Shown(std::string_view engineText, std::size_t nMost);

/// A text in UTF-8, cut in the same way.
std::string Shortened(std::string utf8, std::size_t nMost);

/// A shown text that is to stand inside of a line. Where parts of it are written from right to left
/// it is isolated, or the rest of the line would join them.
std::string Isolated(std::string shown);

/// An engine's name inside of a line: shown, of bearable length, and isolated.
std::string InLine(std::string_view engineText);

/// The same for a line that is aligned by columns, cell by cell. Isolates have no width, so this
/// comes last.
std::u32string WithIsolatedCells(std::u32string_view line);

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
