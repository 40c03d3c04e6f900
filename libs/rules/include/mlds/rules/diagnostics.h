// What is wrong with rules, a lexicon or a text, and where.
#ifndef MLDS_RULES_DIAGNOSTICS_H
#define MLDS_RULES_DIAGNOSTICS_H

#include <string>
#include <string_view>
#include <vector>

#include "mlds/rules/source.h"

namespace mlds::rules {

enum class Severity { warning, error };

/// One message, complete in itself.
struct Diagnostic {
    std::string file;
    Span span;
    Severity severity = Severity::error;
    std::string message;
    std::string line;  ///< the text of the line; empty where there is none

    /// "FILE:LINE:COLUMN: error: MESSAGE", then the line and carets under the fault.
    std::string Text() const;
};

/// The diagnostics of all files of a set of rules.
class Diagnostics {
public:
    void Error(const Sources& sources, const Span& span, std::string message) {
        Add(sources, span, Severity::error, std::move(message));
    }
    void Warning(const Sources& sources, const Span& span, std::string message) {
        Add(sources, span, Severity::warning, std::move(message));
    }
    /// What is about no source: a file that cannot be read, a line of a text.
    void Add(Diagnostic diagnostic);

    int errors() const { return m_nErrors; }
    bool empty() const { return m_all.empty(); }
    /// In the order of files and places, each place and message once.
    std::vector<Diagnostic> all() const;
    /// The first `most` of them, and how many more there are.
    std::string Text(std::size_t most = 20) const;

private:
    void Add(const Sources& sources, const Span& span, Severity severity, std::string message);

    std::vector<Diagnostic> m_all;
    int m_nErrors = 0;
};

/// "; did you mean 'front'?" with the nearest of the names, or nothing if none is near.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& names);

}  // namespace mlds::rules

#endif
