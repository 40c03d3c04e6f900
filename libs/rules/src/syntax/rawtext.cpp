// Statements with a part that is taken as it is written.
#include "syntax/cursor.h"
#include "syntax/statements.h"
#include "text/textreader.h"

namespace mlds::rules::syntax {

namespace {

// Of the last " as " outside of quotes; npos if there is none.
std::size_t FindLastAs(std::string_view text) {
    std::size_t found = std::string_view::npos;
    bool bQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') bQuoted = !bQuoted;
        const bool bAs = !bQuoted && text.substr(i, 4) == " as ";
        // A backslash keeps its quote from being one, in a regular expression as in quotes.
        if (text[i] == '\\') ++i;
        if (bAs) found = i;
    }
    return found;
}

// One quoted text and nothing else?
bool IsOneText(const std::vector<Lexeme>& lexemes) {
    return lexemes.size() == 2 && lexemes.front().kind == Lex::text;
}

// The words behind "as".
void ReadReading(const Line& line, std::size_t at, Expansion* pExpansion) {
    Cursor cursor(Lexemes(line, at));
    const bool bOneText = IsOneText(cursor.lexemes());
    if (!bOneText && cursor.IsWord("spellout") && cursor.Is(Lex::end, 1)) {
        pExpansion->bSpellout = true;
        pExpansion->reading = {};
        return;
    }
    Word reading =
        cursor.ExpectToken("the reading behind 'as': words, a text in quotes or spellout");
    while (!bOneText && !cursor.AtEnd()) {
        if (!cursor.Is(Lex::word)) cursor.Expected("a word of the reading, or all of it in quotes");
        const Word& word = cursor.Next().word;
        reading.text += ' ' + word.text;
        reading.span = Join(reading.span, word.span);
    }
    pExpansion->reading = std::move(reading);
}

}  // namespace

Expansion ReadExpansion(const Line& line, std::size_t behindKeyword) {
    const RawText raw = RawRest(line, behindKeyword);
    const std::size_t as = FindLastAs(raw.text);
    if (as == std::string_view::npos) {
        throw Fault{line.SpanOf(raw.begin, raw.end),
                    "expected 'as' and a reading, as in expand \"Sr.\" as \"se\xC3\xB1or\""};
    }
    Expansion expansion;
    const std::size_t length = raw.text.find_last_not_of(" \t", as) + 1;
    expansion.pattern.span = line.SpanOf(raw.begin, raw.begin + length);
    // "Sr." alone is a literal; "a"|"b" is an expression that begins with a quote.
    if (raw.text.front() == '"') {
        const Lexeme literal = Lexer(line, raw.begin).Next();
        if (literal.end == raw.begin + length) expansion.pattern = literal.word;
    }
    if (!expansion.pattern.bQuoted) {
        expansion.pattern.text = Composed(std::string_view(raw.text).substr(0, length));
    }
    if (expansion.pattern.text.empty()) {
        throw Fault{expansion.pattern.span, "expected what to expand, found an empty text"};
    }
    constexpr std::size_t kAs = 4;
    ReadReading(line, raw.begin + as + kAs, &expansion);
    return expansion;
}

Assert ReadAssert(const Line& line) {
    Lexer lexer(line);
    lexer.Next();
    Assert statement;
    const auto Taken = [&](auto bFits, const char* pWhat) {
        Lexeme lexeme = lexer.Next();
        if (!bFits(lexeme)) Cursor({lexeme}).Expected(pWhat);
        return lexeme;
    };
    const auto Is = [](Lex kind) { return [kind](const Lexeme& l) { return l.kind == kind; }; };
    const auto IsSign = [](char sign) {
        return [sign](const Lexeme& l) { return l.kind == Lex::sign && l.sign == sign; };
    };
    const char* const kArrow = "'=>' behind the text, and then the tokens that it becomes";
    statement.input = Taken(Is(Lex::text), "a text in quotes behind 'assert'").word;
    Taken(IsSign('='), kArrow);
    Taken(IsSign('>'), kArrow);
    std::size_t begin = lexer.at();
    // Looked at as it stands: what is expected may hold quotes and signs that are no lexemes.
    const RawText first = RawRest(line, begin);
    if (first.text.starts_with("tier ") || first.text.starts_with("tier\t")) {
        lexer.Next();
        statement.tier = Taken(Is(Lex::word), "the name of a tier behind 'tier'").word;
        Taken(IsSign(':'), "':' behind the tier's name");
        begin = lexer.at();
    }
    const RawText raw = RawRest(line, begin);
    statement.expected = Composed(raw.text);
    statement.span = line.SpanOf(raw.begin, raw.end);
    return statement;
}

}  // namespace mlds::rules::syntax
