// Text in UTF-8 on a screen of columns.
#ifndef MLDS_IO_WIDTH_H
#define MLDS_IO_WIDTH_H

#include <cstddef>
#include <string>
#include <string_view>

namespace mlds::io {

/// Text that may stand in a line and in XML: a sign that shows it for every control character
/// (U+2400 and on), U+FFFD for bytes that are no UTF-8.
std::string Cleaned(std::string_view utf8);

/// How many columns a text takes: none for combining and invisible characters, two for wide ones of
/// East Asia, else one.
std::size_t Columns(std::string_view utf8);

/// What a text shows in the columns from `from` up to `to`. Blanks stand for the half of a wide
/// character.
std::string CutColumns(std::string_view utf8, std::size_t from, std::size_t to);

}  // namespace mlds::io

#endif
