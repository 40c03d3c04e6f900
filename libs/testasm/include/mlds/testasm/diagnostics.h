// What is wrong with a text or a program, and where.
#ifndef MLDS_TESTASM_DIAGNOSTICS_H
#define MLDS_TESTASM_DIAGNOSTICS_H

#include <compare>
#include <string>
#include <string_view>
#include <vector>

namespace mlds_testasm {

/// A place in a text, both counted from 1 (columns in bytes). Where there is no text the line is 0
/// and the column the index of an instruction in the program's array.
struct Place {
    int line = 0;
    int column = 0;

    auto operator<=>(const Place&) const = default;
};

/// What a message quotes of a text: all of it, or of a long one the beginning and "...".
std::string Shortened(std::string_view text);

enum class Severity { warning, error };

struct Diagnostic {
    std::string file;
    Place place;
    Severity severity;
    std::string message;

    /// "FILE:LINE:COLUMN: error: MESSAGE", or "FILE: instruction INDEX: error: MESSAGE".
    std::string Text() const;
};

/// Diagnostics of one file.
class Diagnostics {
public:
    explicit Diagnostics(std::string file) : m_file(std::move(file)) {}

    void Error(Place place, std::string message) {
        Add(place, Severity::error, std::move(message));
    }
    void Warning(Place place, std::string message) {
        Add(place, Severity::warning, std::move(message));
    }
    int errors() const { return m_nErrors; }
    /// In the order of their places.
    std::vector<Diagnostic> all() const;
    /// One a line.
    std::string Text() const;

private:
    void Add(Place place, Severity severity, std::string message) {
        if (severity == Severity::error) ++m_nErrors;
        m_all.push_back({m_file, place, severity, std::move(message)});
    }

    std::string m_file;
    std::vector<Diagnostic> m_all;
    int m_nErrors = 0;
};

}  // namespace mlds_testasm

#endif
