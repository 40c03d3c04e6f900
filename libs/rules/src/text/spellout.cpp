// Numbers in words.
#include "text/spellout.h"

#include <unicode/dcfmtsym.h>
#include <unicode/uchar.h>

#include <charconv>
#include <cstdint>

#include "text/unicodetable.h"

namespace mlds::rules {

namespace {

constexpr UChar32 kSoftHyphen = 0xAD;
// An int64 holds any number of so many digits.
constexpr int kMostDigits = 18;
// And a double.
constexpr int kExactDigits = 15;

// ICU marks where its long words may be parted, and parts groups with commas in some languages:
// neither is said.
icu::UnicodeString Cleaned(const icu::UnicodeString& words) {
    icu::UnicodeString clean;
    for (int32_t at = 0; at < words.length(); ++at) {
        const char16_t unit = words.charAt(at);
        if (unit != kSoftHyphen) clean.append(unit == u',' ? u' ' : unit);
    }
    return clean;
}

bool HasDigits(const icu::UnicodeString& text) {
    for (int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
        if (u_charDigitValue(text.char32At(at)) >= 0) return true;
    }
    return false;
}

void AppendWord(icu::UnicodeString& words, const icu::UnicodeString& word) {
    if (!words.isEmpty() && !word.isEmpty()) words.append(u' ');
    words.append(word);
}

bool IsMinus(UChar32 c) {
    return c == '-' || c == 0x2212;
}

bool AllZero(const icu::UnicodeString& digits) {
    return digits.indexOf(u'0') == 0 && digits.countChar32() > 0 &&
           icu::UnicodeString(digits).findAndReplace(u"0", u"").isEmpty();
}

}  // namespace

// Digits are ASCII ones here, whatever script they were typed in.
struct Spellout::Number {
    bool bNegative = false;
    icu::UnicodeString whole;
    icu::UnicodeString decimals;
};

std::unique_ptr<Spellout> Spellout::For(const std::string& language) {
    const icu::Locale locale = LocaleOf(language);
    UErrorCode status = U_ZERO_ERROR;
    auto pFormat =
        std::make_unique<icu::RuleBasedNumberFormat>(icu::URBNF_SPELLOUT, locale, status);
    if (U_FAILURE(status)) return nullptr;
    // A language that ICU does not have is given the numbers of the machine's own.
    UErrorCode localeStatus = U_ZERO_ERROR;
    const icu::Locale valid = pFormat->getLocale(ULOC_VALID_LOCALE, localeStatus);
    if (language.empty() || U_FAILURE(localeStatus) ||
        std::string_view(valid.getLanguage()) != locale.getLanguage()) {
        return nullptr;
    }
    std::unique_ptr<Spellout> pSpellout(new Spellout(std::move(pFormat)));
    if (HasDigits(pSpellout->InWords(7))) return nullptr;
    const icu::DecimalFormatSymbols symbols(locale, status);
    if (U_FAILURE(status)) return nullptr;
    pSpellout->m_grouping =
        symbols.getConstSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol);
    pSpellout->m_decimal =
        symbols.getConstSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol);
    return pSpellout;
}

Spellout::Spellout(std::unique_ptr<icu::RuleBasedNumberFormat> pFormat)
    : m_pFormat(std::move(pFormat)) {
    // ICU tells the word for the point only between numbers: "cero coma cinco".
    icu::UnicodeString half;
    m_pFormat->format(0.5, half);
    half = Cleaned(half);
    const icu::UnicodeString zero = InWords(0);
    const icu::UnicodeString five = InWords(5);
    if (half.startsWith(zero) && half.endsWith(five) &&
        half.length() > zero.length() + five.length()) {
        // A copy: what ICU calls temporary shares the memory of `half`.
        m_point =
            icu::UnicodeString(half, zero.length(), half.length() - zero.length() - five.length());
        m_point.trim();
    }
}

icu::UnicodeString Spellout::InWords(std::int64_t value) const {
    icu::UnicodeString words;
    m_pFormat->format(value, words);
    return Cleaned(words);
}

icu::UnicodeString Spellout::DigitByDigit(const icu::UnicodeString& digits) const {
    icu::UnicodeString words;
    for (int32_t at = 0; at < digits.length(); ++at) {
        AppendWord(words, InWords(digits.charAt(at) - u'0'));
    }
    return words;
}

icu::UnicodeString Spellout::Whole(const icu::UnicodeString& digits) const {
    // Zeros in front are said, one by one: of "007" nothing shall be lost.
    int32_t zeros = 0;
    while (zeros + 1 < digits.length() && digits.charAt(zeros) == u'0') ++zeros;
    icu::UnicodeString words = DigitByDigit(digits.tempSubString(0, zeros));
    const icu::UnicodeString rest = digits.tempSubString(zeros);
    if (rest.length() > kMostDigits) return DigitByDigit(digits);
    std::int64_t value = 0;
    for (int32_t at = 0; at < rest.length(); ++at) value = value * 10 + (rest.charAt(at) - u'0');
    const icu::UnicodeString number = InWords(value);
    // Beyond its largest word ICU falls back to digits.
    AppendWord(words, HasDigits(number) ? DigitByDigit(rest) : number);
    return words;
}

// As ICU says it, where its word for the point is not known.
icu::UnicodeString Spellout::AsFraction(const Number& number) const {
    std::string digits;
    (number.whole + u"." + number.decimals).toUTF8String(digits);
    double value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    icu::UnicodeString words;
    m_pFormat->format(value, words);
    return Cleaned(words);
}

icu::UnicodeString Spellout::ReadNumber(const Number& number) const {
    icu::UnicodeString words = Whole(number.whole);
    if (!number.decimals.isEmpty() && m_point.isEmpty() &&
        number.whole.length() + number.decimals.length() <= kExactDigits) {
        words = AsFraction(number);
    } else if (!number.decimals.isEmpty()) {
        // Not by way of a double, which forgets that "12,50" had two decimals.
        AppendWord(words, m_point);
        AppendWord(words, DigitByDigit(number.decimals));
    }
    if (!number.bNegative) return words;
    // "menos tres" less "tres".
    icu::UnicodeString minus = InWords(-3);
    minus.findAndReplace(InWords(3), u"").trim();
    if (AllZero(number.whole) && AllZero(number.decimals)) return words;
    AppendWord(minus, words);
    return minus;
}

// A blank parts groups in any language: the international way, beside the language's own sign.
bool Spellout::Groups(UChar32 c) const {
    return u_isUWhiteSpace(c) || (!m_grouping.isEmpty() && c == m_grouping.char32At(0));
}

bool Spellout::Parse(const icu::UnicodeString& typed, Number& number) const {
    // A group behind the first has two digits (in India) or three, the last one three.
    constexpr int kUngrouped = -1;
    const UChar32 decimal = m_decimal.isEmpty() ? 0 : m_decimal.char32At(0);
    int inGroup = kUngrouped;
    bool bDecimals = false;
    for (int32_t at = 0; at < typed.length(); at = typed.moveIndex32(at, 1)) {
        const UChar32 c = typed.char32At(at);
        const int32_t digit = u_charDigitValue(c);
        if (digit >= 0) {
            (bDecimals ? number.decimals : number.whole)
                .append(static_cast<char16_t>(u'0' + digit));
            if (inGroup != kUngrouped && !bDecimals) ++inGroup;
        } else if (at == 0 && IsMinus(c)) {
            number.bNegative = true;
        } else if (number.whole.isEmpty() || bDecimals) {
            return false;
        } else if (c == decimal) {
            bDecimals = true;
        } else if (Groups(c)) {
            const bool bFirst = inGroup == kUngrouped;
            if (bFirst ? number.whole.length() > 3 : inGroup != 2 && inGroup != 3) return false;
            inGroup = 0;
        } else {
            return false;
        }
    }
    return !number.whole.isEmpty() && (inGroup == kUngrouped || inGroup == 3) &&
           (!bDecimals || !number.decimals.isEmpty());
}

icu::UnicodeString Spellout::Read(const icu::UnicodeString& typed) const {
    Number number;
    if (Parse(typed, number)) return ReadNumber(number);
    // No single number (a date, a version): its runs of digits, and what stands between them.
    icu::UnicodeString words;
    icu::UnicodeString digits;
    const auto flush = [&] {
        if (!digits.isEmpty()) {
            words.append(u' ').append(Whole(digits)).append(u' ');
        }
        digits.remove();
    };
    for (int32_t at = 0; at < typed.length(); at = typed.moveIndex32(at, 1)) {
        const UChar32 c = typed.char32At(at);
        const int32_t digit = u_charDigitValue(c);
        if (digit >= 0) {
            digits.append(static_cast<char16_t>(u'0' + digit));
        } else {
            flush();
            words.append(c);
        }
    }
    flush();
    return words;
}

}  // namespace mlds::rules
