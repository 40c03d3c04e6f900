// What Unicode says about single code points, asked once each.
#include "text/unicodetable.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdio>

namespace mlds::rules {

namespace {

// Texts of strangers shall not make tables grow for ever.
constexpr std::size_t kMostRemembered = 20000;

bool IsMark(UChar32 c) {
    // Variation selectors are marks by their category, but choose a shape and change no letter.
    return (U_GET_GC_MASK(c) & U_GC_M_MASK) != 0 &&
           !u_hasBinaryProperty(c, UCHAR_VARIATION_SELECTOR);
}

bool IsBlank(UChar32 c) {
    constexpr uint32_t kSilent =
        U_GC_CC_MASK | U_GC_CF_MASK | U_GC_ZS_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK;
    return (U_GET_GC_MASK(c) & kSilent) != 0 || u_isUWhiteSpace(c) ||
           u_hasBinaryProperty(c, UCHAR_VARIATION_SELECTOR);
}

icu::UnicodeString InNfc(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* pNfc = icu::Normalizer2::getNFCInstance(status);
    icu::UnicodeString composed = U_SUCCESS(status) ? pNfc->normalize(text, status) : text;
    return U_SUCCESS(status) ? composed : text;
}

}  // namespace

UnicodeTable::UnicodeTable(const std::string& language, bool bCaseKept)
    : m_locale(LocaleOf(language)), m_bCaseKept(bCaseKept) {}

const CodePointTraits& UnicodeTable::Of(char32_t c) {
    std::unique_ptr<Page>& pPage = m_pages[c / 256];
    if (!pPage) pPage = std::make_unique<Page>();
    CodePointTraits& properties = (*pPage)[c % 256];
    if (!properties.bAsked) Ask(c, properties);
    return properties;
}

void UnicodeTable::Ask(char32_t c, CodePointTraits& properties) {
    const auto code = static_cast<UChar32>(c);
    properties.bAsked = true;
    properties.bMark = IsMark(code);
    properties.bBlank = IsBlank(code);
    properties.bWord = (U_GET_GC_MASK(code) & (U_GC_L_MASK | U_GC_N_MASK)) != 0;
    properties.bDigit = u_charDigitValue(code) >= 0;
    const std::u32string lower = LowerOf(std::u32string_view(&c, 1));
    properties.lower = lower.size() == 1 ? lower[0] : 0;
    properties.bCased = properties.lower != c;
}

std::u32string UnicodeTable::LowerOf(std::u32string_view character) const {
    icu::UnicodeString text = ToIcu(character);
    if (!m_bCaseKept) text = InNfc(text.toLower(m_locale));
    return FromIcu(text);
}

void UnicodeTable::AppendLower(std::u32string_view character, std::u32string& to) {
    if (character.size() == 1) {
        const CodePointTraits& properties = Of(character[0]);
        if (properties.lower != 0) {
            to += properties.lower;
            return;
        }
    }
    bool bCased = false;
    for (const char32_t c : character) bCased = bCased || Of(c).bCased;
    if (!bCased) {
        to += character;
        return;
    }
    // Not code point by code point: in Turkish an I with a dot above is one small i.
    if (m_lower.size() > kMostRemembered) m_lower.clear();
    const auto [entry, bNew] = m_lower.try_emplace(std::u32string(character));
    if (bNew) entry->second = LowerOf(character);
    to += entry->second;
}

icu::Locale LocaleOf(const std::string& language) {
    if (language.empty()) return icu::Locale::getRoot();
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale = icu::Locale::forLanguageTag(language.c_str(), status);
    return U_SUCCESS(status) && !locale.isBogus() ? locale : icu::Locale::getRoot();
}

icu::UnicodeString ToIcu(std::u32string_view text) {
    return icu::UnicodeString::fromUTF32(reinterpret_cast<const UChar32*>(text.data()),
                                         static_cast<int32_t>(text.size()));
}

std::u32string FromIcu(const icu::UnicodeString& text) {
    std::u32string codes;
    codes.reserve(static_cast<std::size_t>(text.length()));
    for (int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
        codes += static_cast<char32_t>(text.char32At(at));
    }
    return codes;
}

std::string Utf8Of(std::u32string_view text) {
    std::string utf8;
    ToIcu(text).toUTF8String(utf8);
    return utf8;
}

std::string Described(std::u32string_view character) {
    // A pile of accents is cut: the first four say which it is.
    constexpr std::size_t kMostNamed = 4;
    std::string codes;
    bool bPrintable = true;
    for (std::size_t i = 0; i < character.size() && i < kMostNamed; ++i) {
        char code[16];
        std::snprintf(code, sizeof code, "%sU+%04X", i > 0 ? " " : "",
                      static_cast<unsigned>(character[i]));
        codes += code;
        bPrintable = bPrintable && u_isprint(static_cast<UChar32>(character[i])) != 0;
    }
    if (character.size() > kMostNamed) codes += " ...";
    if (!bPrintable) return codes;
    return "'" + Utf8Of(character.substr(0, kMostNamed)) + "' (" + codes + ")";
}

}  // namespace mlds::rules
