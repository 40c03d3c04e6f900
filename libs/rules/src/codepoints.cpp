// UTF-8 by its code points.
#include "codepoints.h"

#include <unicode/utf8.h>

#include <cstdint>

namespace mlds::rules {

CodePoint CodePointAt(std::string_view text, std::size_t offset) {
    // ICU's macro counts in 32 bits. Four bytes are all that it can need.
    const std::string_view bytes = text.substr(offset, U8_MAX_LENGTH);
    const auto nBytes = static_cast<std::int32_t>(bytes.size());
    std::int32_t n = 0;
    UChar32 c = 0;
    U8_NEXT(bytes.data(), n, nBytes, c);
    const std::size_t next = offset + static_cast<std::size_t>(n);
    if (c < 0) return {U'\uFFFD', next, false};
    return {static_cast<char32_t>(c), next, true};
}

std::u32string CodePoints(std::string_view text) {
    std::u32string codes;
    for (std::size_t at = 0; at < text.size();) {
        const CodePoint c = CodePointAt(text, at);
        codes += c.value;
        at = c.next;
    }
    return codes;
}

int CountCodePoints(std::string_view text) {
    int n = 0;
    for (std::size_t at = 0; at < text.size(); ++n) at = CodePointAt(text, at).next;
    return n;
}

std::size_t OffsetOfCodePoint(std::string_view text, int number) {
    std::size_t at = 0;
    for (int n = 0; n < number && at < text.size(); ++n) at = CodePointAt(text, at).next;
    return at;
}

std::string Shortened(std::string_view text) {
    constexpr int kMost = 40;
    const std::size_t cut = OffsetOfCodePoint(text, kMost);
    return std::string(text.substr(0, cut)) + (cut < text.size() ? "..." : "");
}

}  // namespace mlds::rules
