// What is wrong with a text or a program, and where.
#include "mlds/testasm/diagnostics.h"

#include <algorithm>

namespace mlds_testasm {

std::string Shortened(std::string_view text) {
    constexpr std::size_t kMost = 60;
    if (text.size() <= kMost) return std::string(text);
    // Not in the middle of a character, should the text be UTF-8.
    std::size_t length = kMost;
    for (int i = 0; i < 3 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80; ++i) {
        --length;
    }
    return std::string(text.substr(0, length)) + "...";
}

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
