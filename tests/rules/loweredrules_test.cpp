// Rules that look into other tiers, set marks, or need one side first; spans, listings and limits.
#include <gmock/gmock.h>

#include <tuple>

#include "modelmaker.h"
#include "randompatterns.h"

namespace mlds_test {
namespace {

using mlds::rules::Block;
using mlds::rules::Element;
using mlds::rules::Environment;
using mlds::rules::Model;
using mlds::rules::Rule;

constexpr int kPhones = 3, kSyllables = 4;

// letters    0 a 1 b     2 c 3 d 4   5 a 6 b 7
// word       0 word      1 weak  2   3 word  4
// phone      0 a 1 c 2 d 3 b 4 a 5   6 a 7 b 8     mark 2 has no letter mark
// syl        0 a     1 b         2   3 a     4
class Lowerings : public ::testing::Test {
protected:
    Lowerings() : model(MakeLetters()), plexa(nullptr) {
        model.tiers[kWords].tokens = {"word", "weak"};
        model.tiers.push_back(
            MakeTier("phone", mlds::rules::Tier::Kind::plain, {"a", "b", "c", "d"}));
        model.tiers.push_back(MakeTier("syl", mlds::rules::Tier::Kind::plain, {"a", "b"}));
        block.name = "block";
        block.from = kLetters;
    }

    void SetUp() override {
        ASSERT_TRUE(DeclareTiers(plexa, model));
        Fill(plexa.pStream(kLetters), "||a|b|c|d||a|b||");
        Fill(plexa.pStream(kWords), "||word|weak||word||");
        Fill(plexa.pStream(kPhones), "||a|c|d|b|a||a|b||");
        Fill(plexa.pStream(kSyllables), "||a|b||a||");
        const auto tie = [&](int tier, int other, std::vector<std::pair<int, int>> marks) {
            for (const auto& [mark, otherMark] : marks) {
                CSyncMark* pMark = Mark(plexa.pStream(tier), mark);
                ASSERT_TRUE(pMark->SetToSynchronous(Mark(plexa.pStream(other), otherMark)));
            }
        };
        tie(kLetters, kWords, {{0, 0}, {2, 1}, {4, 2}, {5, 3}, {7, 4}});
        tie(kLetters, kPhones, {{0, 0}, {1, 1}, {2, 3}, {3, 4}, {4, 5}, {5, 6}, {6, 7}, {7, 8}});
        tie(kPhones, kSyllables, {{0, 0}, {2, 1}, {5, 2}, {6, 3}, {8, 4}});
        // Searches across tiers go by this; the notation, which was not used here, does it itself.
        plexa.RankPopulatedStreams();
    }

    // The letters' marks at which a rule holds, each with the end of its focus: "0-2 3-4".
    std::string Held(const Rule& rule) {
        model.blocks = {block};
        model.blocks[0].rules = {rule};
        Lowering lowering(model, rule.variables);
        EXPECT_EQ(lowering.diagnostics().Text(), "");
        EXPECT_EQ(lowering.Faults(), "");
        std::string held;
        for (CStreamObj* p : Chain(plexa.pStream(block.from))) {
            const bool bInside = p->GetPrevStreamObj() != nullptr && p->GetNextStreamObj();
            if (!p->GetObjectType(otSyncMark) || !bInside) continue;
            auto* pAt = static_cast<CSyncMark*>(p);
            if (!lowering.Apply(plexa, 0, 0, pAt)) continue;
            const auto number = [](CSyncMark* pMark) {
                const std::string where = Where(pMark);
                return where.substr(where.find('.') + 1);
            };
            held += (held.empty() ? "" : " ") + number(pAt) + "-" + number(lowering.pEnd);
            for (CSyncMark* pMark : lowering.marks) {
                if (pMark != nullptr) held += "^" + Where(pMark);
            }
        }
        return held;
    }
    static Rule RuleOf(Pattern left, Pattern focus, Pattern right) {
        Rule rule;
        rule.focus = std::move(focus);
        Environment& environment = rule.where.emplace_back();
        environment.left = std::move(left);
        environment.right = std::move(right);
        return rule;
    }

    Model model;
    Block block;
    CPlexa plexa;
};

Pattern Sequence(std::vector<Pattern> parts) {
    return Make(Kind::sequence, std::move(parts));
}
Pattern Cross(int tier, std::vector<Pattern> parts) {
    return InTier(Kind::cross, tier, {Sequence(std::move(parts))});
}
const Pattern kNothing;

Rule Focus(std::vector<Pattern> parts) {
    Rule rule;
    rule.focus = Sequence(std::move(parts));
    return rule;
}

TEST_F(Lowerings, CrossingsGoOnWhereTheyEnd) {
    EXPECT_EQ(Held(Focus({Cross(kPhones, {Letter('c'), Letter('d')}), Letter('c')})), "1-3");
    EXPECT_EQ(Held(Focus({Cross(kPhones, {Letter('c')}), Token()})), "")
        << "no letter begins there";
    EXPECT_EQ(
        Held(Focus({Letter('a'), Cross(kPhones, {Letter('c'), Cross(kSyllables, {Letter('b')})})})),
        "0-4");
    EXPECT_EQ(Held(Focus({Letter('b'), Make(Kind::lookNot, {Cross(kSyllables, {Token()})})})),
              "1-2 6-7")
        << "a place without a syllable mark fails to cross";
}

TEST_F(Lowerings, CrossingsOnlyLookWhereNothingFollows) {
    const Pattern c = Cross(kPhones, {Letter('c')});
    EXPECT_EQ(Held(RuleOf(kNothing, Letter('a'), c)), "0-1");
    EXPECT_EQ(Held(Focus({Letter('a'), Make(Kind::lookAhead, {c})})), "0-1");
    EXPECT_EQ(Held(Focus({Letter('a'), Make(Kind::lookNot, {c})})), "4-6 5-6");
    EXPECT_EQ(Held(RuleOf(Cross(kPhones, {Letter('d')}), Letter('c'), kNothing)), "2-3");
    EXPECT_EQ(Held(RuleOf(Cross(kPhones, {Letter('c'), Letter('d')}), Letter('c'), kNothing)),
              "2-3");
    EXPECT_EQ(Held(RuleOf(Cross(kPhones, {Letter('d'), Letter('c')}), Letter('c'), kNothing)), "");
    // From letters to syllables, and on to a phone whose end is no syllable's.
    const Pattern nested =
        Cross(kSyllables, {Letter('a'), Cross(kPhones, {Letter('d'), Letter('b')})});
    Rule rule = RuleOf(InTier(Kind::edge, kWords), kNothing, nested);
    rule.bInsertion = true;
    EXPECT_EQ(Held(rule), "0-0");
}

TEST_F(Lowerings, CrossingsStayWithinTheWord) {
    const Rule intoNext = RuleOf(kNothing, Letter('b'), Cross(kPhones, {Letter('b')}));
    EXPECT_EQ(Held(intoNext), "1-2");
    block.within = kWords;
    EXPECT_EQ(Held(intoNext), "");
    const Pattern nextWord = Cross(kWords, {Token(Compare(0, 1))});
    EXPECT_EQ(Held(RuleOf(kNothing, Letter('b'), nextWord)), "1-2") << "words are no part of words";
    EXPECT_EQ(Held(Focus({Cross(kPhones, {Letter('a')}), Letter('b')})), "0-2 4-7 5-7");
    EXPECT_EQ(Held(Focus({Cross(kPhones, {Repeat(Letter('c'), 0, 1)}), Letter('a')})),
              "0-1 4-6 5-6")
        << "what took nothing leaves the letter the first one";
    EXPECT_EQ(Held(Focus({Cross(kPhones, {Repeat(Token(), 0, 2)}), Letter('c')})), "2-3")
        << "behind the phones of b there is the end of a word";
}

TEST_F(Lowerings, InAsksTheTokenOverTheNextOne) {
    const auto in = [](int tier, int token) {
        Pattern pattern = InTier(Kind::in, tier);
        pattern.condition = Compare(0, token);
        return pattern;
    };
    EXPECT_EQ(Held(Focus({in(kWords, 1), Token()})), "2-3 3-4");
    EXPECT_EQ(Held(RuleOf(in(kWords, 1), Token(), kNothing)), "3-4 4-6");
    EXPECT_EQ(Held(Focus({in(kSyllables, 0), Token()})), "0-1 1-2 5-6 6-7");
    EXPECT_EQ(Held(Focus({Letter('b'), in(kWords, 1), Letter('c')})), "1-3");
}

TEST_F(Lowerings, MarksAndCapturesGoBothWays) {
    Rule rule = Focus({Make(Kind::lookAhead, {Sequence({Letter('a'), Make(Kind::setMark, {}, 0)})}),
                       Token(), Make(Kind::atMark, {}, 0), Token()});
    rule.variables = {{"m", false, {}}};
    EXPECT_EQ(Held(rule), "0-2^letters.1 4-7^letters.6 5-7^letters.6");

    // Whoever binds goes first, on whichever side.
    const Condition sameVowel = SameAs(0, 1);
    rule = RuleOf(Token(Condition(), 0), Token(), Token(sameVowel));
    rule.variables = {{"x", true, {}}};
    EXPECT_EQ(Held(rule), "2-3 4-6 5-6");
    rule = RuleOf(Token(sameVowel), Token(), Token(Condition(), 0));
    rule.variables = {{"x", true, {}}};
    EXPECT_EQ(Held(rule), "2-3 4-6 5-6");

    rule.variables.push_back({"y", true, {}});
    rule.where[0].left = Sequence({Token(sameVowel), Token(Condition(), 1)});
    rule.where[0].right = Sequence({Token(Condition(), 0), Token(SameAs(1))});
    model.blocks = {block};
    model.blocks[0].rules = {rule};
    EXPECT_NE(Lowering(model, rule.variables).diagnostics().Text().find("comes first"),
              std::string::npos);
}

TEST_F(Lowerings, InsertionsLookBeyondTheirEdge) {
    block.within = kWords;
    Rule rule = RuleOf(InTier(Kind::edge, kWords), kNothing, Letter('a'));
    rule.bInsertion = true;
    EXPECT_EQ(Held(rule), "0-0 4-4 5-5");
    rule = RuleOf(Letter('b'), kNothing, InTier(Kind::edge, kWords));
    rule.bInsertion = rule.bBehindToken = true;
    EXPECT_EQ(Held(rule), "2-2 7-7");
    rule.where[0].right = Letter('c');
    EXPECT_EQ(Held(rule), "") << "c is in the next word";
}

TEST_F(Lowerings, AGuardLooksFromTheEndThatWasFound) {
    Rule rule = RuleOf(kNothing, Repeat(Token(), 1, 2), kNothing);
    rule.except.emplace_back().right = Letter('b');
    EXPECT_EQ(Held(rule), "0-2 1-3 2-4 4-7 5-7 6-7") << "one letter less would be before b";
}

TEST_F(Lowerings, SpansEndAtEmptyPlaces) {
    mlds::rules::SpanPattern run;
    run.pattern = Repeat(Token(), 1, -1);
    model.tiers[kWords].spanPatterns = {run};
    run.pattern = Sequence({Letter('c'), Repeat(Token(), 0, 5)});
    model.tiers[kWords].spanPatterns.push_back(run);
    Lowering lowering(model, {});
    EXPECT_EQ(lowering.Faults(), "");
    const std::vector<int> tests = lowering.lowered().spans.at(kWords);
    ASSERT_EQ(tests.size(), 2u);
    CStream* pLetters = plexa.pStream(kLetters);
    for (const auto& [test, at, end] : {std::tuple(0, 0, 4), {0, 1, 4}, {0, 5, 7}, {1, 2, 4}}) {
        ASSERT_TRUE(lowering.Run(plexa, tests[static_cast<std::size_t>(test)], Mark(pLetters, at)));
        EXPECT_EQ(lowering.pEnd, Mark(pLetters, end));
    }
    EXPECT_FALSE(lowering.Run(plexa, tests[1], Mark(pLetters, 1)));
}

// c -> T / [vowel] _ [vowel]   within word
TEST_F(Lowerings, ReadAsRules) {
    block.within = kWords;
    const Pattern vowel = Token(Compare(1, 0));
    model.blocks = {block};
    model.blocks[0].rules = {RuleOf(vowel, Letter('c'), vowel)};
    Lowering lowering(model, {});
    EXPECT_EQ(lowering.Listing(0), R"(test 'block.1' %letters
    left L12
    right L6
    focus L1
L1: Adj at peek then done
at: Ptr ^at
peek: And L4
L4: AngleBrkt L5 then done
L5: Eq %letters.name %letters.name:'c'
L6: AngleBrkt L5 then L7
L7: AssignPtr ^end then L8
L8: Not edge then L10
edge: SyncTest %word then done
L10: AngleBrkt L11 then done
L11: Eq %letters.vowel %letters.vowel:'yes'
L12: Not edge then L13
L13: AngleBrkt L11 then done
done: Or
end
)");
    const Rule& rule = model.blocks[0].rules[0];
    const std::vector<Element>& elements = lowering.lowered().tests[0].elements;
    const auto is = [&](std::size_t i, Element::Part part, const Pattern* pPattern, bool bDecides,
                        bool bStaysWithin) {
        const Element& element = elements.at(i);
        return element.part == part && element.pPattern == pPattern &&
               element.bDecides == bDecides && element.bStaysWithin == bStaysWithin;
    };
    EXPECT_EQ(elements.size(), lowering.lowered().image.code.size());
    EXPECT_TRUE(is(6, Element::Part::focus, &rule.focus, true, false));
    EXPECT_TRUE(is(8, Element::Part::right, &rule.where[0].right, false, true));
    EXPECT_TRUE(is(10, Element::Part::right, &rule.where[0].right, true, false));
    EXPECT_TRUE(is(13, Element::Part::left, &rule.where[0].left, true, false));
    EXPECT_TRUE(is(5, Element::Part::none, nullptr, false, false));
}

TEST_F(Lowerings, SayWhatDoesNotFit) {
    const auto message = [&](Rule rule) {
        rule.span = {0, 7, 3, 4};
        model.blocks = {block};
        model.blocks[0].rules = {Focus({Letter('a')}), rule};
        return Lowering(model, {}).diagnostics().Text();
    };
    EXPECT_THAT(message(Focus({Repeat(Letter('a'), 300, 300)})),
                ::testing::AllOf(::testing::HasSubstr(":7:3: error: this rule needs 311 "),
                                 ::testing::HasSubstr("a test holds 256; repeat less often")));
    Pattern pattern = Letter('a');
    for (int i = 0; i < 5; ++i) pattern = Repeat(pattern, 1'000'000'000, 2'000'000'000);
    EXPECT_THAT(message(Focus({pattern})), ::testing::HasSubstr("far too many instructions"));
    EXPECT_THAT(message(Focus({Repeat(Make(Kind::sequence), 0, 2'000'000'000), Letter('a'),
                               Repeat(Make(Kind::sequence), 2'000'000'000, 2'000'000'000)})),
                ::testing::HasSubstr("far too many instructions"));
    Rule many = Focus({Letter('a')});
    many.variables.resize(47);
    EXPECT_THAT(message(many), ::testing::HasSubstr("47 captures and marks, and may have 46"));
    many.variables.resize(46);
    EXPECT_EQ(message(many), "");
}

}  // namespace
}  // namespace mlds_test
