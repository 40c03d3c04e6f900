// Regular expressions of expansions, searched through whole texts.
#include "text/expressions.h"

namespace mlds::rules {

namespace {

// ICU asks every ten thousand steps whether to go on. An expression that reads a text once needs a
// hundredth of this; one that tries everything at every place is stopped.
constexpr long kLeastBudget = 1000;
constexpr long kCharactersPerStep = 100;

}  // namespace

icu::UnicodeString WithWholeNumbers(const icu::UnicodeString& pattern) {
    // Inside the expression, so that matching backs up to a shorter match that ends well: of
    // "1.2345" no "1.234".
    const icu::UnicodeString edge = u"(?!(?<=\\p{Nd})\\p{Nd})";
    return edge + u"(?:" + pattern + u")" + edge;
}

std::unique_ptr<Expression> Expression::Compile(const std::string& pattern) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    std::unique_ptr<icu::RegexPattern> pPattern(icu::RegexPattern::compile(
        WithWholeNumbers(icu::UnicodeString::fromUTF8(pattern)), where, status));
    if (U_FAILURE(status)) return nullptr;
    std::unique_ptr<Expression> pExpression(new Expression(std::move(pPattern)));
    pExpression->m_pMatcher.reset(pExpression->m_pPattern->matcher(status));
    if (U_FAILURE(status)) return nullptr;
    pExpression->m_pMatcher->setMatchCallback(SpendTime, pExpression.get(), status);
    return U_SUCCESS(status) ? std::move(pExpression) : nullptr;
}

Expression::Expression(std::unique_ptr<icu::RegexPattern> pPattern)
    : m_pPattern(std::move(pPattern)) {}

UBool U_CALLCONV Expression::SpendTime(const void* pContext, int32_t) {
    auto& expression = *static_cast<Expression*>(const_cast<void*>(pContext));
    return --expression.m_budget > 0;
}

void Expression::Begin(const TypedText& text) {
    m_pMatcher->reset(text.utf16);
    m_budget = kLeastBudget + text.size() / kCharactersPerStep;
    m_bSearched = false;
    m_begin = -1;
    m_end = 0;
}

bool Expression::Seek(const TypedText& text, int at) {
    while (m_begin < at) {
        if (!Find(text, at)) {
            m_begin = kNone;
            return false;
        }
    }
    return true;
}

bool Expression::Find(const TypedText& text, int at) {
    UErrorCode status = U_ZERO_ERROR;
    // Where something else took the beginning of this match, its rest is looked at again; else ICU
    // goes on behind the match by itself, which keeps the whole search linear.
    const bool bAgain = m_bSearched && m_end > at;
    const bool bFound = bAgain ? m_pMatcher->find(text.units[TypedText::Index(at)], status) != 0
                               : m_pMatcher->find(status) != 0;
    m_bSearched = true;
    if (U_FAILURE(status)) return false;
    if (!bFound) {
        m_begin = kNone;
        return true;
    }
    const int begin = text.AtUnit(m_pMatcher->start(status));
    const int end = text.AtUnit(m_pMatcher->end(status));
    // Nothing, or part of a character (a digit without its accent), is no match.
    if (begin < 0 || end <= begin) {
        m_begin = -1;
        m_end = 0;
    } else {
        m_begin = begin;
        m_end = end;
    }
    return U_SUCCESS(status) != 0;
}

}  // namespace mlds::rules
