// Words that rules cannot know, with their tokens.
#ifndef MLDS_RULES_LEXICON_H
#define MLDS_RULES_LEXICON_H

#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "mlds/rules/diagnostics.h"
#include "mlds/rules/model.h"

namespace mlds::rules {

/// The entries of one lexicon file: words by their letters, each with its tokens. Entries share one
/// array of pieces, so that a hundred thousand of them load at once.
class Lexicon {
public:
    /// Reads lines "WORD TAB TOKENS", where tokens stand as they are shown (m 'e x i k o). ";"
    /// begins a comment. What is wrong is reported with its line, the rest is taken.
    Lexicon(const Model& model, const LexiconFile& file, const Sources& sources, int source,
            Diagnostics& diagnostics);
    // Entries point into the pieces: a lexicon can be moved, not copied.
    Lexicon(const Lexicon&) = delete;
    Lexicon& operator=(const Lexicon&) = delete;
    Lexicon(Lexicon&&) = default;
    Lexicon& operator=(Lexicon&&) = default;

    /// The tokens of a word; null if it is not there.
    const std::span<const Piece>* Find(const TokenKey& word) const;
    std::size_t size() const { return m_entries.size(); }

private:
    std::vector<Piece> m_pieces;
    std::unordered_map<TokenKey, std::span<const Piece>> m_entries;
};

}  // namespace mlds::rules

#endif
