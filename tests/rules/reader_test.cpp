// Rule files as texts: what is read of them, and what is said where they cannot be read.
#include <gmock/gmock.h>

#include <random>

#include "reader_examples.h"
#include "syntax/syntax.h"
#include "syntax_print.h"

namespace mlds::rules {

namespace {

struct Result {
    Sources sources;
    Diagnostics diagnostics;
    syntax::File file;
};

Result ReadText(const std::string& text) {
    Result result;
    result.sources.Add("t.mlr", text);
    result.file = syntax::ReadFile(result.sources, 0, result.diagnostics);
    return result;
}

// "LINE:COLUMN+LENGTH MESSAGE", one a line.
std::string FaultsOf(const Result& result) {
    std::string faults;
    for (const Diagnostic& d : result.diagnostics.all()) {
        faults += std::to_string(d.span.line) + ':' + std::to_string(d.span.column) + '+' +
                  std::to_string(d.span.length) + ' ' + d.message + '\n';
    }
    return faults;
}

std::string Tree(const std::string& text) {
    const Result result = ReadText(text);
    return Printed(result.file) + FaultsOf(result);
}

std::string RuleTree(const std::string& rules) {
    std::string tree = Tree("block b : t\n  " + rules);
    const std::string head = "(block b t ";
    return tree.starts_with(head) && tree.ends_with(")\n")
               ? tree.substr(head.size(), tree.size() - head.size() - 2)
               : tree;
}

std::string RuleFault(const std::string& rule) {
    return FaultsOf(ReadText("block b : t\n  " + rule));
}

}  // namespace

TEST(RuleReader, WholeLanguagesAreReadWithoutFault) {
    const Result spanish = ReadText(kSpanish);
    EXPECT_EQ(spanish.diagnostics.Text(), "");
    EXPECT_EQ(Printed(spanish.file), kSpanishTree);
    const Result whole = ReadText(kWholeLanguage);
    EXPECT_EQ(whole.diagnostics.Text(), "");
    EXPECT_EQ(Printed(whole.file), kWholeLanguageTree);
}

TEST(RuleReader, EveryFormOfARule) {
    const std::vector<std::pair<const char*, const char*>> kForms = {
        {"\"last\": a -> b", "(rule \"last\": a -> b)"},
        {"a? b* c+ d{2} e{2,} f{0,3}? (g h)*? -> x",
         "(rule a{0,1} b{0,} c{1,} d{2,2} e{2,} f{0,3}? (g h){0,}? -> x)"},
        {"x:a y:[b] =x !=y &(c|) !## !#w -> $x ^m $y[f=1,+g -h]",
         "(rule x:a y:[b] =x !=y &(c | ) !## !#w -> $x ^m $y[f=1 +g -h])"},
        {"^m a @m \"in\" in (b) in(w: [c]) -> 0", "(rule ^m a @m \"in\" in (b) in(w: c) ->)"},
        {"[a, -b|(c !d) +e][f!=-1 g<=$x h>\"0\" -\"-\" !(a|b)] []-> x",
         "(rule [(or (and a (not b)) (and (and c (not d)) e))] [(and f!=-1 g<=$x h>\"0\" "
         "(not \"-\") (not (or a b)))] [(and)] -> x)"},
        {"0 -> e / ## _ s \\ _ a|b _", "(rule 0 -> e / ##_s \\ _a | b_)"},
        {"a->b\\_c/d_,e:=[+f],g ~ 5 %", "(rule a -> b / d_ \\ _c) (rule e := [+f]) (rule g ~ 5)"},
        {"a -> b ; comment\n     / c _ ; another\n  d -> e", "(rule a -> b / c_) (rule d -> e)"},
        {"ma\u0301 \"\\\"\\\\;\" -> \U0001F600", "(rule m\u00E1 \"\"\\;\" -> \U0001F600)"},
    };
    for (const auto& [text, tree] : kForms) EXPECT_EQ(RuleTree(text), tree) << text;
}

TEST(RuleReader, FaultsOfRules) {
    const std::vector<std::pair<const char*, const char*>> kFaults = {
        {"a > b", "2:5+1 the arrow of a rule is written '->'\n"},
        {"a → b / _ c", "2:5+1 the arrow of a rule is written '->'\n"},
        {"a b", "2:6+1 expected '->', ':=' or '~' behind the focus, found the end of the line\n"},
        {"-> b", "2:3+2 expected the focus of a rule, found '->'; '0' in its place inserts\n"},
        {"a -> / _ b",
         "2:8+1 expected a result behind '->', found '/'; '0' is the one for nothing\n"},
        {"a -> b / c", "2:12+1 expected '_' in this environment, where the focus stands\n"},
        {"a -> b / _ c | d",
         "2:18+1 expected '_' in this environment, where the focus stands; '|' separates "
         "environments, a choice within one stands in parentheses: _ (a | b)\n"},
        {"a -> b / c _ d _ e",
         "2:18+1 this environment has a second '_'; '|' stands between two environments; as a "
         "token it is written \"_\"\n"},
        {"a -> b / (c _ d)",
         "2:15+1 '_' is the place of the focus and stands outside of all brackets; as a token it "
         "is written \"_\"\n"},
        {"a -> b / _ / c _",
         "2:14+1 this rule has '/' already; '|' stands between its environments\n"},
        {"a -> b _",
         "2:10+1 expected a token, '$' or '^' in the result, or '/' with where, found '_'; as a "
         "token it is written \"_\"\n"},
        {"a -> b / [c _ d", "2:12+1 this '[' is not closed\n"},
        {"a -> b , (c ] -> d", "2:15+1 ']' cannot close the '(' of line 2, column 12\n"},
        {"a) -> b", "2:4+1 ')' closes nothing\n"},
        {"a -> \"b", "2:8+1 this quote is not closed; a quote as a token is written \"\\\"\"\n"},
        {"\"a\\n\" -> b", "2:5+1 in quotes, '\\' stands only before '\"' and '\\'; write '\\\\'\n"},
        {", -> b", "2:3+1 expected a rule, found ','; as a token it is written \",\"\n"},
        {"a -> b ,", "2:11+1 expected a rule, found the end of the line\n"},
        {"a -> ? / _ b",
         "2:8+1 expected a token, '$' or '^' in the result, or '/' with where, found '?'; as a "
         "token it is written \"?\"\n"},
        {"? -> b",
         "2:3+1 '?' repeats what stands before it, and nothing does; as a token it is written "
         "\"?\"\n"},
        {"{a, b} -> b",
         "2:3+1 '{' repeats what stands before it, and nothing does; a choice is written (a | "
         "b)\n"},
        {"0 a -> b", "2:3+1 '0' without quotes is nothing; the token is written \"0\"\n"},
        {"a -> b 0", "2:10+1 '0' without quotes is nothing; the token is written \"0\"\n"},
        {"a -> b | c", "2:10+1 a result has no choices; write a rule for each\n"},
        {"a -> [b]",
         "2:8+1 a result begins with a token; ':=' sets fields of the tokens that are there\n"},
        {"() -> b", "2:3+2 nothing stands in these parentheses\n"},
        {"a{3,1} -> b", "2:4+5 the least number of a repetition stands first, as in {1,3}\n"},
        {"a{256} -> b", "2:5+3 a repetition goes up to 255\n"},
        {"a{,2} -> b", "2:5+1 expected a number in '{ }', found ','; as in {2}, {2,} or {0,3}\n"},
        {"a{0} -> b", "2:4+3 this repeats nothing at all\n"},
        {"a** -> b",
         "2:5+1 what is repeated already is repeated again; put the first repetition in "
         "parentheses\n"},
        {"!a* -> b",
         "2:5+1 what is only looked at cannot be repeated; put what is repeated in parentheses, as "
         "in !(a b*)\n"},
        {"a -> b / #? _", "2:13+1 a place cannot be repeated, as it takes no token\n"},
        {"^ m a -> b", "2:5+1 expected the name of a mark behind '^' without a blank before it\n"},
        {"a -> $ x",
         "2:10+1 expected the name of a capture behind '$' without a blank before it\n"},
        {"$x -> a",
         "2:3+1 '$' with a capture's name stands in results and conditions; '=x' matches the token "
         "that was captured as x; as a token it is written \"$\"\n"},
        {"a -> b / _ ##w",
         "2:16+1 '##' is the edge of the utterance and has no tier's name; '#w' would be an edge "
         "of that tier\n"},
        {"<t [a]> -> b",
         "2:6+1 expected ':' behind the tier's name, found '['; as in <letters: [vowel]>\n"},
        {"a -> b / _ <t: a", "2:14+1 this '<' is not closed\n"},
        {"in(t [a]) b -> b",
         "2:8+1 expected ':' behind the tier's name, found '['; as in in(word: [weak]); behind a "
         "blank, '(' would begin a group\n"},
        {"[a|] -> b", "2:6+1 expected a feature, a value or a token, found ']'\n"},
        {"[-a=1] -> b", "2:4+3 a comparison has no '+', '-' or '!' in front; '!=' is not equal\n"},
        {"[a==1] -> b", "2:5+1 '==' is written '='\n"},
        {"[!!a] -> b", "2:5+1 '!' stands here twice\n"},
        {"a := b", "2:8+1 expected '[' with settings, found 'b'; as in := [stress=1]\n"},
        {"a := [f]", "2:9+1 expected what becomes of 'f': +f, -f or f=value\n"},
        {"a := []", "2:9+1 expected a setting: +name, -name or name=value, found ']'\n"},
        {"a ~ 10001%", "2:7+6 a duration is scaled to 1 % up to 10000 %\n"},
        {"a ~ 0%", "2:7+2 a duration is scaled to 1 % up to 10000 %\n"},
        {"a ~ 50", "2:7+2 expected a whole number and '%' behind '~', found '50'; as in ~ 130%\n"},
        {"assert \"a\" => b",
         "2:3+6 'assert' begins a statement, whose first line is not indented\n"},
    };
    for (const auto& [rule, fault] : kFaults) EXPECT_EQ(RuleFault(rule), fault) << rule;
}

TEST(RuleReader, FaultsOfStatements) {
    const std::vector<std::pair<const char*, const char*>> kFaults = {
        {"block : t\n  a ->",
         "1:7+1 expected the name of the block, found ':'; as in block sounds : letters -> "
         "phone\n2:7+1 expected a result behind '->', found the end of the line; '0' is the one "
         "for nothing\n"},
        {"block b t",
         "1:9+1 expected ':' behind the block's name, found 't'; as in block sounds : letters -> "
         "phone\n"},
        {"block b : t wihin w",
         "1:13+5 expected 'within TIER', 'first' or 'each', 'leftward' or the end of the line, "
         "found 'wihin'; did you mean 'within'?\n"},
        {"block b : t each first",
         "1:18+5 expected 'within TIER', 'first' or 'each', 'leftward' or the end of the line, "
         "found 'first'\n"},
        {"  a -> b",
         "1:3+1 an indented line belongs to the statement above it, and there is none\n"},
        {"# vowels",
         "1:1+1 expected a statement (tier, block, class, ...), found '#'; a comment begins with "
         "';'\n"},
        {"hello world", "1:1+5 expected a statement (tier, block, class, ...), found 'hello'\n"},
        {"feature x = a", "1:1+7 'feature' stands indented below its tier\n"},
        {"tier t form text : a",
         "1:8+4 expected 'from text', 'ms', 'spans' or ':' before the tokens, found 'form'; did "
         "you mean 'from'?\n"},
        {"tier t : a 0 , b",
         "1:12+1 '0' without quotes is nothing; the token is written \"0\"\n1:14+1 expected a "
         "token, found ','; as a token it is written \",\"\n"},
        {"tier t : a\n  letters à = a\n  c = [x]+\n  ignore \"x\"\n  feature y a\n  field z",
         "2:3+7 expected a part of tier t (feature, field or others), found 'letters'\n3:3+1 'c' "
         "belongs in a tier that spans another, which t is not\n4:3+6 'ignore' belongs in a tier "
         "from text, which t is not\n5:13+1 expected '=' and tokens, or ':' and values, behind the "
         "feature's name, found 'a'\n6:10+1 expected 'number' behind the field's name, found the "
         "end of the line\n"},
        {"tier letters from text : a\n  leters à = a\n  letters à a\n  feature f = a . : \".\"\n  "
         "expand [0-9] spellout\n  expand \"\" as b\n  case sensitive",
         "2:3+6 expected a part of tier letters (feature, ignore, 'letters ... = ...' and others), "
         "found 'leters'; did you mean 'letters'?\n3:14+1 expected characters of the text, or '=', "
         "found the end of the line\n4:17+1 expected a token, found '.'; as a token it is written "
         "\".\"\n4:19+1 expected a token, found ':'; as a token it is written \":\"\n5:10+14 "
         "expected 'as' and a reading, as in expand \"Sr.\" as \"señor\"\n6:10+2 expected what to "
         "expand, found an empty text\n7:8+9 expected 'kept' behind 'case', found 'sensitive'\n"},
        {"class A = a -> b",
         "1:13+2 expected more of the pattern or the end of the line, found '->'\n"},
        {"pattern p = a _ b",
         "1:15+1 expected no '_', as this is no environment, found '_'; as a token it is written "
         "\"_\"\n"},
        {"class A =", "1:10+1 expected a pattern behind '=', found the end of the line\n"},
        {"lexicon es.lex : a -> b", "1:9+2 expected the name of a file in quotes, found 'es'\n"},
        {"include es.mlr", "1:9+2 expected the name of a file in quotes, found 'es'\n"},
        {"language pt_BR",
         "1:12+1 expected the end of the line, found '_'; a word with this sign stands in "
         "quotes\n"},
        {"ipa x : a = b c = d", "1:15+1 expected '|' between two tokens, found 'c'\n"},
        {"read a b", "1:8+1 expected 'as' and what it is read as, found 'b'\n"},
        {"show x with \"\" before [a]",
         "1:13+2 expected a mark behind 'with', found an empty text\n"},
        {"show x with . before [a]",
         "1:13+1 expected a mark behind 'with', found '.'; as a token it is written \".\"\n"},
        {"show x with ' befor [a]",
         "1:15+5 expected 'before' or 'after' behind the mark, found 'befor'; did you mean "
         "'before'?\n"},
        {"assert \"a\" -> b",
         "1:12+2 expected '=>' behind the text, and then the tokens that it becomes, found '->'\n"},
        {"assert \"a\" => tier x b", "1:22+1 expected ':' behind the tier's name, found 'b'\n"},
    };
    for (const auto& [text, fault] : kFaults) EXPECT_EQ(FaultsOf(ReadText(text)), fault) << text;
}

// One message for each fault, and what can be read behind it is there.
TEST(RuleReader, ReadingGoesOnBehindAFault) {
    EXPECT_EQ(Tree("blok b : t\n  a -> b , c => d , e -> f\n  g -> h / i\n  j -> k\n"
                   "tier t : a . b\n  featur f = a\n  field g number\n"),
              "(block b t (rule a -> b) (rule e -> f) (rule j -> k))\n"
              "(tier t : a b (field g))\n"
              "1:1+4 there is no statement 'blok'; did you mean 'block'?\n"
              "2:14+2 the arrow of a rule is written '->'\n"
              "3:12+1 expected '_' in this environment, where the focus stands\n"
              "5:12+1 expected a token, found '.'; as a token it is written \".\"\n"
              "6:3+6 expected a part of tier t (feature, field or others), found 'featur'; "
              "did you mean 'feature'?\n");
    // Rules below each other are one fault, also if there are hundreds.
    EXPECT_EQ(FaultsOf(ReadText("a -> b\nc -> d\ne -> f")),
              "1:1+1 a rule stands indented below its block\n");
}

TEST(RuleReader, PlacesAreThoseOfAnEditor) {
    const Result result = ReadText(
        "\xEF\xBB\xBF; \u00E1\r\nblock b : t\r\n\t\u00E1 e\u0301 -> \u4E2D , b -> c\r\n"
        "\t   / _ d\r\n\t\u4E2D \u4E2D ] x\r\n");
    ASSERT_EQ(result.file.statements.size(), 1U);
    const auto& rules = std::get<syntax::Block>(result.file.statements[0]).rules;
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules[0].span, (Span{0, 3, 2, 9}));
    EXPECT_EQ(result.sources.TextOf(rules[0].span), "\u00E1 e\u0301 -> \u4E2D");
    EXPECT_EQ(result.sources.TextOf(rules[1].span), "b -> c");
    EXPECT_EQ(result.sources.TextOf(rules[1].where[0].underscore), "_");
    EXPECT_EQ(result.diagnostics.Text(),
              "t.mlr:5:6: error: ']' closes nothing\n\t\u4E2D \u4E2D ] x\n\t      ^\n");
}

TEST(RuleReader, WhatIsNoTextIsOneFault) {
    EXPECT_EQ(FaultsOf(ReadText("class A = a\nclass \xE1 = ( \n\nclass \xF1 = [\nclass C = (")),
              "2:7+1 this byte is no UTF-8, like some in 1 other line; save the file as UTF-8\n"
              "5:11+1 this '(' is not closed\n");
    EXPECT_EQ(FaultsOf(ReadText(std::string("class A = a\0b", 13))),
              "1:12+1 a control character (U+0000) stands here\n");
    EXPECT_EQ(FaultsOf(ReadText("block b : t\n  " + std::string(100'001, 'a') + "\n  a ->")),
              "2:1+1 this line is longer than 100,000 bytes; an indented line continues the one "
              "above\n3:7+1 expected a result behind '->', found the end of the line; '0' is the "
              "one for nothing\n");
    // Each message keeps its line: there may not be one for every comma.
    const Result commas = ReadText("block b : t\n  " + std::string(90'000, ','));
    EXPECT_THAT(commas.diagnostics.errors(), testing::AllOf(testing::Ge(1), testing::Le(8)));
}

TEST(RuleReader, DeepNestingIsAFault) {
    for (const char* pBracket : {"(", "<t: ", "[!(", "&(", "in(t: [("}) {
        std::string deep = "class A = ";
        for (int i = 0; i < 9'000; ++i) deep += pBracket;
        EXPECT_GT(ReadText(deep).diagnostics.errors(), 0) << pBracket;
    }
    const auto Nested = [](int n) {
        const auto count = static_cast<std::size_t>(n);
        return "class A = " + std::string(count, '(') + 'a' + std::string(count, ')');
    };
    EXPECT_EQ(FaultsOf(ReadText(Nested(100))), "");
    EXPECT_EQ(FaultsOf(ReadText(Nested(101))),
              "1:112+1 brackets are nested deeper than 100 levels; name a part of this with "
              "'pattern'\n");
}

TEST(RuleReader, AnyBytesGiveMessagesWithPlaces) {
    std::mt19937 random(20);
    const auto Below = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    const std::string kBytes = "()[]{}<>|?*+&!#^@=$:;,/\\\"._~-0a \n\t\r\xC3\xFF";
    int nFaulty = 0;
    for (int i = 0; i < 3'000; ++i) {
        std::string text = i % 2 == 0 ? kSpanish : kWholeLanguage;
        for (std::size_t n = 1 + Below(6); n > 0; --n) {
            const std::size_t at = Below(text.size());
            const std::size_t lineEnd = std::min(text.find('\n', at), text.size() - 1);
            switch (Below(4)) {
                case 0: text.erase(at, 1 + Below(3)); break;
                case 1: text.insert(at, 1, kBytes[Below(kBytes.size())]); break;
                case 2: text[at] = kBytes[Below(kBytes.size())]; break;
                default: text.erase(at, lineEnd + 1 - at); break;
            }
        }
        const Result result = ReadText(text);
        nFaulty += result.diagnostics.empty() ? 0 : 1;
        for (const Diagnostic& d : result.diagnostics.all()) {
            ASSERT_TRUE(d.span.line >= 1 && d.span.line <= result.sources.At(0).lines()) << text;
            ASSERT_GE(d.span.column, 1) << text;
            ASSERT_GE(d.span.length, 1) << text;
            ASSERT_THAT(d.Text().back(), testing::AnyOf('^', '~')) << text;
        }
        ASSERT_LE(result.diagnostics.errors(), 60) << result.diagnostics.Text(100) << text;
    }
    EXPECT_GT(nFaulty, 2'000);
}

}  // namespace mlds::rules
