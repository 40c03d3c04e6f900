// Tokens read back as they are shown, lexicons, and what is told about the text part of a language.
#include "text/lexicon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "text/shown.h"
#include "text/textreader.h"

using namespace mlds::rules;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

enum : int { kText, kLetters, kWord, kPhone, kTime };

Condition Equals(int field, int value) {
    Condition condition;
    condition.kind = Condition::Kind::compare;
    condition.field = field;
    condition.value = value;
    return condition;
}

Condition Both(Condition a, Condition b) {
    Condition condition;
    condition.parts = {std::move(a), std::move(b)};
    return condition;
}

Model Spanish() {
    Model model;
    model.language = "es";
    model.tiers.resize(5);
    const auto name = [&](int tier, const char* pName, Tier::Kind kind) -> Tier& {
        Tier& named = model.tiers[static_cast<std::size_t>(tier)];
        named.name = pName;
        named.kind = kind;
        return named;
    };
    name(kText, "text", Tier::Kind::text);
    name(kLetters, "letters", Tier::Kind::fromText).tokens = {"m", "é", "x", "i", "c", "o", "s"};
    name(kWord, "word", Tier::Kind::spans).spanned = kLetters;
    name(kTime, "time", Tier::Kind::time);
    Tier& phone = name(kPhone, "phone", Tier::Kind::plain);
    phone.tokens = {"m", "e", "x", "i", "k", "o", "tS", "'", "'a", "e:", ":"};
    phone.fields.resize(3);
    phone.fields[1].kind = Field::Kind::number;
    phone.fields[2].kind = Field::Kind::feature;
    phone.fields[2].values = {"yes", "no"};
    model.text.tier = kLetters;
    Condition notStressed = Equals(1, 0);
    notStressed.comparison = Comparison::notEqual;
    model.showMarks = {{kPhone, "'", true, false, Both(Equals(1, 1), Condition{}), {}},
                       {kPhone, "''", true, false, Equals(1, 2), {}},
                       {kPhone, ":", false, false, Equals(2, 0), {}},
                       {kPhone, "~", false, false, notStressed, {}},
                       {kPhone, "ˈ", true, true, Equals(1, 1), {}}};
    return model;
}

/// Pieces as "e[1=2]" with the numbers of fields and values.
std::string Text(std::span<const Piece> pieces) {
    std::string text;
    for (const Piece& piece : pieces) {
        text += (text.empty() ? "" : " ") + piece.name;
        for (const Setting& setting : piece.settings) {
            text += "[" + std::to_string(setting.field) + "=" + std::to_string(setting.value) + "]";
        }
    }
    return text;
}

std::string Shown(const Model& model, std::string_view text, TierId tier = kPhone) {
    const ShownText shown = ReadShown(model, tier, text);
    if (shown.fault.empty()) return Text(shown.pieces);
    return std::to_string(shown.column) + "+" + std::to_string(shown.length) + ": " + shown.fault;
}

struct Loaded {
    Model model = Spanish();
    Sources sources;
    Diagnostics diagnostics;
    std::unique_ptr<Lexicon> pLexicon;

    explicit Loaded(std::string text) {
        sources.Add("es.mlr", "lexicon \"es.lex\" : word -> phone\n");
        const int source = sources.Add("es.lex", std::move(text));
        pLexicon = std::make_unique<Lexicon>(model, LexiconFile{"es.lex", kWord, kPhone, {0, 1}},
                                             sources, source, diagnostics);
    }
    std::string Find(std::string_view word) {
        const std::span<const Piece>* pPieces = pLexicon->Find(TextReader(model).Letters(word));
        return pPieces != nullptr ? Text(*pPieces) : "-";
    }
    std::vector<std::string> Messages() const {
        std::vector<std::string> messages;
        for (const Diagnostic& d : diagnostics.all()) {
            messages.push_back(d.file + ":" + std::to_string(d.span.line) + ":" +
                               std::to_string(d.span.column) + "+" + std::to_string(d.span.length) +
                               (d.severity == Severity::error ? " " : " warning ") + d.message);
        }
        return messages;
    }
};

std::vector<std::string> Checked(const Model& model) {
    Sources sources;
    sources.Add("x.mlr", "1\n2\n3\n4\n5\n6\n7\n8\n9\n");
    Diagnostics diagnostics;
    CheckText(model, sources, diagnostics);
    std::vector<std::string> messages;
    for (const Diagnostic& d : diagnostics.all()) {
        messages.push_back(std::to_string(d.span.line) +
                           (d.severity == Severity::error ? ": " : ": warning: ") + d.message);
    }
    return messages;
}

}  // namespace

TEST(Shown, MarksSetWhatTheyStandFor) {
    const Model model = Spanish();
    EXPECT_EQ(Shown(model, "m 'e  x\ti"), "m e[1=1] x i");
    EXPECT_EQ(Shown(model, "''e: ''i:"), "e:[1=2] i[1=2][2=0]") << "the longest token";
    EXPECT_EQ(Shown(model, "' 'a ''a"), "' 'a 'a[1=1]") << "a token that begins with a mark";
    EXPECT_EQ(Shown(model, ""), "");
    EXPECT_EQ(Shown(model, "80 0", kTime), "80 0");
}

TEST(Shown, TellsWhatCannotBeRead) {
    const Model model = Spanish();
    EXPECT_EQ(Shown(model, "é 'ts"), "1+1: tier phone has no token 'é'");
    EXPECT_EQ(Shown(model, "m 'ts:"), "3+4: tier phone has no token 'ts'; did you mean 'tS'?");
    EXPECT_THAT(Shown(model, "m o~"), HasSubstr("3+2: the mark ~ cannot be read back: "));
    EXPECT_THAT(Shown(model, "ˈe"), HasSubstr("no token 'ˈe'")) << "a mark of IPA only";
    EXPECT_THAT(Shown(model, "80 -1", kTime), HasSubstr("4+2: '-1' is no time"));
    EXPECT_THAT(Shown(model, "99999999999", kTime), HasSubstr("is no time"));
    EXPECT_THAT(Shown(model, "m", 77), HasSubstr("no such tier"));
}

TEST(Lexicons, HoldWordsHoweverTheyAreWritten) {
    Loaded loaded("; words\r\n\r\nMÉXICO\tm 'e x i k o\r\n  mi \t m i ; mine\nosi\to\n");
    EXPECT_THAT(loaded.Messages(), ElementsAre());
    EXPECT_EQ(loaded.pLexicon->size(), 3u);
    EXPECT_EQ(loaded.Find("me\u0301xico"), "m e[1=1] x i k o");
    EXPECT_EQ(loaded.Find("mi"), "m i");
    EXPECT_EQ(loaded.Find("mis"), "-");
    const std::span<const Piece> pieces =
        *loaded.pLexicon->Find(TextReader(loaded.model).Letters("mi"));
    EXPECT_EQ(pieces[1].span, (Span{1, 4, 10, 1}));
}

TEST(Lexicons, TellWhatIsWrong) {
    Loaded loaded("mi m i\n\tm\nmi\té ts\nmi\t\nmi\tm i\nMi\tm\nsí mi\tm\nos\to");
    EXPECT_THAT(
        loaded.Messages(),
        ElementsAre("es.lex:1:1+6 no TAB here: a line is a word, a TAB and its tokens",
                    "es.lex:2:1+1 no word before the TAB",
                    "es.lex:3:4+1 tier phone has no token 'é'",
                    "es.lex:4:1+2 this word has no tokens: a line is a word, a TAB and its tokens",
                    "es.lex:6:1+2 warning 'Mi' is here already: the first one holds",
                    "es.lex:7:1+5 'sí mi' is no word in letters of tier letters: no text can have "
                    "it"));
    EXPECT_EQ(loaded.Find("mi"), "m i");
    EXPECT_EQ(loaded.Find("os"), "o") << "the rest is taken, and nothing of what was refused";
}

TEST(Lexicons, LoadAHundredThousandWords) {
    const std::string letters[] = {"m", "é", "x", "i", "c", "o", "s"};
    std::string text;
    for (int i = 0; i < 100'000; ++i) {
        for (int n = i; n > 0; n /= 7) text += letters[n % 7];
        text += "i\tm 'e x i k o\n";
    }
    const auto begin = std::chrono::steady_clock::now();
    Loaded loaded(std::move(text));
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    RecordProperty("seconds", std::to_string(taken.count()));
    EXPECT_EQ(loaded.pLexicon->size(), 100'000u);
    EXPECT_LT(taken.count(), 10);
}

TEST(CheckText, TellsWhatTheTextPartHasWrong) {
    Model model = Spanish();
    model.text.standsFor = {
        {"á", "ж", {0, 1, 1, 1}}, {"ü", "", {0, 2, 1, 1}}, {"Ó", "o", {0, 3, 1, 1}}};
    model.text.reads = {{"…", "m ж", {0, 4, 1, 1}}};
    model.text.expansions = {{"[0-9", false, "m", false, {0, 5, 1, 1}},
                             {"x*", false, "m", false, {0, 6, 1, 1}},
                             {"Sr.", true, "ñ", false, {0, 7, 1, 1}},
                             {"", true, "m", false, {0, 8, 1, 1}},
                             {"\\Q.", false, "m", false, {0, 9, 1, 1}}};
    EXPECT_THAT(
        Checked(model),
        ElementsAre("1: 'ж' is no token of tier letters",
                    "2: 'ü' stands for nothing: 'ignore' keeps an empty place for it, 'join' none",
                    "3: warning: 'Ó' is never read, because text is read in lower case; 'case "
                    "kept' keeps capitals",
                    "4: 'ж' is no token of tier letters",
                    "5: ICU refuses the expression '[0-9' at character 4: a '[' without its ']'",
                    "6: the expression 'x*' can match nothing: it would match everywhere",
                    "7: 'ñ' is no token of tier letters",
                    "8: 'expand' needs a text that is read as another",
                    "9: the expression '\\Q.' leaves a quotation or a comment open at its end"));
}

TEST(CheckText, TellsContradictionsAndLanguagesWithoutNumbers) {
    Model model = Spanish();
    model.tiers[kLetters].span = {0, 1, 1, 1};
    model.text.ignored = {"m", "-"};
    model.text.joined = {"-"};
    EXPECT_THAT(Checked(model),
                ElementsAre("1: warning: 'm' is ignored, but also a letter of tier letters, and "
                            "that holds",
                            "1: warning: '-' is joined, but also ignored, and that holds"));
    model = Spanish();
    model.text.expansions = {{"[0-9]+", false, "", true, {0, 1, 1, 1}}};
    EXPECT_THAT(Checked(model), ElementsAre());
    model.language = "tlh";
    EXPECT_THAT(Checked(model), ElementsAre("1: ICU has no numbers in words for language 'tlh'"));
    model.language.clear();
    EXPECT_THAT(Checked(model), ElementsAre(HasSubstr("say which, 'language es'")));
    // "ignore other" excuses punctuation in a reading, but no letter.
    model.text.bIgnoreOther = true;
    model.text.expansions = {{"x", true, "m! ñ", false, {0, 1, 1, 1}}};
    EXPECT_THAT(Checked(model), ElementsAre("1: 'ñ' is no token of tier letters"));
}
