// The name that somebody may have meant.
#include <unicode/uchar.h>

#include <algorithm>
#include <limits>

#include "codepoints.h"
#include "mlds/rules/diagnostics.h"
#include "nearestname.h"

namespace mlds::rules {

namespace {

// In quarters of a letter: "ts" is nearer to "tS" than to "ds".
constexpr int kLetter = 4;
constexpr int kCase = 1;
// Nobody mistypes a name of this length by a few letters, and the table grows with its square.
constexpr std::size_t kLongest = 80;

int Exchange(char32_t a, char32_t b) {
    if (a == b) return 0;
    const auto Folded = [](char32_t c) {
        return u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT);
    };
    return Folded(a) == Folded(b) ? kCase : kLetter;
}

// Letters left out, put in, exchanged, or two of them swapped.
int Distance(const std::u32string& a, const std::u32string& b) {
    const std::size_t width = b.size() + 1;
    // Three rows of the table are enough: a swap of two letters looks two rows back.
    std::vector<int> before(width);
    std::vector<int> above(width);
    std::vector<int> row(width);
    for (std::size_t j = 0; j < width; ++j) row[j] = static_cast<int>(j) * kLetter;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::swap(before, above);
        std::swap(above, row);
        row[0] = static_cast<int>(i) * kLetter;
        for (std::size_t j = 1; j < width; ++j) {
            row[j] = std::min({above[j] + kLetter, row[j - 1] + kLetter,
                               above[j - 1] + Exchange(a[i - 1], b[j - 1])});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before[j - 2] + kLetter);
            }
        }
    }
    return row.back();
}

}  // namespace

std::string_view NearestName(std::string_view word, const std::vector<std::string>& names) {
    const std::u32string wanted = CodePoints(word.substr(0, 4 * kLongest + 1));
    if (wanted.size() > kLongest) return {};
    std::string_view nearestName;
    int nearest = std::numeric_limits<int>::max();
    for (const std::string& name : names) {
        if (name.size() > 4 * kLongest) continue;
        const std::u32string letters = CodePoints(name);
        const std::size_t longer = std::max(letters.size(), wanted.size());
        // So many letters are missing at least: most names are passed without a table.
        const std::size_t apart = longer - std::min(letters.size(), wanted.size());
        if (longer > kLongest || 3 * apart > longer) continue;
        const int distance = Distance(wanted, letters);
        const bool bNear = 3 * distance <= kLetter * static_cast<int>(longer);
        if (distance == 0 || !bNear || distance >= nearest) continue;
        nearest = distance;
        nearestName = name;
    }
    return nearestName;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& names) {
    const std::string_view name = NearestName(word, names);
    return name.empty() ? std::string() : "; did you mean '" + std::string(name) + "'?";
}

}  // namespace mlds::rules
