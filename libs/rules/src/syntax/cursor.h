// The way through the lexemes of a line, with what to say where it ends.
#ifndef MLDS_RULES_CURSOR_H
#define MLDS_RULES_CURSOR_H

#include <string>
#include <string_view>
#include <vector>

#include "syntax/lexer.h"

namespace mlds::rules::syntax {

class Cursor {
public:
    /// The last of the lexemes is an `end`.
    explicit Cursor(std::vector<Lexeme> lexemes) : m_lexemes(std::move(lexemes)) {}

    const Lexeme& Peek(std::size_t ahead = 0) const;
    /// Passes the next lexeme; stays at the end.
    const Lexeme& Next();
    bool AtEnd() const { return Peek().kind == Lex::end; }
    bool Is(Lex kind, std::size_t ahead = 0) const { return Peek(ahead).kind == kind; }
    bool IsSign(char sign, std::size_t ahead = 0) const;
    /// A sign that follows the one before without a blank.
    bool IsGlued(char sign, std::size_t ahead) const;
    /// That word, without quotes.
    bool IsWord(std::string_view word, std::size_t ahead = 0) const;
    bool IsToken(std::size_t ahead = 0) const {
        return Is(Lex::word, ahead) || Is(Lex::text, ahead);
    }

    bool TakeSign(char sign);
    bool TakeWord(std::string_view word);
    /// `what` in the message: "a tier's name", "':' behind the name"; `help`: how it is written.
    void ExpectSign(char sign, const std::string& what, const std::string& help = {});
    Word ExpectName(const std::string& what, const std::string& help = {});
    /// A name directly behind the sign that was taken last.
    Word ExpectGluedName(const std::string& what);
    Word ExpectText(const std::string& what);
    /// A word or a quoted text that is not empty; the word 0 is none.
    Word ExpectToken(const std::string& what);
    void ExpectEnd();

    /// "expected WHAT, found FOUND; HELP".
    [[noreturn]] void Expected(const std::string& what, const std::string& help = {}) const;
    /// The same where a token may stand, with how what was found is written as one.
    [[noreturn]] void ExpectedToken(const std::string& what) const;
    /// The same where one of some words may stand.
    [[noreturn]] void ExpectedWord(const std::string& what,
                                   const std::vector<std::string>& words) const;
    [[noreturn]] void Fail(const Span& span, std::string message) const {
        throw Fault{span, std::move(message)};
    }

    /// From a place to what was passed last.
    Span Since(const Span& begin) const;
    const std::vector<Lexeme>& lexemes() const { return m_lexemes; }

    /// One level of brackets, as long as it lives. Readers call themselves for what stands in
    /// brackets: this is what keeps them from running out of stack.
    class Level {
    public:
        explicit Level(Cursor& cursor);
        ~Level() { --m_cursor.m_depth; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        Cursor& m_cursor;
    };

private:
    std::vector<Lexeme> m_lexemes;
    std::size_t m_at = 0;
    int m_depth = 0;
};

/// What to add to a message where a sign stands in the place of a token.
std::string QuotingHelp(const Lexeme& lexeme);

/// A "-" in front of a name is a letter of its word: takes it away, and says whether there was one.
bool TakeMinus(Word* pName);

/// Whether "0" stands there without quotes, which is nothing and no token.
bool IsNothing(const Lexeme& lexeme);
std::string NothingIsNoToken();

/// The number of a word of digits. Numbers that are too large give `most` + 1; what is no number
/// gives -1.
int NumberOf(std::string_view digits, int most);

/// Throws where a bracket is not closed, or closed by another one. Angle brackets also stand in
/// comparisons and are left to those who read crossings.
void CheckBrackets(const std::vector<Lexeme>& lexemes);

/// A cursor over a line with its brackets checked.
Cursor PatternCursor(const Line& line);

}  // namespace mlds::rules::syntax

#endif
