// From characters to the letters of a language, without expansions.
#ifndef MLDS_RULES_FOLDING_H
#define MLDS_RULES_FOLDING_H

#include <string>
#include <string_view>
#include <vector>

#include "mlds/rules/model.h"
#include "text/prefixtree.h"
#include "text/typedtext.h"
#include "text/unicodetable.h"

namespace mlds::rules {

/// What a text part says of characters: "read", "letters", "ignore", "join" and the declared
/// letters themselves.
class Folding {
public:
    enum class Kind {
        letters,
        place,   ///< no letter, but what stands on both sides does not touch
        joined,  ///< no letter, and what stands on both sides touches
        unknown,
    };
    struct Step {
        Kind kind = Kind::unknown;
        int end = 0;          ///< behind the last character that it took
        bool bOther = false;  ///< a place only because all others are ignored
    };
    static constexpr int kPlace = -1;

    Folding(const Model& model, UnicodeTable& unicode);

    /// Reads what stands at a character, the longest that is known, and appends its letters.
    Step Next(const TypedText& text, int at, std::vector<int>& letters);

    /// The letters of a text that nobody typed: a reading. Empty places are single, and none stands
    /// at the ends. Null `pUnknown`: unknown characters are empty places; else their indices.
    std::vector<int> Letters(const TypedText& text, std::vector<int>* pUnknown = nullptr);
    std::vector<int> Letters(std::string_view utf8, std::vector<int>* pUnknown = nullptr);

    UnicodeTable& unicode() { return m_unicode; }
    /// The tokens of what "letters x = ..." gives, with what is no letter left out and returned.
    std::vector<int> Tokens(std::string_view utf8, std::vector<std::string>* pUnknown = nullptr);

private:
    struct Entry {
        Kind kind = Kind::letters;
        std::vector<int> letters;
    };
    void AddEntries(const Model& model);
    void AddReads(const Model& model);
    void AddEntry(std::string_view utf8, Kind kind, std::vector<int> letters);
    bool Read(const TypedText& text, int at, std::vector<int>& letters, Step& step);
    bool Take(const TypedText& text, int at, std::vector<int>& letters, Step& step);
    bool TakeRest(const TypedText& text, std::size_t from, std::size_t to,
                  std::vector<int>& letters);

    UnicodeTable& m_unicode;
    const Tier* m_pTier = nullptr;
    bool m_bIgnoreOther;
    std::vector<Entry> m_entries;
    PrefixTree m_letters;   ///< over lower case
    PrefixTree m_tokens;    ///< the declared letters alone, as written
    PrefixTree m_reads;     ///< over what was typed, and
    PrefixTree m_lowReads;  ///< over lower case
    std::vector<std::vector<int>> m_readLetters;
    std::vector<PrefixTree::Hit> m_hits;
    std::vector<PrefixTree::Hit> m_restHits;
};

}  // namespace mlds::rules

#endif
