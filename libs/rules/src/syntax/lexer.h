// The words and signs of a line.
#ifndef MLDS_RULES_LEXER_H
#define MLDS_RULES_LEXER_H

#include <string>
#include <string_view>
#include <vector>

#include "syntax/lines.h"
#include "syntax/syntax.h"

namespace mlds::rules::syntax {

enum class Lex { word, text, sign, arrow, assign, end };

struct Lexeme {
    Lex kind = Lex::end;
    char sign = 0;
    bool bGlued = false;  ///< nothing stands between it and the one before
    Word word;            ///< its text where it has one; its place always
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// "'->'", "the end of the line": for messages.
std::string Described(const Lexeme& lexeme);

class Lexer {
public:
    explicit Lexer(const Line& line, std::size_t at = 0) : m_line(line), m_at(at) {}

    /// Throws a Fault at what can be no part of any line. Gives `end` again and again at the end.
    Lexeme Next();
    std::size_t at() const { return m_at; }

private:
    void SkipBlanks();
    Lexeme Made(Lex kind, std::size_t length, char sign = 0);
    Lexeme Text();
    Lexeme PlainWord();
    [[noreturn]] void ThrowControl(std::size_t at) const;

    const Line& m_line;
    std::size_t m_at;
};

/// All of a line but its end.
std::vector<Lexeme> Lexemes(const Line& line, std::size_t at = 0);

/// The rest of a line as it stands there, without blanks at its ends and without comments.
struct RawText {
    std::string text;
    std::size_t begin = 0;
    std::size_t end = 0;
};
RawText RawRest(const Line& line, std::size_t at);

}  // namespace mlds::rules::syntax

#endif
