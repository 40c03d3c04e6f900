// What Unicode says about single code points, asked once each.
#ifndef MLDS_RULES_UNICODETABLE_H
#define MLDS_RULES_UNICODETABLE_H

#include <unicode/locid.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace mlds::rules {

struct CodePointTraits {
    bool bAsked = false;
    bool bMark = false;   ///< belongs to the character before it
    bool bBlank = false;  ///< spaces, controls, format characters
    bool bWord = false;   ///< letters and digits
    bool bDigit = false;
    bool bCased = false;  ///< its lower case is another one
    char32_t lower = 0;   ///< in lower case; 0: that is several code points
};

/// Properties of code points, and lower case as one language has it.
class UnicodeTable {
public:
    UnicodeTable(const std::string& language, bool bCaseKept);

    const CodePointTraits& Of(char32_t c);
    /// The lower case (or, where case is kept, the same) of one character as typed, in NFC. It
    /// stands alone, so that a Greek sigma is never a final one.
    void AppendLower(std::u32string_view character, std::u32string& to);
    const icu::Locale& locale() const { return m_locale; }

private:
    void Ask(char32_t c, CodePointTraits& properties);
    std::u32string LowerOf(std::u32string_view character) const;

    icu::Locale m_locale;
    bool m_bCaseKept;
    using Page = std::array<CodePointTraits, 256>;
    std::array<std::unique_ptr<Page>, 0x110000 / 256> m_pages;
    std::unordered_map<std::u32string, std::u32string> m_lower;  ///< of several code points
};

/// The locale of "es", "pt-BR"; the root for an empty one.
icu::Locale LocaleOf(const std::string& language);

icu::UnicodeString ToIcu(std::u32string_view text);
std::u32string FromIcu(const icu::UnicodeString& text);
std::string Utf8Of(std::u32string_view text);
/// "'ж' (U+0436)", for messages.
std::string Described(std::u32string_view character);

}  // namespace mlds::rules

#endif
