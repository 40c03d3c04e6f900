// Regular expressions of expansions, searched through whole texts.
#ifndef MLDS_RULES_EXPRESSIONS_H
#define MLDS_RULES_EXPRESSIONS_H

#include <unicode/regex.h>

#include <climits>
#include <memory>
#include <string>

#include "text/typedtext.h"

namespace mlds::rules {

/// One regular expression and its next match in a text.
class Expression {
public:
    /// Null if ICU refuses the pattern.
    static std::unique_ptr<Expression> Compile(const std::string& pattern);
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    /// The text must stay as it is while matches are asked for.
    void Begin(const TypedText& text);
    /// Goes to the first match that begins at a character or behind it. False if the search had to
    /// be given up.
    bool Seek(const TypedText& text, int at);

    static constexpr int kNone = INT_MAX;
    int begin() const { return m_begin; }  ///< kNone: there is none any more
    int end() const { return m_end; }

private:
    explicit Expression(std::unique_ptr<icu::RegexPattern> pPattern);
    static UBool U_CALLCONV SpendTime(const void* pContext, int32_t steps);
    bool Find(const TypedText& text, int at);

    std::unique_ptr<icu::RegexPattern> m_pPattern;
    std::unique_ptr<icu::RegexMatcher> m_pMatcher;
    bool m_bSearched = false;
    int m_begin = kNone;
    int m_end = 0;
    long m_budget = 0;
};

/// An expression that neither begins nor ends inside a run of digits, of one that may.
icu::UnicodeString WithWholeNumbers(const icu::UnicodeString& pattern);

}  // namespace mlds::rules

#endif
