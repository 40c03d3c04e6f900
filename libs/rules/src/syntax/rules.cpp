// Rules: focus, what becomes of it, and where.
#include <array>
#include <optional>
#include <string_view>

#include "syntax/elements.h"
#include "syntax/statements.h"

namespace mlds::rules::syntax {

namespace {

// A hundredfold duration is a slip of the keyboard already.
constexpr int kMostPercent = 10'000;

// ---- the rules of a line ----

struct Part {
    std::vector<Lexeme> lexemes;  ///< with an `end` that says whether a comma or the line ends it
    std::optional<Fault> fault;
};

// A comma in brackets separates no rules. From a bracket that is not closed nothing can be told up
// to the end of the line, so that is one part.
std::vector<Part> SplitAtCommas(std::vector<Lexeme> lexemes) {
    std::vector<Part> parts(1);
    int depth = 0;
    for (Lexeme& lexeme : lexemes) {
        if (lexeme.kind == Lex::sign) {
            const char sign = lexeme.sign;
            if (sign == '(' || sign == '[' || sign == '{') ++depth;
            // One that closes nothing is a fault of its own rule, not of those behind it.
            if ((sign == ')' || sign == ']' || sign == '}') && depth > 0) --depth;
        }
        const bool bComma = lexeme.kind == Lex::sign && lexeme.sign == ',' && depth == 0;
        // Each rule is read by a cursor of its own, for which the comma is the end of everything.
        if (bComma) lexeme.kind = Lex::end;
        parts.back().lexemes.push_back(std::move(lexeme));
        if (bComma) parts.emplace_back();
    }
    for (Part& part : parts) {
        try {
            CheckBrackets(part.lexemes);
        } catch (Fault& fault) {
            part.fault = std::move(fault);
        }
    }
    return parts;
}

// ---- what becomes of the focus ----

Setting ReadSetting(Cursor& cursor) {
    Setting setting;
    setting.span = cursor.Peek().word.span;
    const char* const kForms = "a setting: +name, -name or name=value";
    if (cursor.TakeSign('+')) {
        setting.kind = Setting::Kind::yes;
        setting.name = cursor.ExpectGluedName("a feature's name behind '+'");
    } else {
        setting.name = cursor.ExpectName(kForms);
        if (cursor.TakeSign('=')) {
            if (!cursor.IsToken()) cursor.Expected("a value or a number behind '='");
            setting.value = cursor.Next().word;
        } else if (TakeMinus(&setting.name)) {
            setting.kind = Setting::Kind::no;
        } else if (cursor.IsSign(']') || cursor.IsSign(',') || cursor.Is(Lex::word)) {
            const std::string& name = setting.name.text;
            cursor.Fail(setting.span, "expected what becomes of '" + name + "': +" + name + ", -" +
                                          name + " or " + name + "=value");
        } else {
            cursor.Expected("'=' and a value behind '" + setting.name.text + "'");
        }
    }
    setting.span = cursor.Since(setting.span);
    return setting;
}

std::vector<Setting> ReadSettings(Cursor& cursor) {
    cursor.ExpectSign('[', "'[' with settings", "as in := [stress=1]");
    std::vector<Setting> settings;
    do {
        settings.push_back(ReadSetting(cursor));
        if (cursor.TakeSign(',') && cursor.IsSign(']')) settings.push_back(ReadSetting(cursor));
    } while (!cursor.TakeSign(']'));
    return settings;
}

bool EndsResult(const Cursor& cursor) {
    return cursor.AtEnd() || cursor.IsSign('/') || cursor.IsSign('\\');
}

ResultItem ReadResultItem(Cursor& cursor) {
    ResultItem item;
    item.span = cursor.Peek().word.span;
    if (cursor.TakeSign('$')) {
        item.kind = ResultItem::Kind::capture;
        item.word = cursor.ExpectGluedName("the name of a capture behind '$'");
    } else if (cursor.TakeSign('^')) {
        item.kind = ResultItem::Kind::mark;
        item.word = cursor.ExpectGluedName("the name of a mark behind '^'");
    } else if (cursor.IsSign('|')) {
        cursor.Fail(item.span, "a result has no choices; write a rule for each");
    } else if (cursor.IsSign('[')) {
        cursor.Fail(item.span,
                    "a result begins with a token; ':=' sets fields of the tokens that are there");
    } else {
        item.word = cursor.ExpectToken("a token, '$' or '^' in the result, or '/' with where");
    }
    if (item.kind != ResultItem::Kind::mark && cursor.IsSign('[')) {
        item.settings = ReadSettings(cursor);
    }
    item.span = cursor.Since(item.span);
    return item;
}

std::vector<ResultItem> ReadResult(Cursor& cursor) {
    std::vector<ResultItem> result;
    // No items are the result "0"; that nothing at all is written is a slip.
    if (IsNothing(cursor.Peek())) {
        const Span zero = cursor.Next().word.span;
        if (!EndsResult(cursor)) cursor.Fail(zero, NothingIsNoToken());
        return result;
    }
    if (EndsResult(cursor)) {
        cursor.Expected("a result behind '->'", "'0' is the one for nothing");
    }
    while (!EndsResult(cursor)) result.push_back(ReadResultItem(cursor));
    return result;
}

int ReadPercent(Cursor& cursor) {
    const char* const kWhat = "a whole number and '%' behind '~'";
    const char* const kForm = "as in ~ 130%";
    if (!cursor.Is(Lex::word)) cursor.Expected(kWhat, kForm);
    // "%" is a letter of words.
    std::string digits = cursor.Peek().word.text;
    const bool bPercent = digits.ends_with('%');
    if (bPercent) digits.pop_back();
    const int percent = NumberOf(digits, kMostPercent);
    if (percent < 0 || (!bPercent && !cursor.IsWord("%", 1))) cursor.Expected(kWhat, kForm);
    if (percent < 1 || percent > kMostPercent) {
        cursor.Fail(cursor.Peek().word.span,
                    "a duration is scaled to 1 % up to " + std::to_string(kMostPercent) + " %");
    }
    cursor.Next();
    if (!bPercent) cursor.Next();
    return percent;
}

// ---- arrows of other hands ----

// "→" and the like are letters of words, for all that the lexer knows.
const Lexeme* FindForeignArrow(const Cursor& cursor) {
    constexpr std::array<std::string_view, 4> kArrows = {"→", "⇒", "⟶", "➔"};
    for (const Lexeme& lexeme : cursor.lexemes()) {
        if (lexeme.kind != Lex::word) continue;
        for (const std::string_view arrow : kArrows) {
            if (lexeme.word.text.find(arrow) != std::string::npos) return &lexeme;
        }
    }
    return nullptr;
}

[[noreturn]] void FailWithoutAction(const Cursor& cursor) {
    const Span& span = cursor.Peek().word.span;
    if (cursor.IsSign('=') && cursor.IsGlued('>', 1)) {
        cursor.Fail(Join(span, cursor.Peek(1).word.span), "the arrow of a rule is written '->'");
    }
    if (cursor.IsSign('>')) cursor.Fail(span, "the arrow of a rule is written '->'");
    if (const Lexeme* pArrow = FindForeignArrow(cursor)) {
        cursor.Fail(pArrow->word.span, "the arrow of a rule is written '->'");
    }
    cursor.Expected("'->', ':=' or '~' behind the focus");
}

void ReadAction(Cursor& cursor, Rule* pRule) {
    if (cursor.Is(Lex::arrow)) {
        cursor.Next();
        pRule->action = Action::replace;
        pRule->result = ReadResult(cursor);
    } else if (cursor.Is(Lex::assign)) {
        cursor.Next();
        pRule->action = Action::set;
        pRule->settings = ReadSettings(cursor);
    } else if (cursor.TakeSign('~')) {
        pRule->action = Action::scale;
        pRule->percent = ReadPercent(cursor);
    } else {
        FailWithoutAction(cursor);
    }
}

// ---- where ----

bool EndsEnvironment(const Cursor& cursor) {
    return EndsResult(cursor) || cursor.IsSign('|');
}

// Sequences on both sides, not patterns: a "|" here is one between environments.
Environment ReadEnvironment(Cursor& cursor, bool bFirst) {
    Environment environment;
    const Span begin = cursor.Peek().word.span;
    environment.left = ReadSequence(cursor);
    if (!cursor.IsSign('_')) {
        if (!EndsEnvironment(cursor)) cursor.ExpectedToken("'_' or more of the environment");
        // The commonest reason: a choice that was meant to stand within the environment.
        const bool bChoice = !bFirst || cursor.IsSign('|');
        cursor.Fail(cursor.Since(begin),
                    std::string("expected '_' in this environment, where the focus stands") +
                        (bChoice ? "; '|' separates environments, a choice within one stands in "
                                   "parentheses: _ (a | b)"
                                 : ""));
    }
    environment.underscore = cursor.Next().word.span;
    environment.right = ReadSequence(cursor);
    environment.span = cursor.Since(begin);
    if (cursor.IsSign('_')) {
        cursor.Fail(cursor.Peek().word.span,
                    "this environment has a second '_'; '|' stands between two environments" +
                        QuotingHelp(cursor.Peek()));
    }
    if (!EndsEnvironment(cursor))
        cursor.Expected("more of the environment, '|' or the end of the rule");
    return environment;
}

void ReadEnvironments(Cursor& cursor, Rule* pRule) {
    while (!cursor.AtEnd()) {
        const Lexeme sign = cursor.Peek();
        const bool bWhere = cursor.TakeSign('/');
        if (!bWhere && !cursor.TakeSign('\\')) {
            cursor.Expected("'/', '\\', ',' or the end of the line behind the rule");
        }
        auto& environments = bWhere ? pRule->where : pRule->except;
        if (!environments.empty()) {
            cursor.Fail(sign.word.span, "this rule has " + Described(sign) +
                                            " already; '|' stands between its environments");
        }
        do {
            environments.push_back(ReadEnvironment(cursor, environments.empty()));
        } while (cursor.TakeSign('|'));
    }
}

// ---- the whole ----

// Where a rule stands in messages and traces: what goes on in further lines has no place in one.
Span FirstLineOf(const Cursor& cursor) {
    Span span = cursor.lexemes().front().word.span;
    for (const Lexeme& lexeme : cursor.lexemes()) {
        if (lexeme.kind != Lex::end) span = Join(span, lexeme.word.span);
    }
    return span;
}

Rule ReadRule(Cursor& cursor) {
    Rule rule;
    rule.span = FirstLineOf(cursor);
    if (cursor.Is(Lex::text) && cursor.IsSign(':', 1)) {
        rule.name = cursor.Next().word;
        cursor.Next();
    }
    if (cursor.AtEnd()) cursor.ExpectedToken("a rule");
    // "0 a" is read on, for the message that says how the token is written.
    if (IsNothing(cursor.Peek()) && !cursor.IsToken(1)) {
        rule.bInsertion = true;
        cursor.Next();
    } else {
        rule.focus = ReadPattern(cursor);
        const auto& alternatives = rule.focus.alternatives;
        if (alternatives.size() == 1 && alternatives.front().items.empty()) {
            if (!cursor.Is(Lex::arrow)) cursor.ExpectedToken("the focus of a rule");
            cursor.Expected("the focus of a rule", "'0' in its place inserts");
        }
    }
    ReadAction(cursor, &rule);
    ReadEnvironments(cursor, &rule);
    return rule;
}

// A statement in the place of a rule: whatever else is wrong with it as a rule, this is why.
bool IsIndentedStatement(const Cursor& cursor) {
    // "read -> r e d" is a rule.
    if (!cursor.IsToken(1)) return false;
    const Lexeme& first = cursor.lexemes().front();
    return first.kind == Lex::word && IsStatementName(first.word.text);
}

Fault StatementIndented(const Cursor& cursor) {
    const Lexeme& first = cursor.lexemes().front();
    return {first.word.span,
            Described(first) + " begins a statement, whose first line is not indented"};
}

bool GoesOnWithRule(const Cursor& cursor) {
    return cursor.Is(Lex::arrow) || cursor.Is(Lex::assign) || cursor.IsSign('~') ||
           cursor.IsSign('_') || EndsResult(cursor);
}

}  // namespace

std::vector<Rule> ReadRules(const Line& line, Reporter& reporter) {
    std::vector<Rule> rules;
    bool bFaultBefore = false;
    try {
        for (Part& part : SplitAtCommas(Lexemes(line))) {
            Cursor cursor(std::move(part.lexemes));
            const bool bStatement = IsIndentedStatement(cursor);
            // A comma that was meant as a token cuts a rule in two; both halves are one fault.
            const bool bSecondHalf = bFaultBefore && GoesOnWithRule(cursor);
            try {
                if (part.fault) throw std::move(*part.fault);
                rules.push_back(ReadRule(cursor));
                bFaultBefore = false;
            } catch (const Fault& fault) {
                bFaultBefore = true;
                if (bSecondHalf) continue;
                reporter.Report(bStatement ? StatementIndented(cursor) : fault);
            }
        }
    } catch (const Fault& fault) {
        // A quote that is not closed, say: where one rule ends and the next begins cannot be told.
        reporter.Report(fault);
    }
    return rules;
}

}  // namespace mlds::rules::syntax
