// Rule files as they are written: statements with the words of the author, unresolved. The reader
// makes this of a text, the resolver (model/) makes the model of it.
#ifndef MLDS_RULES_SYNTAX_H
#define MLDS_RULES_SYNTAX_H

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "mlds/rules/diagnostics.h"
#include "mlds/rules/model.h"

namespace mlds::rules::syntax {

/// A word or a quoted text, in NFC; quotes and backslashes are gone. The text is empty where the
/// author wrote nothing.
struct Word {
    std::string text;
    bool bQuoted = false;
    Span span;

    explicit operator bool() const { return span.line > 0; }
};

// ---- conditions, "[vowel -front | nasal, stress=1]" ----

struct Condition {
    enum class Kind {
        all,      ///< every one of `parts`; "[]" has none and always holds
        any,      ///< one of `parts`
        isNot,    ///< not parts[0]
        name,     ///< a feature, a value or a token, called `left`
        compare,  ///< `left` COMPARISON `right`; a capture's name where bCapture
    };
    Kind kind = Kind::all;
    std::vector<Condition> parts;
    Word left;
    Comparison comparison = Comparison::equal;
    Word right;
    bool bCapture = false;
    Span span;
};

// ---- patterns ----

struct Item;
struct Sequence {
    std::vector<Item> items;
    Span span;
};
struct Pattern {
    std::vector<Sequence> alternatives;
    Span span;
};

struct Repetition {
    int least = 1;
    int most = 1;  ///< -1: no limit
    bool bShortest = false;
    Span span;  ///< of the operator; line 0: there is none
};

struct Item {
    enum class Kind {
        word,           ///< `word`: tokens, a class or a pattern
        condition,      ///< [...] in `condition`
        any,            ///< .
        sameAs,         ///< =word
        group,          ///< (pattern)
        cross,          ///< <word: pattern>
        in,             ///< in(word: condition)
        lookAhead,      ///< &, of pattern.alternatives[0].items[0]
        lookNot,        ///< !, likewise
        setMark,        ///< ^word
        atMark,         ///< @word
        edge,           ///< # or #word
        utteranceEdge,  ///< ##
    };
    Kind kind = Kind::any;
    Word capture;  ///< "x:" in front
    Word word;
    Condition condition;
    Pattern pattern;
    Repetition repetition;
    Span span;
};

// ---- rules ----

struct Setting {
    enum class Kind { yes, no, value };
    Kind kind = Kind::value;
    Word name;
    Word value;
    Span span;
};

struct ResultItem {
    enum class Kind { token, capture, mark };  ///< tS, $x, ^m
    Kind kind = Kind::token;
    Word word;
    std::vector<Setting> settings;
    Span span;
};

struct Environment {
    Sequence left;
    Sequence right;
    Span span;
    Span underscore;
};

struct Rule {
    Word name;
    bool bInsertion = false;  ///< the focus is "0"
    Pattern focus;
    Action action = Action::replace;
    std::vector<ResultItem> result;  ///< of replace; empty for "0"
    std::vector<Setting> settings;   ///< of set
    int percent = 0;                 ///< of scale
    std::vector<Environment> where;
    std::vector<Environment> except;
    Span span;  ///< of its first line, as far as it goes there
};

// ---- statements ----

struct Language {
    Word name;
};
struct Read {  ///< read "…" as "..."
    Word from;
    Word to;
};
struct Feature {
    struct Value {
        Word name;  ///< "yes" without a word of the author
        std::vector<Word> tokens;
    };
    Word name;
    bool bYesNo = true;  ///< "feature front = e i", else "feature manner : stop = p b | fric = f s"
    std::vector<Value> values;
};
struct NumberField {
    Word name;
};
struct SpanPattern {  ///< word = [letter]+
    Word name;
    Pattern pattern;
};
struct SpanWords {  ///< weak : el la de
    Word name;
    std::vector<Word> words;
};
struct StandsFor {  ///< letters à â = a; the first word is the tier's name
    std::vector<Word> from;
    std::vector<Word> to;
};
struct Ignore {
    std::vector<Word> characters;
    bool bOther = false;  ///< "ignore other"
};
struct JoinLetters {
    std::vector<Word> characters;
};
struct Expansion {
    Word pattern;  ///< a literal text if quoted, else a regular expression up to " as "
    Word reading;  ///< its words; empty for bSpellout
    bool bSpellout = false;
};
struct CaseKept {
    Span span;
};
using TierPart = std::variant<Feature, NumberField, SpanPattern, SpanWords, StandsFor, Ignore,
                              JoinLetters, Expansion, CaseKept>;
struct Tier {
    Word name;
    bool bFromText = false;
    bool bTime = false;  ///< "ms"
    Word spans;
    std::vector<Word> tokens;
    std::vector<TierPart> parts;
    Span span;
};
struct Lexicon {
    Word file;
    Word from;
    Word to;
};
struct ClassDefinition {
    Word name;
    Pattern pattern;
};
struct PatternDefinition {
    Word name;
    Pattern pattern;
};
struct ShowMark {  ///< show phone with ' before [stress=1] in ipa
    Word tier;
    Word mark;
    bool bBefore = true;
    Condition condition;
    bool bIpa = false;
};
struct ShowBy {  ///< show word by letters
    Word tier;
    Word by;
};
struct Ipa {
    struct Entry {
        Word token;
        Word text;
    };
    Word tier;
    std::vector<Entry> entries;
};
struct Block {
    Word name;
    Word from;
    Word to;  ///< absent in blocks of one tier
    Word within;
    std::optional<bool> first;  ///< nothing: as the arrow has it
    bool bLeftward = false;
    std::vector<Rule> rules;
    Span span;
};
struct Assert {
    Word input;
    Word tier;  ///< absent: the tier of the first show
    std::string expected;
    Span span;  ///< of what is expected
};
struct Include {
    Word file;
};

using Statement = std::variant<Language, Read, Tier, Lexicon, ClassDefinition, PatternDefinition,
                               ShowMark, ShowBy, Ipa, Block, Assert, Include>;

struct File {
    std::vector<Statement> statements;
};

/// Reads one source. What cannot be read is reported and left out; reading goes on behind it, so
/// that one run finds all faults.
File ReadFile(const Sources& sources, int file, Diagnostics& diagnostics);

}  // namespace mlds::rules::syntax

#endif
