// What is wrong with rules, a lexicon or a text, and where.
#include "mlds/rules/diagnostics.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <map>
#include <tuple>

#include "codepoints.h"

namespace mlds::rules {

namespace {

// A line of a generated file may have a hundred thousand characters; more than this around the
// fault helps nobody.
constexpr int kShownBefore = 100;
constexpr int kShownBehind = 120;

void AppendUtf8(char32_t c, std::string* pText) {
    std::array<char, U8_MAX_LENGTH> bytes{};
    std::size_t nBytes = 0;
    U8_APPEND_UNSAFE(bytes, nBytes, c);
    pText->append(bytes.data(), nBytes);
}

// How many columns of a terminal a character takes.
int Width(char32_t c) {
    const auto code = static_cast<UChar32>(c);
    const int type = u_charType(code);
    if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR) return 0;
    const int width = u_getIntPropertyValue(code, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

// The line and carets under the stretch. Control characters would move the carets, or more in a
// terminal.
std::string Picture(const std::string& line, const Span& span) {
    const std::u32string codes = CodePoints(line);
    const int nCodes = static_cast<int>(codes.size());
    const int fault = std::clamp(span.column - 1, 0, nCodes);
    const int begin = std::max(0, fault - kShownBefore);
    const int end = std::min(nCodes, fault + kShownBehind);
    const int faultEnd = std::min(end, fault + std::max(1, span.length));

    std::string shown = begin > 0 ? "..." : "";
    std::string carets(shown.size(), ' ');
    for (int i = begin; i < end; ++i) {
        const char32_t c = codes[static_cast<std::size_t>(i)];
        const bool bControl = c != '\t' && u_charType(static_cast<UChar32>(c)) == U_CONTROL_CHAR;
        AppendUtf8(bControl ? U'\uFFFD' : c, &shown);
        if (i < fault) {
            carets += c == '\t' ? "\t" : std::string(bControl ? 1U : std::size_t(Width(c)), ' ');
        } else if (i > fault && i < faultEnd) {
            carets.append(std::size_t(Width(c)), '~');
        } else if (i == fault) {
            carets += Width(c) == 2 ? "^~" : "^";
        }
    }
    if (fault == nCodes) carets += '^';
    if (end < nCodes) shown += "...";
    return shown + "\n" + carets;
}

}  // namespace

std::string Diagnostic::Text() const {
    std::string text = file;
    if (span.line > 0) {
        text += ':' + std::to_string(span.line) + ':' + std::to_string(span.column);
    }
    text += severity == Severity::error ? ": error: " : ": warning: ";
    text += message;
    if (!line.empty()) text += '\n' + Picture(line, span);
    return text;
}

void Diagnostics::Add(Diagnostic diagnostic) {
    if (diagnostic.severity == Severity::error) ++m_nErrors;
    m_all.push_back(std::move(diagnostic));
}

void Diagnostics::Add(const Sources& sources, const Span& span, Severity severity,
                      std::string message) {
    Diagnostic diagnostic{{}, span, severity, std::move(message), {}};
    if (span.file >= 0 && span.file < sources.size()) {
        const Source& source = sources.At(span.file);
        diagnostic.file = source.name();
        diagnostic.line = std::string(source.Line(span.line));
    }
    Add(std::move(diagnostic));
}

std::vector<Diagnostic> Diagnostics::all() const {
    // Files that are no source (a lexicon, a text) have no number: they come in the order in which
    // they were first found fault with.
    std::map<std::string_view, std::size_t> rankOfFile;
    for (const Diagnostic& d : m_all) rankOfFile.emplace(d.file, rankOfFile.size());
    const auto Place = [&](const Diagnostic* p) {
        return std::tuple(p->span.file, rankOfFile.at(p->file), p->span.line, p->span.column);
    };
    std::vector<const Diagnostic*> sorted;
    for (const Diagnostic& d : m_all) sorted.push_back(&d);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](const auto* pA, const auto* pB) { return Place(pA) < Place(pB); });

    std::vector<Diagnostic> all;
    std::size_t firstOfPlace = 0;
    for (const Diagnostic* p : sorted) {
        if (all.empty() || Place(&all.back()) != Place(p)) firstOfPlace = all.size();
        const auto begin = all.begin() + static_cast<std::ptrdiff_t>(firstOfPlace);
        if (std::none_of(begin, all.end(),
                         [&](const Diagnostic& d) { return d.message == p->message; })) {
            all.push_back(*p);
        }
    }
    return all;
}

std::string Diagnostics::Text(std::size_t most) const {
    const std::vector<Diagnostic> sorted = all();
    std::string text;
    for (std::size_t i = 0; i < std::min(most, sorted.size()); ++i) text += sorted[i].Text() + '\n';
    if (sorted.size() > most) {
        text += "and " + std::to_string(sorted.size() - most) + " more\n";
    }
    return text;
}

}  // namespace mlds::rules
