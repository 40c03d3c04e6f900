// Rules apart from their text: what a rule file means, with every name looked up. Plain data, made
// by RuleSet and never changed afterwards.
#ifndef MLDS_RULES_MODEL_H
#define MLDS_RULES_MODEL_H

#include <string>
#include <vector>

#include "mlds/rules/source.h"

namespace mlds::rules {

/// A tier is the stream of that index in the container of a host. Tier 0 is always "text", with one
/// token a character as it was typed.
using TierId = int;
/// Tokens of a tier by their indices, so that a word of a lexicon is found at once.
using TokenKey = std::u16string;
inline constexpr TierId kNoTier = -1;
inline constexpr TierId kTextTier = 0;
/// Field 0 of every tier is its name field.
inline constexpr int kNameField = 0;

struct Field {
    enum class Kind { name, feature, number };
    std::string name;
    Kind kind = Kind::name;
    /// Of a feature. Yes/no features have "yes" and "no". A value is the index of the field's set.
    std::vector<std::string> values;
    /// Of a feature: the value of every token of the tier, -1 for none.
    std::vector<int> valueOfToken;
    bool bYesNo = false;
    /// True if a rule gives it other values than the token's name does.
    bool bSetByRules = false;
    Span span;
};

enum class Comparison { equal, notEqual, less, lessOrEqual, greater, greaterOrEqual };

/// What is asked of one token.
struct Condition {
    enum class Kind {
        all,      ///< every one of `parts`
        any,      ///< one of `parts`
        isNot,    ///< not parts[0]
        compare,  ///< `field` COMPARISON `value`
        sameAs,   ///< `field` has the value that the token in variable `variable` has
    };
    Kind kind = Kind::all;
    std::vector<Condition> parts;
    int field = kNameField;
    Comparison comparison = Comparison::equal;
    int value = 0;
    int variable = -1;
    Span span;
};

/// What is looked for, in the direction of reading. Tiers: a pattern is matched in one tier; of
/// Plexa-like crossings and conditions on other tiers the node says which.
struct Pattern {
    enum class Kind {
        token,      ///< one token that meets `condition`, captured in `variable` if that is >= 0
        sequence,   ///< `parts` one behind the other; none: matches nothing, always
        choice,     ///< one of `parts`, in this order
        repeat,     ///< parts[0], `least` to `most` times, -1 for no limit
        lookAhead,  ///< parts[0] matches here; the position stays
        lookNot,    ///< parts[0] does not match here
        setMark,    ///< the position is kept in `variable`
        atMark,     ///< the position is that of `variable`
        edge,       ///< a mark at this place reaches `tier`
        utteranceEdge,  ///< nothing but empty places up to the sentinel
        cross,          ///< parts[0] in `tier`, from this place to where it ends
        in,             ///< the token of `tier` over the next token meets `condition`
    };
    Kind kind = Kind::sequence;
    std::vector<Pattern> parts;
    Condition condition;
    TierId tier = kNoTier;
    int variable = -1;
    int least = 1;
    int most = 1;
    bool bShortest = false;
    Span span;
};

/// A name that a rule binds: "$x" a token, "^m" a mark.
struct Variable {
    std::string name;
    bool bToken = false;
    Span span;
    TierId tier = kNoTier;  ///< that its token or mark is of
};

struct Setting {
    int field = 0;
    int value = 0;
    Span span;
};

/// One piece of a result.
struct Piece {
    enum class Kind { token, capture, mark };
    Kind kind = Kind::token;
    int token = -1;     ///< index in the tier's tokens
    int variable = -1;  ///< of capture and mark
    std::string name;   ///< of the token; a number in a time tier
    std::vector<Setting> settings;
    Span span;
};

struct Environment {
    Pattern left;  ///< in the order of the text; an empty sequence where nothing stands
    Pattern right;
    Span span;
};

enum class Action { replace, set, scale };

struct Rule {
    int block = 0;
    std::string name;  ///< may be empty
    Span span;
    std::string text;  ///< as written, its blanks squeezed
    bool bInsertion = false;
    /// Of an insertion: tried at marks with a token to their left, not to their right.
    bool bBehindToken = false;
    Pattern focus;
    Action action = Action::replace;
    std::vector<Piece> result;
    std::vector<Setting> settings;
    int percent = 100;
    std::vector<Environment> where;  ///< none: everywhere
    std::vector<Environment> except;
    std::vector<Variable> variables;
    /// Whether the first token of the focus may have that name; empty: it may have any.
    std::vector<bool> firstTokens;
    /// The tier at whose edges alone it can hold, because every environment has that edge left of
    /// the focus; else kNoTier.
    TierId beginsAt = kNoTier;
};

struct Block {
    std::string name;
    TierId from = kNoTier;
    TierId to = kNoTier;  ///< kNoTier in blocks of one tier
    TierId within = kNoTier;
    bool bFirst = false;
    bool bLeftward = false;
    std::vector<Rule> rules;
    Span span;
};

/// A run of tokens that gets a token over it, or the words that get another name.
struct SpanPattern {
    std::string name;
    int token = -1;
    Pattern pattern;
    Span span;
};
struct SpanWords {
    std::string name;
    int token = -1;
    std::vector<TokenKey> words;  ///< by the tokens of the spanned tier
};

struct Tier {
    enum class Kind { text, plain, fromText, spans, time };
    std::string name;
    Kind kind = Kind::plain;
    TierId spanned = kNoTier;
    std::vector<std::string>
        tokens;                 ///< the possible values of the name field; none in a time tier
    std::vector<Field> fields;  ///< the name field first
    std::vector<SpanPattern> spanPatterns;
    std::vector<SpanWords> spanWords;
    Span span;

    /// -1 if there is none.
    int FindToken(std::string_view token) const;
    int FindField(std::string_view field) const;
};

// ---- from text to letters ----

struct Fold {
    std::string from;
    std::string to;
    Span span;
};
struct Expansion {
    std::string pattern;
    bool bLiteral = false;
    std::string reading;
    bool bSpellout = false;
    Span span;
};
/// How the tier "from text" is filled.
struct TextReading {
    TierId tier = kNoTier;  ///< kNoTier: no tier is from text
    bool bCaseKept = false;
    std::vector<Fold> reads;      ///< characters of the text, as other characters
    std::vector<Fold> standsFor;  ///< characters, as letters of the tier (blanks between them)
    std::vector<std::string> ignored;
    bool bIgnoreOther = false;
    std::vector<std::string> joined;
    std::vector<Expansion> expansions;
};

struct LexiconFile {
    std::string file;  ///< as the rules name it
    TierId from = kNoTier;
    TierId to = kNoTier;
    Span span;
};

// ---- how tokens are shown ----

struct ShowMark {
    TierId tier = kNoTier;
    std::string mark;
    bool bBefore = true;
    bool bIpa = false;
    Condition condition;
    Span span;
};
struct ShowBy {
    TierId tier = kNoTier;
    TierId by = kNoTier;
};
struct IpaText {
    TierId tier = kNoTier;
    std::vector<std::string> texts;  ///< of every token of the tier; the token itself by default
};

struct Assert {
    std::string input;
    TierId tier = kNoTier;
    std::string expected;
    Span span;
    Span inputSpan;
};

struct Model {
    std::string language;  ///< "es"; empty if the file does not say
    std::vector<Tier> tiers;
    TextReading text;
    std::vector<LexiconFile> lexicons;
    std::vector<ShowMark> showMarks;
    std::vector<ShowBy> showBy;
    std::vector<IpaText> ipa;
    TierId shown = kNoTier;  ///< the tier of the first show, else the last one
    std::vector<Block> blocks;
    std::vector<Assert> asserts;

    TierId FindTier(std::string_view name) const;
};

}  // namespace mlds::rules

#endif
