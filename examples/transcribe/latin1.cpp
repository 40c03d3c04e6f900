// Text at the borders of the program: what is folded, and what is refused.
#include "latin1.h"

#include <iconv.h>

#include <bit>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace transcribe {

namespace {

// Characters that real text is full of, and what they become. docs/transcribe.md lists them.
struct Fold {
    std::string_view latin1;
    std::u32string_view characters;
};
constexpr Fold kFolds[] = {
    {" ", U"\t\u00A0\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u202F"},
    {"-", U"\u2010\u2011\u2012\u2013\u2014\u2015\u2212"},
    {"'", U"\u2018\u2019\u201A\u201B\u2032"},
    {"\"", U"\u201C\u201D\u201E\u201F\u2033"},
    {"\xAB", U"\u2039"},
    {"\xBB", U"\u203A"},
    {"\xB7", U"\u2022"},
    {"...", U"\u2026"},
    // Invisible: soft hyphen, zero width, direction.
    {"", U"\u00AD\u200B\u200C\u200D\u200E\u200F\u202A\u202B\u202C\u202D\u202E\u2060\uFEFF"},
};

// Accents that stand behind their letter, as some systems write them.
struct Accent {
    char32_t mark;
    std::u32string_view letters;
    std::u32string_view composed;
};
constexpr Accent kAccents[] = {
    {0x0300, U"aeiouAEIOU", U"àèìòùÀÈÌÒÙ"},
    {0x0301, U"aeiouyAEIOUY", U"áéíóúýÁÉÍÓÚÝ"},
    {0x0302, U"aeiouAEIOU", U"âêîôûÂÊÎÔÛ"},
    {0x0303, U"anoANO", U"ãñõÃÑÕ"},
    {0x0308, U"aeiouyAEIOU", U"äëïöüÿÄËÏÖÜ"},
    {0x030A, U"aA", U"åÅ"},
    {0x0327, U"cC", U"çÇ"},
};

unsigned char Code(char c) {
    return static_cast<unsigned char>(c);
}

bool JoinAccent(char32_t mark, std::string& text) {
    for (const Accent& accent : kAccents) {
        if (accent.mark != mark || text.empty()) continue;
        const std::size_t i = accent.letters.find(Code(text.back()));
        if (i == std::u32string_view::npos) continue;
        text.back() = static_cast<char>(accent.composed[i]);
        return true;
    }
    return false;
}

bool IsControl(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

bool Append(char32_t c, std::string& text) {
    for (const Fold& fold : kFolds) {
        if (fold.characters.find(c) == std::u32string_view::npos) continue;
        text += fold.latin1;
        return true;
    }
    if (c > 0xFF) return JoinAccent(c, text);
    if (IsControl(c)) return false;
    text += static_cast<char>(c);
    return true;
}

// The characters up to the first byte that is wrong, and that byte; null if all is well.
std::u32string Decode(std::string_view utf8, const char*& pWrong) {
    constexpr bool bLittle = std::endian::native == std::endian::little;
    const iconv_t converter = iconv_open(bLittle ? "UTF-32LE" : "UTF-32BE", "UTF-8");
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        throw std::runtime_error("this system cannot convert UTF-8");
    }
    std::u32string text(utf8.size(), U'\0');
    char* pIn = const_cast<char*>(utf8.data());  // iconv does not write there
    char* pOut = reinterpret_cast<char*>(text.data());
    std::size_t nIn = utf8.size();
    std::size_t nOut = text.size() * sizeof(char32_t);
    iconv(converter, &pIn, &nIn, &pOut, &nOut);
    iconv_close(converter);
    text.resize(text.size() - nOut / sizeof(char32_t));
    pWrong = nIn > 0 ? pIn : nullptr;
    return text;
}

TextFault Fault(std::size_t i, const char* format, unsigned code) {
    char what[64];
    std::snprintf(what, sizeof what, format, code);
    return {i + 1, what};
}

}  // namespace

DecodedText FromUtf8(std::string_view utf8, Foreign foreign) {
    const char* pWrong = nullptr;
    const std::u32string text = Decode(utf8, pWrong);
    DecodedText result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (Append(text[i], result.latin1)) continue;
        if (IsControl(text[i])) {
            result.fault = Fault(i, "control character U+%04X", text[i]);
            return result;
        }
        TextFault fault = Fault(i, "character U+%04X is not in Latin-1", text[i]);
        if (foreign == Foreign::isFault) {
            result.fault = std::move(fault);
            return result;
        }
        if (result.nLeftOut++ == 0) result.leftOut = std::move(fault);
    }
    if (pWrong != nullptr) {
        result.fault = Fault(text.size(), "invalid UTF-8, byte 0x%02X", Code(*pWrong));
    }
    return result;
}

std::string ToUtf8(std::string_view latin1) {
    std::string text;
    for (const char c : latin1) {
        if (Code(c) < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0 | Code(c) >> 6);
            text += static_cast<char>(0x80 | (Code(c) & 0x3F));
        }
    }
    return text;
}

}  // namespace transcribe
