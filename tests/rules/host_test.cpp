// Rules at work: text in, tiers out.
#include <gtest/gtest.h>

#include <sstream>

#include "language.h"
#include "mlds/rules/trace.h"

namespace mlds_test {
namespace {

struct Case {
    const char* block;
    const char* text;
    const char* phones;
};

void Check(std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(Shown(kPrelude + kLetters + c.block, c.text), c.phones) << c.block;
    }
}

// Blocks of one tier: what is replaced, kept, taken out and put in.
TEST(RuleHost, ReplacesInPlace) {
    Check({
        {"", "la casá, del", "l a  c a s 'a  d e l"},
        {"block x : phone within word each\n  s -> 0 / _ #", "casas", "c a s a"},
        {"block x : phone within word each\n  s -> ts / _ a", "sas", "ts a s"},
        // One for one keeps numbers, more or fewer tokens do not.
        {"block x : phone within word each\n  a -> E", "casá", "c E s 'E"},
        {"block x : phone within word each\n  a -> E O", "casá", "c E O s E O"},
        {"block x : phone within word each\n  s a -> a s", "sá", "a 's"},
        {"block x : phone within word each\n  a -> a[stress=0]", "sá", "s a"},
        // A rule sees what earlier rules did, and not what it has just made.
        {"block x : phone each\n  a -> e\n  e -> i", "ae", "i i"},
        {"block x : phone each\n  a -> a a", "aa", "a a a a"},
        {"block x : phone each leftward\n  a a -> a", "aaa", "a a"},
        {"block x : phone each\n  a a -> e", "aaa", "e a"},
        {"block x : phone each leftward\n  a a -> e", "aaa", "a e"},
        // The first rule that holds, and then behind its focus.
        {"block x : phone first\n  a b -> e\n  a -> i\n  b -> o", "abba", "e o i"},
        {"block x : phone each\n  a := [stress=1 long=1]", "la", "l 'a:"},
    });
}

TEST(RuleHost, Inserts) {
    Check({
        {"block x : phone within word each\n  0 -> e / # _ s [-voc]", "sta sa", "e s t a  s a"},
        {"block x : phone within word each\n  0 -> e / s _ #", "as sa", "a s e  s a"},
        {"block x : phone within word each\n  0 -> i u / a _ a", "aaa", "a i u a i u a"},
        {"block x : phone within word each leftward\n  0 -> i / a _ a", "aaa", "a i a i a"},
    });
}

// Environments, exceptions, repetition, alternatives and looks, with and without a word's edge.
TEST(RuleHost, LooksAround) {
    Check({
        {"block x : phone within word each\n  a -> E / s _ | _ #", "sa al la", "s E  a l  l E"},
        {"block x : phone within word each\n  a -> E \\ s _ | _ #", "sa al la", "s a  E l  l a"},
        {"block x : phone each\n  a -> E / s _", "as a", "a s  E"},
        {"block x : phone within word each\n  a -> E / _ [-voc]{2} #", "ast as", "E s t  a s"},
        {"block x : phone within word each\n  a [-voc]*? s -> O", "atsts", "O t s"},
        {"block x : phone within word each\n  a [-voc]* s -> O", "atsts", "O"},
        {"block x : phone within word each\n  (a|e)+ -> O", "aeasa", "O s O"},
        {"block x : phone within word each\n  a -> E / _ &[manner=fric] . t", "ast akt",
         "E s t  a k t"},
        {"block x : phone within word each\n  a -> E / _ !(s|t)", "as al", "a s  E l"},
        {"block x : phone each\n  a -> E / ## _ | _ ##", "a a a", "E  a  E"},
        {"block x : phone each\n  in(word: [weak]) a -> E", "la las", "l E  l a s"},
        {"block x : phone each\n  a -> E / <letters: s> _", "sa la", "s E  l a"},
        {"block x : phone within word each\n  [voc stress>=1] -> O", "lá la", "l 'O  l a"},
    });
}

TEST(RuleHost, CapturesAndMarks) {
    Check({
        {"block x : phone within word each\n  x:s y:[voc] -> $y $x", "sa", "a s"},
        {"block x : phone within word each\n  x:[voc] -> $x $x[long=1]", "lá", "l 'a 'a:"},
        {"block x : phone within word each\n  x:[-voc] =x -> $x", "alla atla", "a l a  a t l a"},
        {"block x : phone within word each\n  [voc] -> O / x:[voc] . _ . =x", "atetata",
         "a t O t a t a"},
        {"block x : phone within word each\n  e -> O / =x x:[voc] _", "aae", "a a O"},
        {"block x : phone within word each\n  x:[voc] . [stress=$x] -> O", "ata atá", "O  a t 'a"},
        {"block x : phone within word each\n  ^m a -> E / @m _\n  o ^m -> O / @m _", "ao", "E o"},
    });
}

// The first to fill a place wins; what is free is filled by later blocks.
TEST(RuleHost, FillsOtherTiers) {
    const std::string tiers = kPrelude +
                              "block one : letters -> phone within word each\n  s t -> ts\n"
                              "block two : letters -> phone within word each\n  s -> s , a -> a\n";
    EXPECT_EQ(Shown(tiers, "asta"), "a ts a");
    const std::string syllables = kPrelude + kLetters +
                                  "block s : phone -> syl within word first\n"
                                  "  [-voc]* [voc] -> syl\n  . -> 0\n"
                                  "block t : syl each\n  . := [stress=1] / _ #word\n"
                                  "show syl by phone\nshow syl with \"^\" before [stress=1]\n";
    const auto pRules = Rules(syllables);
    mlds::RuleHost host(pRules);
    ASSERT_TRUE(host.Run("lapas al").bDone);
    std::string labels;
    CStream* pSyl = host.plexa().pStream("syl");
    for (CToken* p = pSyl->pGetFirstStreamObj()->GetNextToken(); p != nullptr;
         p = p->GetNextToken()) {
        labels += host.Label(p, false) + ' ';
    }
    // The s of lapas lies under no syllable; its place still ends the word.
    EXPECT_EQ(labels, "la ^pa ^a ");
}

TEST(RuleHost, DurationsScale) {
    const std::string rules = kPrelude + kLetters +
                              "block base : phone -> time first\n  [voc] -> 80\n  . -> 50\n"
                              "block pause : letters -> time each\n  \",\" -> 200\n"
                              "block long : phone each\n  a ~ 150%\n  e ~ 33%\n";
    EXPECT_EQ(Shown(rules, "la, el", "time"), "50 120  200  26 50");
    const auto pRules = Rules(rules);
    mlds::RuleHost host(pRules);
    mlds::RunOptions options;
    options.ratePercent = 200;
    ASSERT_TRUE(host.Run("la", options).bDone);
    EXPECT_EQ(host.Shown(pRules->model().FindTier("time")), "25 60");
}

// Texts are told what is wrong with them, and the rest is done.
TEST(RuleHost, SaysWhatItLeavesOut) {
    const auto pRules = Rules(kPrelude + "block l : letters -> phone first\n  a -> a\n  l -> l\n");
    mlds::RuleHost host(pRules);
    mlds::RunOutcome outcome = host.Run("la жe");
    EXPECT_TRUE(outcome.bDone);
    ASSERT_EQ(outcome.faults.size(), 2u);
    EXPECT_EQ(outcome.faults[0].column, 4u);
    EXPECT_EQ(outcome.faults[1].what, "no rule for 'e'");
    EXPECT_EQ(outcome.faults[1].column, 5u);
    EXPECT_EQ(host.Shown(pRules->model().FindTier("phone")), "l a");
    mlds::RunOptions strict;
    strict.unknown = mlds::rules::Unknown::error;
    EXPECT_FALSE(host.Run("la ж", strict).bDone);
    EXPECT_TRUE(host.Run("", strict).bDone);
}

// A tier is the same whether everything is run or only what it needs.
TEST(RuleHost, RunsOnlyWhatIsWanted) {
    const std::string rules = kPrelude + kLetters +
                              "block s : phone -> syl within word first\n  [-voc]* [voc] -> syl\n"
                              "block v : phone each\n  in(syl: [syl]) [voc] -> O\n"
                              "block d : phone -> time first\n  . -> 50\n";
    const auto pRules = Rules(rules);
    mlds::RuleHost host(pRules);
    mlds::RunOptions options;
    options.wanted = pRules->model().FindTier("phone");
    ASSERT_TRUE(host.Run("la pas", options).bDone);
    EXPECT_EQ(host.Shown(options.wanted), "l O  p O s");
    EXPECT_EQ(host.Shown(pRules->model().FindTier("time")), "");
}

class Explanations : public mlds::rules::RuleTrace {
public:
    using RuleTrace::RuleTrace;
    std::string text;

private:
    void Tried(const mlds::rules::TriedRule& tried) override {
        text += tried.pRule->text + (tried.Holds() ? ": YES" : ": " + tried.Why()) + '\n';
    }
};

std::string Explained(const std::string& block, const char* word) {
    const auto pRules = Rules(kPrelude + kLetters + block);
    mlds::RuleHost host(pRules);
    Explanations explanations(host);
    host.Run(word);
    // What the letters became is no question here.
    const std::size_t own = explanations.text.find("x1");
    return own == std::string::npos ? "" : explanations.text.substr(own);
}

TEST(RuleTrace, SaysWhyARuleDidNotHold) {
    const std::string head = "block x : phone within word each\n  \"x1\": ";
    const auto why = [&head](const char* rule, const char* word) {
        std::string text = Explained(head + rule, word);
        return text.substr(text.find(rule) + std::string(rule).size() + 2);
    };
    EXPECT_EQ(why("s -> E / _ [voc]", "st"), "right of \"s\" wanted [voc], found t without voc\n");
    EXPECT_EQ(why("s -> E / _ [voc]", "s a"),
              "right of \"s\" wanted [voc], found the edge of word\n");
    EXPECT_EQ(why("s -> E / # _ | [fric] _", "as"),
              "left of | wanted # or [fric], found a, no manner\n");
    EXPECT_EQ(why("s -> E / t a _", "las"), "left of \"a\" wanted t, found l\n");
    EXPECT_EQ(why("s t -> E", "sa"), "right of \"s\" wanted t, found a\n");
    EXPECT_EQ(why("s -> E / _ !t", "st"), "right of \"s\" wanted !t, found t\n");
    EXPECT_EQ(why("s -> E \\ _ t", "st"), "the exception holds: _ t\n");
    EXPECT_EQ(why("in(word: [weak]) a -> E", "sa"),
              "right of | wanted in(word: [weak]), found in word sa\n");
    EXPECT_EQ(why("!in(word: [weak]) a -> E", "la"),
              "right of | wanted !in(word: [weak]), found in word la\n");
    EXPECT_EQ(why("[stress=1] -> E", "a"), "right of | wanted [stress=1], found a, stress=0\n");
    EXPECT_EQ(why("s -> E / _ [voc]", "sa"), "YES\n");
}

class Elements : public mlds::rules::RuleTrace {
public:
    explicit Elements(mlds::RuleHost& host) : RuleTrace(host, mlds::rules::TraceDetail::elements) {}
    std::string text;

private:
    void Tried(const mlds::rules::TriedRule& tried) override {
        if (tried.pRule->name != "x1") return;
        for (const auto& element : tried.elements)
            text += element.wanted + (element.bFits ? " fits, " : " fails, ");
    }
};

TEST(RuleTrace, ElementsStandOnceInTheOrderInWhichTheyWereLookedAt) {
    const auto pRules = Rules(kPrelude + kLetters +
                              "block x : phone within word\n  \"x1\": s t -> E / p _ [voc]\n");
    mlds::RuleHost host(pRules);
    Elements elements(host);
    host.Run("asta");
    EXPECT_EQ(elements.text, "s fits, t fits, [voc] fits, p fails, ");
}

}  // namespace
}  // namespace mlds_test
