// The way through the lexemes of a line.
#include "syntax/cursor.h"

#include <algorithm>

#include "codepoints.h"

namespace mlds::rules::syntax {

namespace {

constexpr int kDeepest = 100;

char CloserOf(char opener) {
    switch (opener) {
        case '(': return ')';
        case '[': return ']';
        case '{': return '}';
        default: return 0;
    }
}

}  // namespace

const Lexeme& Cursor::Peek(std::size_t ahead) const {
    return m_lexemes[std::min(m_at + ahead, m_lexemes.size() - 1)];
}

const Lexeme& Cursor::Next() {
    const Lexeme& lexeme = Peek();
    if (lexeme.kind != Lex::end) ++m_at;
    return lexeme;
}

bool Cursor::IsSign(char sign, std::size_t ahead) const {
    return Is(Lex::sign, ahead) && Peek(ahead).sign == sign;
}

bool Cursor::IsGlued(char sign, std::size_t ahead) const {
    return IsSign(sign, ahead) && Peek(ahead).bGlued;
}

bool Cursor::IsWord(std::string_view word, std::size_t ahead) const {
    return Is(Lex::word, ahead) && Peek(ahead).word.text == word;
}

bool Cursor::TakeSign(char sign) {
    if (!IsSign(sign)) return false;
    Next();
    return true;
}

bool Cursor::TakeWord(std::string_view word) {
    if (!IsWord(word)) return false;
    Next();
    return true;
}

void Cursor::ExpectSign(char sign, const std::string& what) {
    if (!TakeSign(sign)) Expected(what);
}

Word Cursor::ExpectName(const std::string& what) {
    if (!Is(Lex::word)) Expected(what);
    return Next().word;
}

Word Cursor::ExpectGluedName(const std::string& what) {
    if (!Is(Lex::word)) Expected(what);
    if (!Peek().bGlued) Fail(Peek().word.span, "expected " + what + " without a blank before it");
    return Next().word;
}

Word Cursor::ExpectText(const std::string& what) {
    if (!Is(Lex::text)) Expected(what);
    return Next().word;
}

Word Cursor::ExpectToken(const std::string& what) {
    if (IsNothing(Peek())) Fail(Peek().word.span, NothingIsNoToken());
    if (!IsToken()) Expected(what);
    const Word word = Next().word;
    if (word.text.empty()) Fail(word.span, "expected " + what + ", found an empty text");
    return word;
}

void Cursor::ExpectEnd() {
    if (!AtEnd()) Expected("the end of the line");
}

void Cursor::Expected(const std::string& what) const {
    const Lexeme& found = Peek();
    Fail(found.word.span, "expected " + what + ", found " + Described(found) + QuotingHelp(found));
}

Span Cursor::Since(const Span& begin) const {
    return m_at == 0 ? begin : Join(begin, m_lexemes[m_at - 1].word.span);
}

Cursor::Level::Level(Cursor& cursor) : m_cursor(cursor) {
    if (++cursor.m_depth > kDeepest) {
        // The destructor of an object that was never made does not run.
        --cursor.m_depth;
        cursor.Fail(cursor.Peek().word.span, "brackets stand deeper in each other than " +
                                                 std::to_string(kDeepest) +
                                                 " levels; name a part of this with 'pattern'");
    }
}

std::string QuotingHelp(const Lexeme& lexeme) {
    const std::string_view kMayBeTokens = ".,:?!*+&#^@$/\\~_=<>";
    if (lexeme.kind != Lex::sign || kMayBeTokens.find(lexeme.sign) == std::string_view::npos) {
        return {};
    }
    const std::string escape = lexeme.sign == '\\' ? "\\" : "";
    return "; as a token it is written \"" + escape + lexeme.sign + "\"";
}

bool IsNothing(const Lexeme& lexeme) {
    return lexeme.kind == Lex::word && lexeme.word.text == "0";
}

std::string NothingIsNoToken() {
    return "'0' without quotes is nothing; the token is written \"0\"";
}

int NumberOf(std::string_view digits, int most) {
    if (digits.empty()) return -1;
    int number = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9') return -1;
        if (number <= most) number = std::min(number * 10 + (c - '0'), most + 1);
    }
    return number;
}

void CheckBrackets(const std::vector<Lexeme>& lexemes) {
    std::vector<const Lexeme*> open;
    for (const Lexeme& lexeme : lexemes) {
        if (lexeme.kind != Lex::sign) continue;
        if (CloserOf(lexeme.sign) != 0) open.push_back(&lexeme);
        if (lexeme.sign != ')' && lexeme.sign != ']' && lexeme.sign != '}') continue;
        if (open.empty()) {
            throw Fault{lexeme.word.span, Described(lexeme) + " closes nothing"};
        }
        if (CloserOf(open.back()->sign) != lexeme.sign) {
            const Span& opened = open.back()->word.span;
            throw Fault{lexeme.word.span, Described(lexeme) + " cannot close the " +
                                              Described(*open.back()) + " of line " +
                                              std::to_string(opened.line) + ", column " +
                                              std::to_string(opened.column)};
        }
        open.pop_back();
    }
    if (!open.empty()) {
        throw Fault{open.back()->word.span, "this " + Described(*open.back()) + " is not closed"};
    }
}

Cursor PatternCursor(const Line& line) {
    std::vector<Lexeme> lexemes = Lexemes(line);
    CheckBrackets(lexemes);
    return Cursor(std::move(lexemes));
}

}  // namespace mlds::rules::syntax
