// Numbers in words.
#ifndef MLDS_RULES_SPELLOUT_H
#define MLDS_RULES_SPELLOUT_H

#include <unicode/rbnf.h>
#include <unicode/unistr.h>

#include <memory>
#include <string>

namespace mlds::rules {

/// Spells numbers out as a language says them.
class Spellout {
public:
    /// Null if ICU has no numbers for the language.
    static std::unique_ptr<Spellout> For(const std::string& language);

    /// The words of what was typed: "12.345,6" where "." groups and "," parts the decimals. No
    /// digit is lost: what is no single number is read number by number, and other characters stay.
    icu::UnicodeString Read(const icu::UnicodeString& typed) const;

private:
    explicit Spellout(std::unique_ptr<icu::RuleBasedNumberFormat> pFormat);
    struct Number;
    bool Parse(const icu::UnicodeString& typed, Number& number) const;
    icu::UnicodeString InWords(std::int64_t value) const;
    icu::UnicodeString Whole(const icu::UnicodeString& digits) const;
    icu::UnicodeString DigitByDigit(const icu::UnicodeString& digits) const;
    icu::UnicodeString AsFraction(const Number& number) const;
    icu::UnicodeString ReadNumber(const Number& number) const;
    bool Groups(UChar32 c) const;

    std::unique_ptr<icu::RuleBasedNumberFormat> m_pFormat;
    icu::UnicodeString m_grouping;
    icu::UnicodeString m_decimal;
    icu::UnicodeString m_point;  ///< the word between whole and decimals, "coma"
};

}  // namespace mlds::rules

#endif
