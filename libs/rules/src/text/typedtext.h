// A text taken apart into the characters that a person typed.
#ifndef MLDS_RULES_TYPEDTEXT_H
#define MLDS_RULES_TYPEDTEXT_H

#include <unicode/unistr.h>

#include <string>
#include <string_view>
#include <vector>

#include "text/unicodetable.h"

namespace mlds::rules {

/// A text in NFC, cut into characters: a base with the combining marks behind it. Indices are those
/// of characters; offsets those of code points.
struct TypedText {
    icu::UnicodeString utf16;
    std::u32string typed;
    std::u32string lowered;
    /// Where every character begins, and behind the last one the end: in `typed`, in `lowered` and
    /// in `utf16`.
    std::vector<int> begins;
    std::vector<int> loweredBegins;
    std::vector<int> units;
    /// Of every U+FFFD in the text, in order: the byte that was no UTF-8, or -1 where it was typed.
    std::vector<int> badBytes;

    int size() const { return static_cast<int>(begins.size()) - 1; }
    std::u32string_view Character(int index) const;
    char32_t Base(int index) const { return typed[static_cast<std::size_t>(begins[Index(index)])]; }
    /// The UTF-16 text of characters.
    icu::UnicodeString Units(int begin, int end) const;
    /// The character that begins at an offset of `utf16`; -1 if none does.
    int AtUnit(int unit) const;

    static std::size_t Index(int index) { return static_cast<std::size_t>(index); }
};

/// Fills `text`, whose memory is used again. The text has at most kLongestText bytes.
void TakeApart(std::string_view utf8, UnicodeTable& unicode, TypedText& text);
inline constexpr std::size_t kLongestText = std::size_t{1} << 29;

}  // namespace mlds::rules

#endif
