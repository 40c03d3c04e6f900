// Rule files that somebody has spoilt: whatever they say now, they are read, and run if they
// compile.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <random>

#include "mlds/rules/observer.h"
#include "mlds/rules/rulehost.h"
#include "support/tiers.h"
#include "support/wholelanguage.h"

namespace mlds_test {
namespace {

using mlds::RuleHost;
using mlds::RuleSet;
using mlds::rules::Diagnostic;
using mlds::rules::Diagnostics;

// Sanitizers on a busy machine included; what takes longer hangs.
constexpr std::chrono::seconds kLimit{20};

int FromEnvironment(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
}

bool IsWordSign(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || std::isalnum(byte) != 0;
}
bool IsWord(const std::string& piece) {
    return IsWordSign(piece[0]);
}

// A file as words, signs, blanks and line ends, so that what comes out still resembles rules.
std::vector<std::string> PiecesOf(const std::string& text) {
    std::vector<std::string> pieces;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        if (IsWordSign(text[at])) {
            while (end < text.size() && IsWordSign(text[end])) ++end;
        }
        pieces.push_back(text.substr(at, end - at));
        at = end;
    }
    return pieces;
}

class Spoiler {
public:
    Spoiler(const std::string& text, unsigned seed) : m_pieces(PiecesOf(text)), m_random(seed) {}

    // Half of them lightly, for most of those still compile; what is spoilt more does not.
    std::string Spoil() {
        const bool bLightly = Below(2) == 0;
        for (std::size_t n = 1 + Below(bLightly ? 2 : 6); n > 0; --n) Once(bLightly);
        std::string text;
        for (const std::string& piece : m_pieces) text += piece;
        return text;
    }

private:
    std::size_t Below(std::size_t n) { return m_random() % n; }
    std::size_t Any() { return Below(m_pieces.size()); }
    std::string Sign() {
        static const char* const kSigns[] = {
            "(", ")", "[", "]", "{", "}", "<", ">",  "|", "\"",   "/",     "\\", "_", "->", ":=",
            "#", "=", "$", "^", "@", "&", "!", "?",  "*", "+",    ".",     ",",  ";", ":",  "~",
            "0", "-", "%", "é", " ", "%", ".", "in", "_", "each", "{0,9}", "##", "1", "\n", "\xff",
        };
        return kSigns[Below(std::size(kSigns))];
    }
    std::vector<std::string>::iterator At(std::size_t i) {
        return m_pieces.begin() + static_cast<std::ptrdiff_t>(i);
    }
    std::vector<std::string>::iterator EndOfLine(std::size_t from) {
        return std::find(At(from), m_pieces.end(), "\n");
    }

    void Once(bool bLightly) {
        switch (Below(bLightly ? 4 : 8)) {
            case 0: m_pieces[Any()] = Like(m_pieces[Any()]); break;
            case 1: CopyLine(); break;
            case 2: DropLine(); break;
            case 3: SwapAlike(); break;
            case 4: m_pieces.erase(At(Any())); break;
            case 5: m_pieces.insert(At(Any()), Sign()); break;
            case 6: m_pieces[Any()] = Sign(); break;
            case 7: std::swap(m_pieces[Any()], m_pieces[Any()]); break;
        }
    }

    // Another quantifier for one, another digit, a longer word.
    std::string Like(const std::string& piece) {
        static const std::string kQuantifiers = "?*+";
        if (kQuantifiers.find(piece) != std::string::npos) {
            return kQuantifiers.substr(Below(kQuantifiers.size()), 1);
        }
        if (IsWord(piece)) return Below(3) == 0 ? std::to_string(Below(200)) : piece + "s";
        return piece + piece;
    }
    // Words change places, those near each other more often: names of the same kind.
    void SwapAlike() {
        const std::size_t first = Any();
        for (std::size_t i = first + 1; i < m_pieces.size(); ++i) {
            const bool bAlike = IsWord(m_pieces[i]) == IsWord(m_pieces[first]);
            if (!bAlike || m_pieces[i] == " " || Below(3) != 0) continue;
            std::swap(m_pieces[i], m_pieces[first]);
            return;
        }
    }
    void CopyLine() {
        const auto from = EndOfLine(Any());
        if (from == m_pieces.end()) return;
        const std::vector<std::string> line(from, std::find(from + 1, m_pieces.end(), "\n"));
        // Near its place it is of the same block, far from it of another one.
        const auto here = static_cast<std::size_t>(from - m_pieces.begin());
        m_pieces.insert(EndOfLine(Below(2) == 0 ? here : Any()), line.begin(), line.end());
    }
    void DropLine() {
        const auto from = EndOfLine(Any());
        if (from != m_pieces.end()) m_pieces.erase(from, std::find(from + 1, m_pieces.end(), "\n"));
    }

    std::vector<std::string> m_pieces;
    std::mt19937 m_random;
};

void ExpectPlaces(const Diagnostics& diagnostics) {
    for (const Diagnostic& one : diagnostics.all()) {
        EXPECT_GE(one.span.line, 1) << one.message;
        EXPECT_GE(one.span.column, 1) << one.message;
        EXPECT_FALSE(one.Text().empty());
    }
}

// MLDS_MUTATIONS=10000 for more, MLDS_SEED=n to begin elsewhere.
TEST(Rules, SpoiltFilesAreReadAndRun) {
    const int nFiles = FromEnvironment("MLDS_MUTATIONS", 300);
    const int seed = FromEnvironment("MLDS_SEED", 1);
    int nCompiled = 0;
    for (int i = seed; i < seed + nFiles; ++i) {
        const std::string text = Spoiler(kWholeLanguage, static_cast<unsigned>(i)).Spoil();
        SCOPED_TRACE("MLDS_SEED=" + std::to_string(i) + "\n");
        const auto start = std::chrono::steady_clock::now();
        Diagnostics diagnostics;
        const auto pRules = RuleSet::ReadText(text, "spoilt.mlr", diagnostics);
        ExpectPlaces(diagnostics);
        EXPECT_EQ(pRules == nullptr, diagnostics.errors() > 0);
        if (pRules != nullptr) {
            ++nCompiled;
            RuleHost host(pRules), watched(pRules);
            mlds::rules::RuleObserver observer;
            watched.SetObserver(&observer);
            for (const char* sentence : kSentences) {
                const mlds::RunOutcome outcome = host.Run(sentence);
                EXPECT_TRUE(outcome.bDone || !outcome.faults.empty());
                ASSERT_EQ(CheckStructure(host.plexa()), "") << sentence << "\n" << text;
                // Watched, every rule is tried wherever it could begin.
                watched.Run(sentence);
                ASSERT_EQ(Dump(host.plexa()), Dump(watched.plexa())) << sentence << "\n" << text;
            }
        }
        const auto time = std::chrono::steady_clock::now() - start;
        ASSERT_LT(time, kLimit) << text;
    }
    RecordProperty("compiled", nCompiled);
    // Otherwise only half of the work was looked at.
    EXPECT_GT(nCompiled, nFiles / 20);
    EXPECT_LT(nCompiled, nFiles);
}

}  // namespace
}  // namespace mlds_test
