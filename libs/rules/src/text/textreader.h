// Text as people type it, made into the letters that a language declares.
#ifndef MLDS_RULES_TEXTREADER_H
#define MLDS_RULES_TEXTREADER_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mlds/rules/diagnostics.h"
#include "mlds/rules/model.h"
#include "mlds/rules/text.h"

namespace mlds::rules {

struct ReadText {
    /// A character as typed, with its combining accents. The code is its code point, or a number
    /// of the reader's beyond Unicode's where it has several.
    struct Character {
        int code = 0;
    };
    /// The letters of a stretch of characters. Segments cover all characters, in order; their ends
    /// are tied to the letters' ends.
    struct Segment {
        int begin = 0;
        int end = 0;               ///< behind its last character
        std::vector<int> letters;  ///< tokens of the tier; kPlace for an empty place between them.
                                   ///< None: the whole stretch is an empty place
    };
    static constexpr int kPlace = -1;

    std::vector<Character> characters;
    std::vector<Segment> segments;
    std::vector<TextFault> faults;
};

/// Reads texts for one model, which must outlive it. One thread at a time: it remembers what it has
/// seen.
class TextReader {
public:
    explicit TextReader(const Model& model);
    ~TextReader();

    ReadText Read(std::string_view utf8, Unknown unknown);
    /// The letters of one word, "México", as tokens; what is no letter gives kPlace.
    TokenKey Letters(std::string_view utf8);
    /// What was typed, by its code in the text that was read last: codes of longer ago may have
    /// been given up.
    std::string CharacterOf(int code) const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_pParts;
};

/// Reports what is wrong with the text part of a model: letters that are not declared in readings,
/// expressions that ICU refuses, a language that it has no numbers for, contradictions.
void CheckText(const Model& model, const Sources& sources, Diagnostics& diagnostics);

/// UTF-8 in Unicode's composed form (NFC). Bytes that are no UTF-8 become U+FFFD, and `pFaultAt`
/// (if given) the offset of the first of them, or npos.
std::string Composed(std::string_view utf8, std::size_t* pFaultAt = nullptr);

}  // namespace mlds::rules

#endif
