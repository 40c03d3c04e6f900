// The files that rules are written in, and places in them.
#include "mlds/rules/source.h"

#include <algorithm>

#include "codepoints.h"

namespace mlds::rules {

Span Join(const Span& first, const Span& last) {
    if (first.file != last.file || first.line != last.line || last.column < first.column) {
        return first;
    }
    Span joined = first;
    joined.length = std::max(first.length, last.column + last.length - first.column);
    return joined;
}

Source::Source(std::string name, std::string text)
    : m_name(std::move(name)), m_text(std::move(text)) {
    // Editors show no byte order mark: columns would be one off in the first line.
    if (m_text.starts_with("\xEF\xBB\xBF")) m_text.erase(0, 3);
    m_lineBegins.push_back(0);
    for (std::size_t i = 0; i < m_text.size(); ++i) {
        if (m_text[i] == '\n' && i + 1 < m_text.size()) m_lineBegins.push_back(i + 1);
    }
}

std::string_view Source::Line(int number) const {
    if (number < 1 || number > lines()) return {};
    const auto index = static_cast<std::size_t>(number - 1);
    const std::size_t begin = m_lineBegins[index];
    const std::size_t end = number < lines() ? m_lineBegins[index + 1] : m_text.size();
    std::string_view line = std::string_view(m_text).substr(begin, end - begin);
    if (line.ends_with('\n')) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

int Sources::Add(std::string name, std::string text) {
    m_sources.emplace_back(std::move(name), std::move(text));
    return size() - 1;
}

std::string_view Sources::TextOf(const Span& span) const {
    if (span.line < 1 || span.file < 0 || span.file >= size()) return {};
    std::string_view line = At(span.file).Line(span.line);
    line.remove_prefix(OffsetOfCodePoint(line, span.column - 1));
    return line.substr(0, OffsetOfCodePoint(line, span.length));
}

}  // namespace mlds::rules
