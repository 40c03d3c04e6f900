// What is wrong with how a language reads text, told before any text is read.
#include <unicode/regex.h>

#include <map>
#include <string>
#include <vector>

#include "text/expressions.h"
#include "text/folding.h"
#include "text/spellout.h"
#include "text/textreader.h"

namespace mlds::rules {

namespace {

const char* ReasonOf(UErrorCode status) {
    switch (status) {
        case U_REGEX_BAD_ESCAPE_SEQUENCE: return "an escape that it does not know";
        case U_REGEX_PROPERTY_SYNTAX: return "a property of characters that it does not know";
        case U_REGEX_UNIMPLEMENTED: return "something that is not implemented";
        case U_REGEX_MISMATCHED_PAREN: return "a parenthesis without its other half";
        case U_REGEX_NUMBER_TOO_BIG: return "a number that is too large";
        case U_REGEX_BAD_INTERVAL: return "a fault in {least,most}";
        case U_REGEX_MAX_LT_MIN: return "{least,most} with the larger one first";
        case U_REGEX_INVALID_BACK_REF: return "a reference to a group that is not there";
        case U_REGEX_INVALID_FLAG: return "a flag that it does not know";
        case U_REGEX_LOOK_BEHIND_LIMIT: return "a look behind without a limit of its length";
        case U_REGEX_MISSING_CLOSE_BRACKET: return "a '[' without its ']'";
        case U_REGEX_INVALID_RANGE: return "a range whose end lies before its beginning";
        case U_REGEX_PATTERN_TOO_BIG: return "more than it can hold";
        case U_REGEX_RULE_SYNTAX: return "a fault of syntax";
        default: return u_errorName(status);
    }
}

class TextCheck {
public:
    TextCheck(const Model& model, const Sources& sources, Diagnostics& diagnostics)
        : m_model(model),
          m_tier(model.tiers.at(static_cast<std::size_t>(model.text.tier))),
          m_sources(sources),
          m_diagnostics(diagnostics),
          m_unicode(model.language, model.text.bCaseKept),
          m_folding(model, m_unicode) {}

    void Letters();
    void Reads();
    void Expansions();

private:
    void Claim(const std::string& character, const std::string& what, const Span& span);
    void Case(const std::string& character, const Span& span);
    void Reading(const std::string& reading, const Span& span);
    void Regex(const Expansion& expansion);
    void Numbers(const Span& span);
    void NoToken(const std::string& character, const Span& span) {
        Error(span, "'" + character + "' is no token of tier " + m_tier.name);
    }
    void Error(const Span& span, std::string message) {
        m_diagnostics.Error(m_sources, span, std::move(message));
    }
    void Warning(const Span& span, std::string message) {
        m_diagnostics.Warning(m_sources, span, std::move(message));
    }

    const Model& m_model;
    const Tier& m_tier;
    const Sources& m_sources;
    Diagnostics& m_diagnostics;
    UnicodeTable m_unicode;
    Folding m_folding;
    TypedText m_text;
    std::map<std::u32string, std::string> m_claims;  ///< what every character is
    bool m_bNumbersChecked = false;
};

// The same order as Folding's: who comes first is what holds.
void TextCheck::Letters() {
    const TextReading& text = m_model.text;
    for (const Fold& fold : text.standsFor) {
        std::vector<std::string> unknown;
        const std::vector<int> tokens = m_folding.Tokens(fold.to, &unknown);
        for (const std::string& character : unknown) NoToken(character, fold.span);
        if (tokens.empty() && unknown.empty()) {
            Error(fold.span, "'" + fold.from +
                                 "' stands for nothing: 'ignore' keeps an empty place for it, "
                                 "'join' none");
        }
        Claim(fold.from, "given by 'letters'", fold.span);
        Case(fold.from, fold.span);
    }
    for (const std::string& token : m_tier.tokens) {
        Claim(token, "a letter of tier " + m_tier.name, m_tier.span);
        Case(token, m_tier.span);
    }
    for (const std::string& character : text.ignored) Claim(character, "ignored", m_tier.span);
    for (const std::string& character : text.joined) Claim(character, "joined", m_tier.span);
}

void TextCheck::Claim(const std::string& character, const std::string& what, const Span& span) {
    if (character.empty()) {
        Error(span, "an empty text is no character: it is " + what);
        return;
    }
    TakeApart(character, m_unicode, m_text);
    const auto [claim, bNew] = m_claims.try_emplace(m_text.typed, what);
    if (bNew) return;
    Warning(span,
            "'" + character + "' is " + what + ", but also " + claim->second + ", and that holds");
}

void TextCheck::Case(const std::string& character, const Span& span) {
    TakeApart(character, m_unicode, m_text);
    if (m_text.typed == m_text.lowered) return;
    Warning(span, "'" + character +
                      "' is never read, because text is read in lower case; "
                      "'case kept' keeps capitals");
}

void TextCheck::Reads() {
    std::map<std::string, bool> seen;
    for (const Fold& fold : m_model.text.reads) {
        if (fold.from.empty()) Error(fold.span, "'read' needs a text that is read as another");
        if (!seen.emplace(fold.from, true).second) {
            Warning(fold.span, "'" + fold.from + "' is read already, and the first holds");
        }
        Reading(fold.to, fold.span);
    }
}

void TextCheck::Reading(const std::string& reading, const Span& span) {
    TypedText text;
    TakeApart(reading, m_unicode, text);
    std::vector<int> letters;
    for (int at = 0; at < text.size();) {
        const Folding::Step step = m_folding.Next(text, at, letters);
        // What "ignore other" says is meant for texts of strangers: a letter that the author
        // writes and does not declare is a slip.
        if (step.kind == Folding::Kind::unknown ||
            (step.bOther && m_unicode.Of(text.Base(at)).bWord)) {
            NoToken(Utf8Of(text.Character(at)), span);
        }
        at = step.end;
    }
}

void TextCheck::Numbers(const Span& span) {
    // Told once: it is the language that lacks them.
    if (m_bNumbersChecked) return;
    m_bNumbersChecked = true;
    if (m_model.language.empty()) {
        Error(span, "numbers can be spelt out in a language only: say which, 'language es'");
    } else if (Spellout::For(m_model.language) == nullptr) {
        Error(span, "ICU has no numbers in words for language '" + m_model.language + "'");
    }
}

void TextCheck::Regex(const Expansion& expansion) {
    const icu::UnicodeString pattern = icu::UnicodeString::fromUTF8(expansion.pattern);
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    const std::unique_ptr<icu::RegexPattern> pPattern(
        icu::RegexPattern::compile(pattern, where, status));
    if (U_FAILURE(status)) {
        Error(expansion.span, "ICU refuses the expression '" + expansion.pattern +
                                  "' at character " + std::to_string(where.offset) + ": " +
                                  ReasonOf(status));
        return;
    }
    // Alone it may be right and yet leave something open, as "(?x) a # b" and "\Q" do.
    if (!Expression::Compile(expansion.pattern)) {
        Error(expansion.span, "the expression '" + expansion.pattern +
                                  "' leaves a quotation or a comment open at its end");
        return;
    }
    const icu::UnicodeString nothing;
    const std::unique_ptr<icu::RegexMatcher> pMatcher(pPattern->matcher(nothing, status));
    if (U_SUCCESS(status) && pMatcher->find(status) && U_SUCCESS(status)) {
        Error(expansion.span, "the expression '" + expansion.pattern +
                                  "' can match nothing: it would match everywhere");
    }
}

void TextCheck::Expansions() {
    std::map<std::string, bool> seen;
    for (const Expansion& expansion : m_model.text.expansions) {
        if (expansion.pattern.empty()) {
            Error(expansion.span, "'expand' needs a text that is read as another");
            continue;
        }
        if (!expansion.bLiteral) Regex(expansion);
        if (!seen.emplace(expansion.pattern, expansion.bLiteral).second) {
            Warning(expansion.span,
                    "'" + expansion.pattern + "' is expanded already, and the first holds");
        }
        if (expansion.bSpellout) {
            Numbers(expansion.span);
        } else {
            Reading(expansion.reading, expansion.span);
        }
    }
}

}  // namespace

void CheckText(const Model& model, const Sources& sources, Diagnostics& diagnostics) {
    if (model.text.tier == kNoTier) return;
    TextCheck check(model, sources, diagnostics);
    check.Letters();
    check.Reads();
    check.Expansions();
}

}  // namespace mlds::rules
