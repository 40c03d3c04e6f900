// The lines of a rule file.
#include "syntax/lines.h"

#include <unicode/uchar.h>

#include "codepoints.h"

namespace mlds::rules::syntax {

namespace {

// Some work is done for each line and each place in it: what is longer is no rule file.
constexpr std::size_t kLongestLine = 100'000;
constexpr char32_t kByteOrderMark = U'\uFEFF';

// Where a line has its first character that is no blank; the size of the line if it has none.
std::size_t BeginOf(std::string_view line, int* pIndentation) {
    *pIndentation = 0;
    std::size_t at = 0;
    while (at < line.size()) {
        const CodePoint c = CodePointAt(line, at);
        if (!IsBlank(c.value)) break;
        at = c.next;
        ++*pIndentation;
    }
    return at;
}

std::size_t FirstInvalid(std::string_view line) {
    for (std::size_t at = 0; at < line.size();) {
        const CodePoint c = CodePointAt(line, at);
        if (!c.bValid) return at;
        at = c.next;
    }
    return std::string_view::npos;
}

// One message for the whole file: it is saved in another encoding, which is one fault.
void ReportEncoding(Reporter& reporter) {
    const Source& source = reporter.source();
    Fault fault;
    int nMore = 0;
    for (int number = 1; number <= source.lines(); ++number) {
        const std::string_view line = source.Line(number);
        const std::size_t at = FirstInvalid(line);
        if (at == std::string_view::npos) continue;
        if (fault.span.line == 0) {
            const int column = CountCodePoints(line.substr(0, at)) + 1;
            fault.span = Span{reporter.file(), number, column, 1};
        } else {
            reporter.Mute(number);
            ++nMore;
        }
    }
    if (fault.span.line == 0) return;
    const std::string_view text = source.text();
    const bool bUtf16 = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
    fault.message = bUtf16 ? "this file is UTF-16" : "this byte is no UTF-8";
    if (nMore > 0) {
        fault.message += ", like some in " + std::to_string(nMore) +
                         (nMore == 1 ? " other line" : " other lines");
    }
    fault.message += "; save the file as UTF-8";
    reporter.Report(fault);
    reporter.Mute(fault.span.line);
}

}  // namespace

bool IsBlank(char32_t c) {
    return c == kByteOrderMark || u_isUWhiteSpace(static_cast<UChar32>(c)) != 0;
}

Reporter::Reporter(const Sources& sources, int file, Diagnostics& diagnostics)
    : m_sources(sources),
      m_file(file),
      m_diagnostics(diagnostics),
      m_nOfLine(static_cast<std::size_t>(source().lines()) + 1, 0) {}

bool Reporter::Admits(const Span& span) {
    int& n = m_nOfLine.at(static_cast<std::size_t>(span.line));
    return n++ < kMostOfLine;
}

void Reporter::Report(const Fault& fault) {
    if (Admits(fault.span)) m_diagnostics.Error(m_sources, fault.span, fault.message);
}

void Reporter::Warn(const Fault& fault) {
    if (Admits(fault.span)) m_diagnostics.Warning(m_sources, fault.span, fault.message);
}

void Line::Append(const Source& source, int number) {
    // The line feed between them parts words and ends comments.
    if (!m_text.empty()) {
        m_text += '\n';
        m_places.push_back(m_end);
    }
    const std::string_view line = source.Line(number);
    m_text += line;
    Place place{number, 1};
    for (std::size_t at = 0; at < line.size(); ++place.column) {
        const std::size_t next = CodePointAt(line, at).next;
        // Of every byte, so that a place is looked up and not counted out for each word.
        m_places.insert(m_places.end(), next - at, place);
        at = next;
    }
    m_end = place;
}

Line::Place Line::PlaceOf(std::size_t offset) const {
    return offset < m_places.size() ? m_places[offset] : m_end;
}

Span Line::SpanOf(std::size_t begin, std::size_t end) const {
    const Place first = PlaceOf(begin);
    // Only within the stretch: a long line would be searched again for each of its words.
    const std::size_t lineEnd = text().substr(begin, end - begin).find('\n');
    const Place last = PlaceOf(lineEnd == std::string_view::npos ? end : begin + lineEnd);
    return {m_file, first.line, first.column, std::max(1, last.column - first.column)};
}

std::vector<StatementLines> SplitStatements(Reporter& reporter) {
    ReportEncoding(reporter);
    const Source& source = reporter.source();
    std::vector<StatementLines> statements;
    for (int number = 1; number <= source.lines(); ++number) {
        const std::string_view line = source.Line(number);
        int indentation = 0;
        const std::size_t begin = BeginOf(line, &indentation);
        // Comments stand wherever they look well: their indentation says nothing.
        if (begin == line.size() || line[begin] == ';') continue;
        if (line.size() > kLongestLine) {
            reporter.Report({{reporter.file(), number, 1, 1},
                             "this line is longer than 100,000 bytes; an indented line continues "
                             "the one above"});
            // What stands below it belongs to it, whatever it was.
            if (indentation == 0) statements.push_back({0, {}, true});
            continue;
        }
        if (indentation == 0) {
            statements.push_back({number, {}, false});
        } else {
            if (statements.empty()) statements.push_back({0, {}, false});
            statements.back().indented.push_back({number, indentation});
        }
    }
    return statements;
}

std::vector<Line> SplitParts(const Reporter& reporter, const StatementLines& lines,
                             std::size_t firstPart) {
    std::vector<Line> parts;
    for (std::size_t i = firstPart; i < lines.indented.size(); ++i) {
        const auto& indented = lines.indented[i];
        if (i == firstPart || indented.indentation <= lines.indented[firstPart].indentation) {
            parts.emplace_back(reporter.file());
        }
        parts.back().Append(reporter.source(), indented.number);
    }
    return parts;
}

Line HeadLine(const Reporter& reporter, const StatementLines& lines, std::size_t nIndented) {
    Line line(reporter.file());
    line.Append(reporter.source(), lines.number);
    for (std::size_t i = 0; i < nIndented; ++i) {
        line.Append(reporter.source(), lines.indented[i].number);
    }
    return line;
}

}  // namespace mlds::rules::syntax
