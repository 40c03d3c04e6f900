// A text taken apart into the characters that a person typed.
#include "text/typedtext.h"

#include <unicode/normalizer2.h>
#include <unicode/utf16.h>

#include <algorithm>

#include "codepoints.h"

namespace mlds::rules {

namespace {

// More marks than any script piles up. What follows is another character: putting marks in order
// takes the square of their number, and a text of nothing but marks shall not take for ever.
constexpr int kMostMarks = 30;
// Code points below have no other form in NFC, whatever stands around them.
constexpr UChar32 kFirstComposing = 0x300;
constexpr UChar32 kNoCharacter = 0xFFFD;

void AppendNfc(const icu::UnicodeString& part, icu::UnicodeString& to) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* pNfc = icu::Normalizer2::getNFCInstance(status);
    icu::UnicodeString composed;
    if (U_SUCCESS(status)) pNfc->normalize(part, composed, status);
    to.append(U_SUCCESS(status) ? composed : part);
}

// UTF-8 decoded, in NFC. Parts are composed alone where too many marks follow each other.
void Decode(std::string_view utf8, UnicodeTable& unicode, TypedText& text) {
    text.utf16.remove();
    text.badBytes.clear();
    icu::UnicodeString part;
    bool bComposes = false;
    int nMarks = 0;
    const auto flush = [&] {
        if (bComposes) {
            AppendNfc(part, text.utf16);
        } else {
            text.utf16.append(part);
        }
        part.remove();
        bComposes = false;
        nMarks = 0;
    };
    for (std::size_t at = 0; at < utf8.size();) {
        const CodePoint decoded = CodePointAt(utf8, at);
        const auto c = static_cast<UChar32>(decoded.value);
        if (c == kNoCharacter) {
            text.badBytes.push_back(decoded.bValid ? -1 : static_cast<unsigned char>(utf8[at]));
        }
        at = decoded.next;
        if (c >= kFirstComposing) {
            bComposes = true;
            nMarks = unicode.Of(decoded.value).bMark ? nMarks + 1 : 0;
            if (nMarks > kMostMarks) flush();
        } else {
            nMarks = 0;
        }
        part.append(c);
    }
    flush();
}

}  // namespace

std::u32string_view TypedText::Character(int index) const {
    const auto begin = static_cast<std::size_t>(begins[Index(index)]);
    const auto end = static_cast<std::size_t>(begins[Index(index) + 1]);
    return std::u32string_view(typed).substr(begin, end - begin);
}

icu::UnicodeString TypedText::Units(int begin, int end) const {
    return utf16.tempSubStringBetween(units[Index(begin)], units[Index(end)]);
}

int TypedText::AtUnit(int unit) const {
    const auto found = std::lower_bound(units.begin(), units.end(), unit);
    if (found == units.end() || *found != unit) return -1;
    return static_cast<int>(found - units.begin());
}

void TakeApart(std::string_view utf8, UnicodeTable& unicode, TypedText& text) {
    Decode(utf8, unicode, text);
    text.typed.clear();
    text.lowered.clear();
    text.begins.clear();
    text.loweredBegins.clear();
    text.units.clear();
    const char16_t* const pUnits = text.utf16.getBuffer();
    const int32_t length = text.utf16.length();
    int nMarks = 0;
    const auto endCharacter = [&] {
        if (!text.begins.empty()) {
            unicode.AppendLower(std::u32string_view(text.typed)
                                    .substr(static_cast<std::size_t>(text.begins.back())),
                                text.lowered);
        }
        text.begins.push_back(static_cast<int>(text.typed.size()));
        text.loweredBegins.push_back(static_cast<int>(text.lowered.size()));
    };
    for (int32_t at = 0; at < length;) {
        const int32_t begin = at;
        UChar32 code = 0;
        U16_NEXT(pUnits, at, length, code);
        const auto c = static_cast<char32_t>(code);
        nMarks = code >= kFirstComposing && unicode.Of(c).bMark ? nMarks + 1 : 0;
        if (begin == 0 || nMarks == 0 || nMarks > kMostMarks) {
            endCharacter();
            text.units.push_back(begin);
            nMarks = 0;
        }
        text.typed += c;
    }
    endCharacter();
    text.units.push_back(length);
}

}  // namespace mlds::rules
