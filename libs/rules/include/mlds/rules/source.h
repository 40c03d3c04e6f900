// The files that rules are written in, and places in them.
#ifndef MLDS_RULES_SOURCE_H
#define MLDS_RULES_SOURCE_H

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace mlds::rules {

/// A stretch of one line of a source. Lines and columns count from 1, columns and lengths in
/// characters (code points), so that a caret stands where an editor shows the fault. Line 0: no
/// place.
struct Span {
    int file = 0;  ///< index in Sources
    int line = 0;
    int column = 0;
    int length = 1;

    bool operator==(const Span&) const = default;
};

/// From the beginning of one stretch to the end of another; of the first alone where they are on
/// different lines.
Span Join(const Span& first, const Span& last);

/// One file, kept whole with its lines.
class Source {
public:
    Source(std::string name, std::string text);

    const std::string& name() const { return m_name; }
    const std::string& text() const { return m_text; }
    int lines() const { return static_cast<int>(m_lineBegins.size()); }
    /// A line without its end; empty for a number out of range.
    std::string_view Line(int number) const;

private:
    std::string m_name;
    std::string m_text;
    std::vector<std::size_t> m_lineBegins;
};

/// All files of one set of rules, the main one first. Sources stay where they are.
class Sources {
public:
    /// The index of the new source.
    int Add(std::string name, std::string text);
    const Source& At(int file) const { return m_sources.at(static_cast<std::size_t>(file)); }
    int size() const { return static_cast<int>(m_sources.size()); }
    /// What stands at a place; empty for no place.
    std::string_view TextOf(const Span& span) const;

private:
    std::deque<Source> m_sources;
};

}  // namespace mlds::rules

#endif
