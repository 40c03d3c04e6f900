// Text in UTF-8 on a screen of columns.
#include "mlds/io/width.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace mlds::io {

namespace {

constexpr UChar32 kReplacement = 0xFFFD;
constexpr UChar32 kSoftHyphen = 0xAD;

// The next code point, negative for bytes that are none.
UChar32 Next(std::string_view text, std::size_t& at) {
    const auto* pBytes = reinterpret_cast<const std::uint8_t*>(text.data());
    auto i = static_cast<std::int64_t>(at);
    const auto end = static_cast<std::int64_t>(text.size());
    UChar32 c = 0;
    U8_NEXT(pBytes, i, end, c);
    at = static_cast<std::size_t>(i);
    return c;
}

void Append(std::string& text, UChar32 c) {
    std::uint8_t bytes[U8_MAX_LENGTH];
    int n = 0;
    U8_APPEND_UNSAFE(bytes, n, c);
    text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(n));
}

std::size_t ColumnsOf(UChar32 c) {
    if (c < 0) return 1;
    if (c < 0x7F) return 1;
    // Vowels and final consonants of Hangul that are written apart join the block before them.
    const int syllable = u_getIntPropertyValue(c, UCHAR_HANGUL_SYLLABLE_TYPE);
    if (syllable == U_HST_VOWEL_JAMO || syllable == U_HST_TRAILING_JAMO) return 0;
    constexpr std::uint32_t kInvisible = U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK;
    if ((U_GET_GC_MASK(c) & kInvisible) != 0 && c != kSoftHyphen) return 0;
    const int width = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

// Nearly all labels: one byte, one column, nothing to look up.
bool IsPlain(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c < 0x7F; });
}

UChar32 Shown(UChar32 c) {
    if (c < 0) return kReplacement;
    if (c < 0x20) return 0x2400 + c;
    if (c == 0x7F) return 0x2421;
    // Noncharacters may stand in no XML either.
    const bool bControl = c >= 0x80 && c < 0xA0;
    return bControl || U_IS_UNICODE_NONCHAR(c) || c == 0x2028 || c == 0x2029 ? kReplacement : c;
}

}  // namespace

std::string Cleaned(std::string_view utf8) {
    if (IsPlain(utf8)) return std::string(utf8);
    std::string cleaned;
    cleaned.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) Append(cleaned, Shown(Next(utf8, i)));
    return cleaned;
}

std::size_t Columns(std::string_view utf8) {
    if (IsPlain(utf8)) return utf8.size();
    std::size_t columns = 0;
    for (std::size_t i = 0; i < utf8.size();) columns += ColumnsOf(Next(utf8, i));
    return columns;
}

std::string CutColumns(std::string_view utf8, std::size_t from, std::size_t to) {
    std::string cut;
    std::size_t column = 0;
    // What takes no column goes with the character before it.
    bool bIn = false;
    for (std::size_t i = 0; i < utf8.size() && column <= to;) {
        const std::size_t begin = i;
        const std::size_t width = ColumnsOf(Next(utf8, i));
        if (width == 0) {
            if (bIn || (column == 0 && from == 0)) cut += utf8.substr(begin, i - begin);
            continue;
        }
        bIn = column >= from && column + width <= to;
        if (bIn) {
            cut += utf8.substr(begin, i - begin);
        } else if (column < to && column + width > from) {
            cut += ' ';
        }
        column += width;
    }
    return cut;
}

}  // namespace mlds::io
