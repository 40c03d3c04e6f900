// What is wrong with a text or a program, and where.
#include "mlds/testasm/diagnostics.h"

#include <algorithm>

namespace mlds_testasm {

std::string Diagnostic::Text() const {
    const std::string column = std::to_string(place.column);
    const std::string where = place.line > 0 ? ":" + std::to_string(place.line) + ":" + column
                                             : ": instruction " + column;
    return file + where + (severity == Severity::error ? ": error: " : ": warning: ") + message;
}

std::vector<Diagnostic> Diagnostics::all() const {
    std::vector<Diagnostic> sorted = m_all;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Diagnostic& a, const Diagnostic& b) { return a.place < b.place; });
    return sorted;
}

std::string Diagnostics::Text() const {
    std::string text;
    for (const Diagnostic& diagnostic : all()) text += diagnostic.Text() + "\n";
    return text;
}

}  // namespace mlds_testasm
