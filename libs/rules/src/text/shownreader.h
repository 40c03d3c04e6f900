// Reading back what "show" writes.
#ifndef MLDS_RULES_SHOWNREADER_H
#define MLDS_RULES_SHOWNREADER_H

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "mlds/rules/model.h"
#include "text/shown.h"

namespace mlds::rules {

/// Reads shown tokens of one tier; made once for many texts. The model must outlive it.
class ShownReader {
public:
    ShownReader(const Model& model, TierId tier);

    /// Reads one token of "'e"; false with what is wrong with it.
    bool ReadToken(std::string_view word, Piece& piece, std::string& fault) const;
    /// Reads all tokens of a text behind those that are there; the columns of their spans count
    /// from the beginning of the text. Stops at the first that cannot be read.
    bool Read(std::string_view text, ShownText& shown) const;

private:
    struct Mark {
        std::string text;
        std::vector<Setting> settings;
        std::string unreadable;  ///< why it cannot be read back
    };
    struct Strip;
    static std::vector<Strip> Strips(const std::vector<Mark>& marks, std::string_view word,
                                     bool bBefore);
    int FindMarked(std::string_view word, Strip& before, Strip& after) const;
    bool ReadTime(std::string_view word, Piece& piece, std::string& fault) const;
    std::string Unknown(std::string_view word) const;

    const Tier* m_pTier;
    std::unordered_map<std::string_view, int> m_tokens;
    std::vector<Mark> m_before;
    std::vector<Mark> m_after;
};

}  // namespace mlds::rules

#endif
