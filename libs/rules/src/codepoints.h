// UTF-8 by its code points, for columns that are the columns of an editor.
#ifndef MLDS_RULES_CODEPOINTS_H
#define MLDS_RULES_CODEPOINTS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace mlds::rules {

struct CodePoint {
    char32_t value = 0;    ///< U+FFFD where the bytes are no UTF-8
    std::size_t next = 0;  ///< the offset behind it
    bool bValid = true;
};

/// The code point that begins at an offset within the text.
CodePoint CodePointAt(std::string_view text, std::size_t offset);

std::u32string CodePoints(std::string_view text);
int CountCodePoints(std::string_view text);
/// Where the code point of that number begins, from 0; the size of the text if it has fewer.
std::size_t OffsetOfCodePoint(std::string_view text, int number);

/// A text that is short enough for a message.
std::string Shortened(std::string_view text);

}  // namespace mlds::rules

#endif
