// The way through the lexemes of a line.
#include "syntax/cursor.h"

#include <algorithm>

#include "codepoints.h"

namespace mlds::rules::syntax {

namespace {

// Far more than anybody reads, far less than a thread's stack holds: a level costs some hundred
// bytes in each of the functions that call each other, and sanitizers make frames larger.
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
    // The end is seen again and again, so nobody has to ask how many lexemes are left.
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

void Cursor::ExpectSign(char sign, const std::string& what, const std::string& help) {
    if (!TakeSign(sign)) Expected(what, help);
}

Word Cursor::ExpectName(const std::string& what, const std::string& help) {
    if (!Is(Lex::word)) Expected(what, help);
    return Next().word;
}

Word Cursor::ExpectGluedName(const std::string& what) {
    if (!Is(Lex::word)) Expected(what);
    // "# s" is an edge and then a token, so a blank is no matter of taste for names behind signs.
    if (!Peek().bGlued) Fail(Peek().word.span, "expected " + what + " without a blank before it");
    return Next().word;
}

Word Cursor::ExpectText(const std::string& what) {
    if (!Is(Lex::text)) Expected(what);
    return Next().word;
}

Word Cursor::ExpectToken(const std::string& what) {
    if (IsNothing(Peek())) Fail(Peek().word.span, NothingIsNoToken());
    if (!IsToken()) ExpectedToken(what);
    const Word word = Next().word;
    if (word.text.empty()) Fail(word.span, "expected " + what + ", found an empty text");
    return word;
}

void Cursor::ExpectEnd() {
    if (AtEnd()) return;
    // pt_BR, es.lex: one word for its author.
    const bool bInWord = Is(Lex::sign) && Peek().bGlued;
    Expected("the end of the line", bInWord ? "a word with this sign stands in quotes" : "");
}

void Cursor::Expected(const std::string& what, const std::string& help) const {
    const Lexeme& found = Peek();
    Fail(found.word.span,
         "expected " + what + ", found " + Described(found) + (help.empty() ? "" : "; ") + help);
}

void Cursor::ExpectedToken(const std::string& what) const {
    const Lexeme& found = Peek();
    Fail(found.word.span, "expected " + what + ", found " + Described(found) + QuotingHelp(found));
}

void Cursor::ExpectedWord(const std::string& what, const std::vector<std::string>& words) const {
    const Lexeme& found = Peek();
    const std::string near = Is(Lex::word) ? DidYouMean(found.word.text, words) : std::string();
    Fail(found.word.span, "expected " + what + ", found " + Described(found) + near);
}

Span Cursor::Since(const Span& begin) const {
    return m_at == 0 ? begin : Join(begin, m_lexemes[m_at - 1].word.span);
}

Cursor::Level::Level(Cursor& cursor) : m_cursor(cursor) {
    if (++cursor.m_depth > kDeepest) {
        // The destructor of an object that was never made does not run.
        --cursor.m_depth;
        cursor.Fail(cursor.Peek().word.span, "brackets are nested deeper than " +
                                                 std::to_string(kDeepest) +
                                                 " levels; name a part of this with 'pattern'");
    }
}

std::string QuotingHelp(const Lexeme& lexeme) {
    // Brackets are left out: who forgets one has forgotten the other half, not the quotes.
    const std::string_view kMayBeTokens = ".,:?!*+&#^@$/\\~_=<>";
    const bool bSign = lexeme.kind == Lex::sign || (lexeme.kind == Lex::end && lexeme.sign != 0);
    if (!bSign || kMayBeTokens.find(lexeme.sign) == std::string_view::npos) {
        return {};
    }
    const std::string escape = lexeme.sign == '\\' ? "\\" : "";
    return "; as a token it is written \"" + escape + lexeme.sign + "\"";
}

bool TakeMinus(Word* pName) {
    // A minus alone is a token.
    if (pName->bQuoted || pName->text.size() < 2 || pName->text.front() != '-') return false;
    pName->text.erase(0, 1);
    ++pName->span.column;
    --pName->span.length;
    return true;
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
        // Stops growing at the limit, however many digits there are.
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
    // The innermost one: what closes the outer ones may be there, taken for this one's.
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
