// The lines of a rule file: which belong together, and where each of their characters stands.
#ifndef MLDS_RULES_LINES_H
#define MLDS_RULES_LINES_H

#include <string>
#include <string_view>
#include <vector>

#include "mlds/rules/diagnostics.h"
#include "mlds/rules/source.h"

namespace mlds::rules::syntax {

/// Thrown where a line or a rule cannot be read; caught where reading can go on.
struct Fault {
    Span span;
    std::string message;
};

/// What is reported of one file. A line whose bytes are no text gets one message, not one for
/// everything that does not make sense in it.
class Reporter {
public:
    Reporter(const Sources& sources, int file, Diagnostics& diagnostics);

    void Report(const Fault& fault);
    void Warn(const Fault& fault);
    /// The line gets no more messages.
    void Mute(int line) { m_nOfLine.at(static_cast<std::size_t>(line)) = kMostOfLine; }

    const Source& source() const { return m_sources.At(m_file); }
    int file() const { return m_file; }

private:
    // Each message keeps a copy of its line: without a limit, a line of 100,000 commas would be
    // kept 100,000 times.
    static constexpr int kMostOfLine = 8;

    bool Admits(const Span& span);

    const Sources& m_sources;
    int m_file;
    Diagnostics& m_diagnostics;
    std::vector<int> m_nOfLine;
};

/// One line with those that continue it, a line feed between them.
class Line {
public:
    explicit Line(int file) : m_file(file) {}
    void Append(const Source& source, int number);

    std::string_view text() const { return m_text; }
    int number() const { return m_places.empty() ? 0 : m_places.front().line; }
    /// From one offset in the text to another, as far as that is on the line of the first.
    Span SpanOf(std::size_t begin, std::size_t end) const;

private:
    struct Place {
        int line = 0;
        int column = 1;
    };
    Place PlaceOf(std::size_t offset) const;

    int m_file;
    std::string m_text;
    std::vector<Place> m_places;  ///< of every byte
    Place m_end;
};

/// A line that is not indented, and the numbers of the indented ones below it.
struct StatementLines {
    struct Indented {
        int number = 0;
        int indentation = 0;
    };
    int number = 0;  ///< 0: the file begins with indented lines
    std::vector<Indented> indented;
    bool bUnread = false;  ///< its first line was reported and is lost
};

bool IsBlank(char32_t c);

/// Reports lines that cannot be read at all, and leaves them out as it does empty ones.
std::vector<StatementLines> SplitStatements(Reporter& reporter);

/// The lines of a statement whose parts are its first indented line and those that are not deeper;
/// what is deeper continues the line above.
std::vector<Line> SplitParts(const Reporter& reporter, const StatementLines& lines,
                             std::size_t firstPart = 0);

/// The first line of a statement, continued by its first `nIndented` indented ones.
Line HeadLine(const Reporter& reporter, const StatementLines& lines, std::size_t nIndented);

}  // namespace mlds::rules::syntax

#endif
