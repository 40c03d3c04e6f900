// Tiers with their features, words and ways from the text.
#include <algorithm>
#include <array>
#include <string_view>

#include "syntax/elements.h"
#include "syntax/statements.h"

namespace mlds::rules::syntax {

namespace {

bool IsPartName(std::string_view word) {
    return std::find(TierPartNames().begin(), TierPartNames().end(), word) != TierPartNames().end();
}

// ---- the parts ----

Feature ReadFeature(Cursor& cursor, Reporter& reporter) {
    Feature feature;
    feature.name = cursor.ExpectName("the name of a feature");
    if (cursor.TakeSign('=')) {
        // The place of the value is the feature's: its author wrote no other.
        feature.values.push_back({{"yes", false, feature.name.span}, {}});
        feature.values.back().tokens =
            ReadTokens(cursor, reporter, "the feature's tokens behind '='");
    } else if (cursor.TakeSign(':')) {
        feature.bYesNo = false;
        do {
            Feature::Value value;
            value.name = cursor.ExpectName("the name of a value");
            cursor.ExpectSign('=', "'=' behind the value's name");
            value.tokens = ReadTokens(cursor, reporter, "the value's tokens behind '='");
            feature.values.push_back(std::move(value));
        } while (cursor.TakeSign('|'));
    } else {
        cursor.Expected("'=' and tokens, or ':' and values, behind the feature's name");
    }
    return feature;
}

NumberField ReadField(Cursor& cursor) {
    const NumberField field{cursor.ExpectName("the name of a field")};
    if (!cursor.TakeWord("number")) cursor.Expected("'number' behind the field's name");
    return field;
}

Ignore ReadIgnore(Cursor& cursor, Reporter& reporter) {
    Ignore ignore;
    ignore.characters = ReadTokens(cursor, reporter, "characters of the text, or 'other'");
    // In quotes it would be five characters to be ignored together.
    const auto nBefore = ignore.characters.size();
    std::erase_if(ignore.characters,
                  [](const Word& word) { return !word.bQuoted && word.text == "other"; });
    ignore.bOther = ignore.characters.size() < nBefore;
    return ignore;
}

StandsFor ReadStandsFor(Cursor& cursor, Reporter& reporter) {
    StandsFor standsFor;
    while (!cursor.IsSign('=')) {
        standsFor.from.push_back(cursor.ExpectToken("characters of the text, or '='"));
    }
    cursor.Next();
    standsFor.to = ReadTokens(cursor, reporter, "letters of the tier behind '='");
    return standsFor;
}

CaseKept ReadCase(Cursor& cursor, const Span& begin) {
    if (!cursor.TakeWord("kept")) cursor.Expected("'kept' behind 'case'");
    return {cursor.Since(begin)};
}

// ---- which part it is ----

class TierReader {
public:
    TierReader(const StatementLines& lines, Reporter& reporter)
        : m_lines(lines), m_reporter(reporter) {}

    std::optional<Tier> Read() {
        const std::size_t nHead = CountTokenLines();
        const Line head = HeadLine(m_reporter, m_lines, nHead);
        bool bNamed = false;
        try {
            Cursor cursor(Lexemes(head));
            const Span begin = cursor.Next().word.span;
            m_tier.name = cursor.ExpectName("the name of a tier");
            bNamed = true;
            m_tier.span = cursor.Since(begin);
            ReadHead(cursor);
        } catch (const Fault& fault) {
            // Whether it is from text, or spans, may stand behind the fault.
            m_bKindKnown = false;
            m_reporter.Report(fault);
        }
        for (const Line& line : SplitParts(m_reporter, m_lines, nHead)) {
            try {
                m_tier.parts.push_back(ReadPart(line));
            } catch (const Fault& fault) {
                m_reporter.Report(fault);
            }
        }
        if (!bNamed) return std::nullopt;
        return std::move(m_tier);
    }

private:
    // Tokens may go on in the next lines. The parts then begin with the first line that is none
    // of these, however deep it is.
    std::size_t CountTokenLines() const {
        std::size_t n = 0;
        try {
            const std::vector<Lexeme> head = Lexemes(HeadLine(m_reporter, m_lines, 0));
            const bool bTokens = std::any_of(head.begin(), head.end(), [](const Lexeme& lexeme) {
                return lexeme.kind == Lex::sign && lexeme.sign == ':';
            });
            while (bTokens && n < m_lines.indented.size()) {
                Line line(m_reporter.file());
                line.Append(m_reporter.source(), m_lines.indented[n].number);
                if (!HoldsTokensOnly(Lexemes(line), head[1].word.text)) break;
                ++n;
            }
        } catch (const Fault&) {
            return n;  // reported when the line is read
        }
        return n;
    }

    // A part without its "=" is no line of tokens.
    static bool HoldsTokensOnly(const std::vector<Lexeme>& lexemes, const std::string& tier) {
        const Lexeme& first = lexemes.front();
        if (first.kind == Lex::word && (first.word.text == tier || IsPartName(first.word.text) ||
                                        !DidYouMean(first.word.text, TierPartNames()).empty())) {
            return false;
        }
        return std::none_of(lexemes.begin(), lexemes.end(), [](const Lexeme& lexeme) {
            return lexeme.kind != Lex::word && lexeme.kind != Lex::text && lexeme.kind != Lex::end;
        });
    }

    void ReadHead(Cursor& cursor) {
        if (cursor.TakeWord("from")) {
            if (!cursor.TakeWord("text")) cursor.Expected("'text' behind 'from'");
            m_tier.bFromText = true;
        } else if (cursor.TakeWord("ms")) {
            m_tier.bTime = true;
        } else if (cursor.TakeWord("spans")) {
            m_tier.spans = cursor.ExpectName("the name of a tier behind 'spans'");
        }
        if (cursor.AtEnd()) return;
        if (!cursor.TakeSign(':')) {
            const bool bKind = m_tier.bFromText || m_tier.bTime || m_tier.spans;
            if (bKind) cursor.Expected("':' before the tokens");
            cursor.ExpectedWord("'from text', 'ms', 'spans' or ':' before the tokens",
                                {"from", "spans"});
        }
        m_tier.tokens = ReadTokens(cursor, m_reporter, "the tier's tokens behind ':'");
        cursor.ExpectEnd();
    }

    TierPart ReadPart(const Line& line) {
        Lexer lexer(line);
        const Lexeme first = lexer.Next();
        if (first.kind == Lex::word && first.word.text == "expand") {
            // A regular expression has signs that are no lexemes.
            const std::size_t behind = lexer.at();
            if (!IsDefinition(lexer)) {
                Require(m_tier.bFromText, first, "from text");
                return ReadExpansion(line, behind);
            }
        }
        Cursor cursor = PatternCursor(line);
        TierPart part = ReadPart(cursor);
        cursor.ExpectEnd();
        return part;
    }

    // "word = ..." and "word : ...", whatever the word.
    static bool IsDefinition(Lexer& lexer) {
        const Lexeme second = lexer.Next();
        return second.kind == Lex::sign && (second.sign == '=' || second.sign == ':');
    }

    TierPart ReadPart(Cursor& cursor) {
        const Lexeme first = cursor.Peek();
        const std::string& word = first.word.text;
        if (first.kind != Lex::word) Unknown(cursor);
        // Names of tokens come before keywords: a tier may well span its cases.
        if (cursor.IsSign('=', 1) || cursor.IsSign(':', 1)) return ReadDefinition(cursor);
        const bool bKeyword = IsPartName(word);
        if (!bKeyword && word != m_tier.name.text) Unknown(cursor);
        cursor.Next();
        if (word == "feature") return ReadFeature(cursor, m_reporter);
        if (word == "field") return ReadField(cursor);
        Require(m_tier.bFromText, first, "from text");
        if (word == "ignore") return ReadIgnore(cursor, m_reporter);
        if (word == "join") {
            return JoinLetters{
                ReadTokens(cursor, m_reporter, "characters of the text behind 'join'")};
        }
        if (word == "case") return ReadCase(cursor, first.word.span);
        return ReadStandsFor(cursor, m_reporter);
    }

    TierPart ReadDefinition(Cursor& cursor) {
        const Lexeme first = cursor.Next();
        Require(static_cast<bool>(m_tier.spans), first, "that spans another");
        if (cursor.Next().sign == '=') return SpanPattern{first.word, ReadWholePattern(cursor)};
        return SpanWords{first.word, ReadTokens(cursor, m_reporter, "words behind ':'")};
    }

    void Require(bool bHolds, const Lexeme& first, const char* pKind) const {
        if (bHolds || !m_bKindKnown) return;
        throw Fault{first.word.span, Described(first) + " belongs in a tier " + pKind + ", which " +
                                         m_tier.name.text + " is not"};
    }

    [[noreturn]] void Unknown(const Cursor& cursor) const {
        std::vector<std::string> names = TierPartNames();
        if (m_tier.bFromText) names.push_back(m_tier.name.text);
        const std::string& tier = m_tier.name.text;
        cursor.ExpectedWord(
            "a part of tier " + tier +
                (m_tier.bFromText ? " (feature, ignore, '" + tier + " ... = ...' and others)"
                                  : " (feature, field or others)"),
            names);
    }

    const StatementLines& m_lines;
    Reporter& m_reporter;
    Tier m_tier;
    bool m_bKindKnown = true;
};

}  // namespace

const std::vector<std::string>& TierPartNames() {
    static const std::vector<std::string> names = {"feature", "field",  "ignore",
                                                   "join",    "expand", "case"};
    return names;
}

std::vector<Word> ReadTokens(Cursor& cursor, Reporter& reporter, const std::string& what) {
    std::vector<Word> tokens;
    bool bAny = false;
    while (!cursor.AtEnd() && !cursor.IsSign('|')) {
        bAny = true;
        try {
            // A feature or tier that were lost with one token would be missed in every rule.
            tokens.push_back(cursor.ExpectToken("a token"));
        } catch (const Fault& fault) {
            reporter.Report(fault);
            cursor.Next();
        }
    }
    if (!bAny) cursor.Expected(what);
    return tokens;
}

std::optional<Tier> ReadTier(const StatementLines& lines, Reporter& reporter) {
    return TierReader(lines, reporter).Read();
}

}  // namespace mlds::rules::syntax
