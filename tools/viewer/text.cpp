// Text encodings.
#include "text.h"

#include <iconv.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace mlds_viewer {

namespace {

constexpr const char* kLatin1 = "ISO-8859-1";
constexpr const char* kUtf8 = "UTF-8";
constexpr const char* kUtf32 = std::endian::native == std::endian::little ? "UTF-32LE" : "UTF-32BE";

// Nothing if the text has characters that are none of `from`, or none of `to`.
std::optional<std::string> Recode(std::string_view text, const char* to, const char* from) {
    const iconv_t converter = iconv_open(to, from);
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        throw std::runtime_error(std::string("this system cannot convert ") + from + " to " + to);
    }
    std::string result(4 * text.size(), '\0');   // no character needs more for each byte
    char* pIn = const_cast<char*>(text.data());  // iconv does not write there
    char* pOut = result.data();
    std::size_t nIn = text.size();
    std::size_t nOut = result.size();
    const std::size_t irreversible = iconv(converter, &pIn, &nIn, &pOut, &nOut);
    iconv_close(converter);
    if (irreversible != 0) return std::nullopt;
    result.resize(result.size() - nOut);
    return result;
}

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<signed char>(c) >= 0; });
}

constexpr char32_t kEllipsis = U'\u2026';
constexpr std::size_t kLongestInLine = 60;

char32_t WithPicture(char32_t c) {
    constexpr char32_t kPictures = U'\u2400';
    if (c < 0x20) return kPictures + c;
    if (c == 0x7F) return U'\u2421';
    return c > 0x7F && c < 0xA0 ? U'\uFFFD' : c;
}

bool IsBetween(char32_t c, char32_t first, char32_t last) {
    return c >= first && c <= last;
}

// Marks, embeddings, overrides and isolates: nobody sees them, but they order what is around them.
bool OrdersLines(char32_t c) {
    return c == 0x061C || IsBetween(c, 0x200E, 0x200F) || IsBetween(c, 0x202A, 0x202E) ||
           IsBetween(c, 0x2066, 0x2069);
}

// The blocks that are set aside for what is written from right to left.
bool IsRightToLeft(char32_t c) {
    return IsBetween(c, 0x0590, 0x08FF) || IsBetween(c, 0xFB1D, 0xFDFF) ||
           IsBetween(c, 0xFE70, 0xFEFF) || IsBetween(c, 0x10800, 0x10FFF) ||
           IsBetween(c, 0x1E800, 0x1EFFF);
}

void AppendVisibly(std::u32string& text, char32_t c) {
    if (!OrdersLines(c)) {
        text += WithPicture(c);
        return;
    }
    char code[16];
    const int n = std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(c));
    text += U'\u27E8';
    text.append(code, code + n);
    text += U'\u27E9';
}

// Bytes that hold more than n characters if the text does, whole ones.
std::string_view Beginning(std::string_view text, std::size_t n) {
    constexpr std::size_t kLongestCharacter = 4;
    const std::size_t end = kLongestCharacter * (n + 1);
    if (text.size() <= end) return text;
    std::size_t cut = end;
    const auto isInside = [&] { return (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80; };
    // Latin-1 knows no insides; there a character or three less do not matter.
    while (cut > end - kLongestCharacter && isInside()) --cut;
    return text.substr(0, cut);
}

}  // namespace

std::u32string Wide(std::string_view utf8) {
    const std::string bytes = Recode(utf8, kUtf32, kUtf8).value_or("");
    std::u32string wide(bytes.size() / sizeof(char32_t), U'\0');
    std::memcpy(wide.data(), bytes.data(), wide.size() * sizeof(char32_t));
    return wide;
}

std::string Narrow(std::u32string_view wide) {
    const std::string_view bytes(reinterpret_cast<const char*>(wide.data()),
                                 wide.size() * sizeof(char32_t));
    return Recode(bytes, kUtf8, kUtf32).value_or("");
}

std::string Shown(std::string_view engineText) {
    const auto isPlain = [](char c) { return c >= ' ' && c <= '~'; };
    if (std::ranges::all_of(engineText, isPlain)) return std::string(engineText);
    const char* encoding = IsLatin1(engineText) ? kLatin1 : kUtf8;
    std::u32string text;
    for (const char32_t c : Wide(Recode(engineText, kUtf8, encoding).value_or(""))) {
        AppendVisibly(text, c);
    }
    return Narrow(text);
}

std::string Shown(std::string_view engineText, std::size_t nMost) {
    return Shortened(Shown(Beginning(engineText, nMost)), nMost);
}

std::string Shortened(std::string utf8, std::size_t nMost) {
    if (utf8.size() <= nMost) return utf8;
    std::u32string text = Wide(utf8);
    if (text.size() <= nMost) return utf8;
    text.resize(nMost);
    if (nMost > 0) text.back() = kEllipsis;
    return Narrow(text);
}

std::string Isolated(std::string shown) {
    if (IsAscii(shown) || !std::ranges::any_of(Wide(shown), IsRightToLeft)) return shown;
    // By its first letter it knows its direction.
    return "\u2068" + std::move(shown) + "\u2069";
}

std::string InLine(std::string_view engineText) {
    return Isolated(Shown(engineText, kLongestInLine));
}

std::u32string WithIsolatedCells(std::u32string_view line) {
    std::u32string isolated;
    while (!line.empty()) {
        // A bar of its own, or what stands up to the next.
        const std::u32string_view kBars = U"|\u00B7";
        const std::size_t end = std::max<std::size_t>(line.find_first_of(kBars), 1);
        const std::u32string_view cell = line.substr(0, end);
        const bool bApart = std::ranges::any_of(cell, IsRightToLeft);
        // From left to right: what pads the cell stays at its right.
        if (bApart) isolated += U'\u2066';
        isolated += cell;
        if (bApart) isolated += U'\u2069';
        line.remove_prefix(cell.size());
    }
    return isolated;
}

std::optional<std::string> Typed(std::string_view utf8, bool bLatin1) {
    return Recode(utf8, bLatin1 ? kLatin1 : kUtf8, kUtf8);
}

bool IsLatin1(std::string_view engineText) {
    // Not to UTF-8 again: that lets numbers pass that are no characters.
    return !IsAscii(engineText) && !Recode(engineText, kUtf32, kUtf8);
}

}  // namespace mlds_viewer
