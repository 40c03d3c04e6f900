// Stretches of text that are read as something else: "Sr." as "señor", numbers in words.
#ifndef MLDS_RULES_EXPANSIONS_H
#define MLDS_RULES_EXPANSIONS_H

#include <memory>
#include <unordered_map>
#include <vector>

#include "mlds/rules/model.h"
#include "mlds/rules/text.h"
#include "text/expressions.h"
#include "text/folding.h"
#include "text/spellout.h"

namespace mlds::rules {

/// The expansions of a model, matched from left to right, the longest first.
class Expansions {
public:
    struct Match {
        int expansion = -1;  ///< -1: none begins here
        int end = 0;
    };

    Expansions(const Model& model, Folding& folding);
    ~Expansions();

    bool empty() const { return m_pModel->text.expansions.empty(); }
    void Begin(const TypedText& text);
    /// What begins at a character; asked with characters that only grow.
    Match At(const TypedText& text, int at, std::vector<TextFault>& faults);
    /// The letters that a match is read as, with empty places around them.
    const std::vector<int>& Letters(const TypedText& text, int at, const Match& match,
                                    std::vector<TextFault>& faults);

private:
    struct Reading {
        std::vector<int> letters;
        std::vector<std::string> unknown;
    };
    struct Regex {
        int expansion;
        std::unique_ptr<Expression> pExpression;
    };
    void AddLiteral(const Expansion& expansion, int index);
    void Longest(Match& best, const Match& other) const;
    Match Literal(const TypedText& text, int at);
    /// `pTyped`: what ICU made the words of; null if an author wrote them.
    Reading Make(std::string_view words, const std::string* pTyped);
    Reading SpellOut(const icu::UnicodeString& typed);
    const Reading& SpelledOut(const icu::UnicodeString& typed);

    const Model* m_pModel;
    Folding& m_folding;
    PrefixTree m_literals;
    std::vector<Regex> m_regexes;
    std::vector<Reading> m_readings;  ///< of every expansion; unused where numbers are spelt out
    std::unique_ptr<Spellout> m_pSpellout;
    bool m_bSpelloutTried = false;
    std::unordered_map<std::string, Reading> m_spelledOut;
    Reading m_longReading;  ///< of a number too long to be remembered
    std::vector<PrefixTree::Hit> m_hits;
    int m_nextRegex = 0;  ///< no expression matches before this character
};

}  // namespace mlds::rules

#endif
