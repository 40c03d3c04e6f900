// Text encodings.
#include "text.h"

#include <iconv.h>

#include <algorithm>
#include <bit>
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

char32_t WithPicture(char32_t c) {
    constexpr char32_t kPictures = U'\u2400';
    if (c < 0x20) return kPictures + c;
    if (c == 0x7F) return U'\u2421';
    return c > 0x7F && c < 0xA0 ? U'\uFFFD' : c;
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
    std::u32string text = Wide(Recode(engineText, kUtf8, encoding).value_or(""));
    std::ranges::transform(text, text.begin(), WithPicture);
    return Narrow(text);
}

std::optional<std::string> Typed(std::string_view utf8, bool bLatin1) {
    return Recode(utf8, bLatin1 ? kLatin1 : kUtf8, kUtf8);
}

bool IsLatin1(std::string_view engineText) {
    // Not to UTF-8 again: that lets numbers pass that are no characters.
    return !IsAscii(engineText) && !Recode(engineText, kUtf32, kUtf8);
}

}  // namespace mlds_viewer
