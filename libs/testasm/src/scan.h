// The words of one line.
#ifndef MLDS_TESTASM_SCAN_H
#define MLDS_TESTASM_SCAN_H

#include <string>
#include <string_view>
#include <vector>

#include "mlds/testasm/diagnostics.h"

namespace mlds_testasm {

enum class Lex { word, number, text, stream, mark, token, dot, colon, end };
struct Lexeme {
    Lex kind = Lex::end;
    std::string text;  ///< a word, the content of a quoted text, or the name behind %, ^ or $
    int number = 0;
    int column = 0;
    std::string_view source;  ///< as it stands in the line
};

/// A line, read from left to right. What cannot be read is reported, and the line is empty then.
class Line {
public:
    Line(std::string_view text, int number, Diagnostics& diagnostics);

    const Lexeme& Peek(std::size_t ahead = 0) const;
    bool Is(Lex kind) const { return Peek().kind == kind; }
    bool IsWord(std::string_view word) const { return Is(Lex::word) && Peek().text == word; }
    bool AtEnd() const { return Is(Lex::end); }
    Lexeme Next();
    bool Skip(Lex kind);
    bool SkipWord(std::string_view word);
    Place place() const { return {m_number, Peek().column}; }

    /// A word or a quoted text; otherwise says that `what` was expected.
    bool Name(const std::string& what, std::string* pName);
    /// Reports what was expected in place of the next word. False, for returning it.
    bool Expected(const std::string& what);
    /// Reports if something is left.
    void ExpectEnd();

private:
    bool Scan(std::string_view text);
    std::size_t ScanQuoted(std::string_view text, std::size_t at, Lexeme* pLexeme);
    bool Fail(std::size_t at, std::string message);

    int m_number;
    Diagnostics& m_diagnostics;
    std::vector<Lexeme> m_lexemes;
    std::size_t m_at = 0;
};

/// The lines of a text, without their ends.
std::vector<std::string_view> SplitLines(std::string_view text);

/// A name as it stands in texts, quoted unless it is a plain word.
std::string Quoted(std::string_view name, bool bAlways = false);

}  // namespace mlds_testasm

#endif
