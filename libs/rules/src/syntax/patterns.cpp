// Patterns: what is looked for, token by token.
#include <string_view>

#include "syntax/elements.h"

namespace mlds::rules::syntax {

namespace {

// Copies of a repeated part take room in a test, which ends at 256 instructions.
constexpr int kMostRepeated = 255;
constexpr std::string_view kRepetitions = "?*+{";

bool IsRepetition(const Cursor& cursor) {
    return cursor.Is(Lex::sign) && kRepetitions.find(cursor.Peek().sign) != std::string_view::npos;
}

bool BeginsItem(const Cursor& cursor) {
    if (cursor.IsToken()) return true;
    if (!cursor.Is(Lex::sign)) return false;
    // "=x" is an item; else "=" is left of some "=>".
    if (cursor.IsSign('=')) return cursor.Is(Lex::word, 1) && cursor.Peek(1).bGlued;
    if (IsRepetition(cursor)) {
        const Lexeme& sign = cursor.Peek();
        cursor.Fail(sign.word.span, Described(sign) +
                                        " repeats what stands before it, and nothing does" +
                                        (sign.sign == '{' ? "; a choice is written (a | b)" : "") +
                                        QuotingHelp(sign));
    }
    if (cursor.IsSign('$')) {
        cursor.Fail(cursor.Peek().word.span,
                    "'$' with a capture's name stands in results and conditions; '=x' matches the "
                    "token that was captured as x" +
                        QuotingHelp(cursor.Peek()));
    }
    return std::string_view("[.(<&!^@#").find(cursor.Peek().sign) != std::string_view::npos;
}

// A count is a word to the lexer; digits that are too many are no wrap-around but a fault.
int ReadCount(Cursor& cursor) {
    const int count = cursor.Is(Lex::word) ? NumberOf(cursor.Peek().word.text, kMostRepeated) : -1;
    if (count < 0) cursor.Expected("a number in '{ }'", "as in {2}, {2,} or {0,3}");
    if (count > kMostRepeated) {
        cursor.Fail(cursor.Peek().word.span,
                    "a repetition goes up to " + std::to_string(kMostRepeated));
    }
    cursor.Next();
    return count;
}

void ReadCounts(Cursor& cursor, const Span& begin, Repetition* pRepetition) {
    pRepetition->least = ReadCount(cursor);
    pRepetition->most = pRepetition->least;
    if (cursor.TakeSign(',')) {
        pRepetition->most = cursor.IsSign('}') ? -1 : ReadCount(cursor);
    }
    cursor.ExpectSign('}', "'}' behind the number");
    if (pRepetition->most == 0) cursor.Fail(cursor.Since(begin), "this repeats nothing at all");
    if (pRepetition->most > 0 && pRepetition->most < pRepetition->least) {
        cursor.Fail(cursor.Since(begin),
                    "the least number of a repetition stands first, as in {1,3}");
    }
}

void ReadRepetition(Cursor& cursor, Repetition* pRepetition) {
    if (!IsRepetition(cursor)) return;
    const Span begin = cursor.Peek().word.span;
    switch (cursor.Next().sign) {
        case '?': *pRepetition = {0, 1, false, {}}; break;
        case '*': *pRepetition = {0, -1, false, {}}; break;
        case '+': *pRepetition = {1, -1, false, {}}; break;
        default: ReadCounts(cursor, begin, pRepetition); break;
    }
    // Behind a blank it repeats nothing, and is reported as that.
    if (cursor.IsGlued('?', 0)) {
        pRepetition->bShortest = true;
        cursor.Next();
    }
    pRepetition->span = cursor.Since(begin);
    if (IsRepetition(cursor)) {
        cursor.Fail(cursor.Peek().word.span,
                    "what is repeated already is repeated again; put the first repetition in "
                    "parentheses");
    }
}

// All that stands in brackets of some kind comes through here, so this is where depth is counted.
Pattern ReadGroup(Cursor& cursor) {
    const Cursor::Level level(cursor);
    Pattern pattern = ReadPattern(cursor);
    if (cursor.IsSign('_')) {
        cursor.Fail(cursor.Peek().word.span,
                    "'_' is the place of the focus and stands outside of all brackets" +
                        QuotingHelp(cursor.Peek()));
    }
    return pattern;
}

void ReadParentheses(Cursor& cursor, Item* pItem) {
    const Span begin = cursor.Next().word.span;
    pItem->kind = Item::Kind::group;
    pItem->pattern = ReadGroup(cursor);
    cursor.ExpectSign(')', "')' or more of the pattern");
    const auto& alternatives = pItem->pattern.alternatives;
    // "(a|)" may be nothing, "()" can be nothing else.
    if (alternatives.size() == 1 && alternatives.front().items.empty()) {
        cursor.Fail(cursor.Since(begin), "nothing stands in these parentheses");
    }
}

// <letters: pattern>
void ReadCrossing(Cursor& cursor, Item* pItem) {
    const Lexeme opener = cursor.Next();
    const char* const kForm = "as in <letters: [vowel]>";
    pItem->kind = Item::Kind::cross;
    pItem->word = cursor.ExpectName("a tier's name behind '<'", kForm);
    cursor.ExpectSign(':', "':' behind the tier's name", kForm);
    pItem->pattern = ReadGroup(cursor);
    // Only here is known that no ">" is missing: it also stands in comparisons.
    if (!cursor.IsSign('>') &&
        (cursor.AtEnd() || cursor.Is(Lex::arrow) || cursor.Is(Lex::assign))) {
        cursor.Fail(opener.word.span, "this '<' is not closed");
    }
    cursor.ExpectSign('>', "'>' or more of the pattern");
}

// in(word: [weak])
void ReadIn(Cursor& cursor, Item* pItem) {
    cursor.Next();
    cursor.Next();
    const Cursor::Level level(cursor);
    const char* const kForm = "as in in(word: [weak]); behind a blank, '(' would begin a group";
    pItem->kind = Item::Kind::in;
    pItem->word = cursor.ExpectName("a tier's name", kForm);
    cursor.ExpectSign(':', "':' behind the tier's name", kForm);
    pItem->condition = ReadCondition(cursor);
    cursor.ExpectSign(')', "')' behind the condition");
}

void ReadAtom(Cursor& cursor, Item* pItem) {
    if (cursor.IsWord("in") && cursor.IsGlued('(', 1)) {
        ReadIn(cursor, pItem);
    } else if (cursor.IsToken()) {
        pItem->kind = Item::Kind::word;
        pItem->word = cursor.ExpectToken("a token, a class or a pattern");
    } else if (cursor.IsSign('[')) {
        pItem->kind = Item::Kind::condition;
        pItem->condition = ReadCondition(cursor);
    } else if (cursor.IsSign('(')) {
        ReadParentheses(cursor, pItem);
    } else if (cursor.IsSign('<')) {
        ReadCrossing(cursor, pItem);
    } else if (cursor.TakeSign('.')) {
        pItem->kind = Item::Kind::any;
    } else if (cursor.TakeSign('=')) {
        pItem->kind = Item::Kind::sameAs;
        pItem->word = cursor.ExpectGluedName("the name of a capture behind '='");
    } else {
        cursor.ExpectedToken("a token, a condition or '('");
    }
}

// Marks and boundaries: they take no token.
bool ReadPlace(Cursor& cursor, Item* pItem) {
    if (cursor.TakeSign('^')) {
        pItem->kind = Item::Kind::setMark;
        pItem->word = cursor.ExpectGluedName("the name of a mark behind '^'");
    } else if (cursor.TakeSign('@')) {
        pItem->kind = Item::Kind::atMark;
        pItem->word = cursor.ExpectGluedName("the name of a mark behind '@'");
    } else if (cursor.IsSign('#') && cursor.IsGlued('#', 1)) {
        cursor.Next();
        cursor.Next();
        pItem->kind = Item::Kind::utteranceEdge;
        if (cursor.Is(Lex::word) && cursor.Peek().bGlued) {
            cursor.Fail(cursor.Peek().word.span,
                        "'##' is the edge of the utterance and has no tier's name; '#" +
                            cursor.Peek().word.text + "' would be an edge of that tier");
        }
    } else if (cursor.TakeSign('#')) {
        pItem->kind = Item::Kind::edge;
        if (cursor.Is(Lex::word) && cursor.Peek().bGlued) pItem->word = cursor.Next().word;
    } else {
        return false;
    }
    return true;
}

// "&" and "!" take one atom: "!a*" would be read in two ways by two people.
void ReadLook(Cursor& cursor, Item* pItem) {
    const bool bNot = cursor.Next().sign == '!';
    pItem->kind = bNot ? Item::Kind::lookNot : Item::Kind::lookAhead;
    Item looked;
    looked.span = cursor.Peek().word.span;
    // A mark set where nothing has matched, or asked for where nothing moves, helps nobody.
    if (cursor.IsSign('^') || cursor.IsSign('@')) {
        cursor.Expected("a token, a group or a boundary to look for");
    }
    if (!ReadPlace(cursor, &looked)) ReadAtom(cursor, &looked);
    looked.span = cursor.Since(looked.span);
    Sequence sequence{{}, looked.span};
    sequence.items.push_back(std::move(looked));
    pItem->pattern.span = sequence.span;
    pItem->pattern.alternatives.push_back(std::move(sequence));
}

Item ReadItem(Cursor& cursor) {
    Item item;
    const Lexeme first = cursor.Peek();
    bool bRepeatable = false;
    if (cursor.IsSign('&') || cursor.IsSign('!')) {
        ReadLook(cursor, &item);
    } else if (!ReadPlace(cursor, &item)) {
        if (cursor.Is(Lex::word) && cursor.IsGlued(':', 1)) {
            item.capture = cursor.Next().word;
            cursor.Next();
        }
        ReadAtom(cursor, &item);
        ReadRepetition(cursor, &item.repetition);
        bRepeatable = true;
    }
    item.span = cursor.Since(first.word.span);
    if (!bRepeatable && IsRepetition(cursor)) {
        const bool bLook = first.sign == '&' || first.sign == '!';
        cursor.Fail(cursor.Peek().word.span,
                    bLook ? "what is only looked at cannot be repeated; put what is repeated in "
                            "parentheses, as in !(a b*)"
                          : "a place cannot be repeated, as it takes no token");
    }
    return item;
}

}  // namespace

Sequence ReadSequence(Cursor& cursor) {
    Sequence sequence;
    sequence.span = cursor.Peek().word.span;
    // Ends at the first sign that begins no item; whoever called knows what may stand there.
    while (BeginsItem(cursor)) sequence.items.push_back(ReadItem(cursor));
    if (!sequence.items.empty()) sequence.span = cursor.Since(sequence.span);
    return sequence;
}

Pattern ReadPattern(Cursor& cursor) {
    Pattern pattern;
    pattern.span = cursor.Peek().word.span;
    do {
        pattern.alternatives.push_back(ReadSequence(cursor));
    } while (cursor.TakeSign('|'));
    pattern.span = cursor.Since(pattern.span);
    return pattern;
}

Pattern ReadWholePattern(Cursor& cursor) {
    Pattern pattern = ReadPattern(cursor);
    if (cursor.IsSign('_')) cursor.ExpectedToken("no '_', as this is no environment");
    if (!cursor.AtEnd()) cursor.ExpectedToken("more of the pattern or the end of the line");
    if (pattern.alternatives.size() == 1 && pattern.alternatives.front().items.empty()) {
        cursor.Expected("a pattern behind '='");
    }
    return pattern;
}

}  // namespace mlds::rules::syntax
