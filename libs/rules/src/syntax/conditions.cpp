// Conditions: what is asked of one token.
#include <optional>

#include "syntax/elements.h"

namespace mlds::rules::syntax {

namespace {

const char* const kTest = "a feature, a value or a token";

Condition ReadAny(Cursor& cursor);

// The signs of a comparison come from the lexer one by one, as most of them also stand alone: "!=x"
// in a pattern is a token that is not the one captured as x.
std::optional<Comparison> TakeComparison(Cursor& cursor) {
    const auto Taken = [&](int n, Comparison comparison) {
        while (n-- > 0) cursor.Next();
        return comparison;
    };
    const bool bEqualBehind = cursor.IsGlued('=', 1);
    if (cursor.IsSign('=')) {
        if (bEqualBehind) cursor.Fail(cursor.Peek().word.span, "'==' is written '='");
        return Taken(1, Comparison::equal);
    }
    // Without the "=", "!" begins the next test.
    if (cursor.IsSign('!') && bEqualBehind) return Taken(2, Comparison::notEqual);
    if (cursor.IsSign('<')) {
        return bEqualBehind ? Taken(2, Comparison::lessOrEqual) : Taken(1, Comparison::less);
    }
    if (cursor.IsSign('>')) {
        return bEqualBehind ? Taken(2, Comparison::greaterOrEqual) : Taken(1, Comparison::greater);
    }
    return std::nullopt;
}

Condition Compared(Cursor& cursor, Word left, Comparison comparison) {
    Condition condition;
    condition.kind = Condition::Kind::compare;
    condition.comparison = comparison;
    if (cursor.TakeSign('$')) {
        condition.right = cursor.ExpectGluedName("the name of a capture behind '$'");
        condition.bCapture = true;
    } else {
        // Numbers and values are told apart by the field, so "0" is a zero here.
        if (!cursor.IsToken()) cursor.Expected("a value, a number or '$' with a capture's name");
        condition.right = cursor.Next().word;
    }
    condition.span = cursor.Since(left.span);
    condition.left = std::move(left);
    return condition;
}

Condition Negated(Cursor& cursor, Condition part, const Span& begin) {
    Condition condition;
    condition.kind = Condition::Kind::isNot;
    condition.parts.push_back(std::move(part));
    condition.span = cursor.Since(begin);
    return condition;
}

// A name, or a name that is compared. `bSigned`: a "+" or "!" stood in front, so that a "-" is a
// letter of the token.
Condition ReadName(Cursor& cursor, bool bSigned) {
    Condition name;
    name.kind = Condition::Kind::name;
    name.left = cursor.ExpectToken(kTest);
    const Span begin = name.left.span;
    const bool bMinus = !bSigned && TakeMinus(&name.left);
    name.span = name.left.span;
    const Lexeme& sign = cursor.Peek();
    if (const auto comparison = TakeComparison(cursor)) {
        // "-stress=1" could be "not stress=1" or "stress is not 1 but has a value": nobody guesses.
        if (bSigned || bMinus) {
            cursor.Fail(cursor.Since(begin),
                        "a comparison has no '+', '-' or '!' in front; '!=' is not equal");
        }
        return Compared(cursor, std::move(name.left), *comparison);
    }
    if (sign.kind == Lex::sign && sign.sign == '$') cursor.Expected("'=' before '$'");
    return bMinus ? Negated(cursor, std::move(name), begin) : name;
}

Condition ReadTest(Cursor& cursor) {
    const Span begin = cursor.Peek().word.span;
    if (cursor.TakeSign('(')) {
        const Cursor::Level level(cursor);
        Condition inner = ReadAny(cursor);
        cursor.ExpectSign(')', "')', '|' or another condition");
        return inner;
    }
    // Before quotes and parentheses the minus is a word of its own.
    const bool bMinus = cursor.IsWord("-") && cursor.Peek(1).bGlued &&
                        (cursor.Is(Lex::text, 1) || cursor.IsSign('(', 1));
    if (bMinus || cursor.IsSign('!')) {
        cursor.Next();
        if (cursor.IsSign('!')) cursor.Fail(cursor.Peek().word.span, "'!' stands here twice");
        Condition part = cursor.IsSign('(') ? ReadTest(cursor) : ReadName(cursor, true);
        return Negated(cursor, std::move(part), begin);
    }
    const bool bPlus = cursor.TakeSign('+');
    return ReadName(cursor, bPlus);
}

// What ends a row of tests that hold together.
bool EndsAll(const Cursor& cursor) {
    return cursor.AtEnd() || cursor.IsSign('|') || cursor.IsSign(')') || cursor.IsSign(']');
}

// Several parts under one kind; one part alone as it is.
Condition Gathered(Condition::Kind kind, std::vector<Condition> parts) {
    if (parts.size() == 1) return std::move(parts.front());
    Condition condition;
    condition.kind = kind;
    condition.span = Join(parts.front().span, parts.back().span);
    condition.parts = std::move(parts);
    return condition;
}

Condition ReadAll(Cursor& cursor) {
    std::vector<Condition> parts;
    do {
        parts.push_back(ReadTest(cursor));
        // A comma means what a blank means, but promises that something follows.
        if (cursor.TakeSign(',') && EndsAll(cursor)) cursor.Expected(kTest);
    } while (!EndsAll(cursor));
    return Gathered(Condition::Kind::all, std::move(parts));
}

Condition ReadAny(Cursor& cursor) {
    std::vector<Condition> parts;
    do {
        parts.push_back(ReadAll(cursor));
    } while (cursor.TakeSign('|'));
    return Gathered(Condition::Kind::any, std::move(parts));
}

}  // namespace

Condition ReadCondition(Cursor& cursor) {
    const Span begin = cursor.Peek().word.span;
    cursor.ExpectSign('[', "a condition in '[ ]'");
    Condition condition;
    if (!cursor.IsSign(']')) condition = ReadAny(cursor);
    cursor.ExpectSign(']', "']', '|' or another condition");
    // With its brackets: so it is shown to people.
    condition.span = cursor.Since(begin);
    return condition;
}

}  // namespace mlds::rules::syntax
