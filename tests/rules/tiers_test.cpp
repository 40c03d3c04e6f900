// The tiers of a model, as tokens of a container see them.
#include "host/tiers.h"

#include "modelmaker.h"

namespace mlds_test {
namespace {

using mlds::rules::Field;
using mlds::rules::kNoValue;
using mlds::rules::kTextTier;
using mlds::rules::Model;
using RuleTier = mlds::rules::Tier;

// Every second of 100 tokens has no value, so that each set needs more ranges than single values
// would fit.
TEST(DeclareTiers, FeaturesFollowFromNames) {
    std::vector<std::string> tokens;
    std::vector<int> even, some;
    for (int i = 0; i < 100; ++i) {
        tokens.push_back("t" + std::to_string(i));
        even.push_back(i % 2);
        some.push_back(i % 2 == 0 ? -1 : i % 4 == 1 ? 0 : 1);
    }
    Model model;
    model.tiers.push_back(MakeTier("text", RuleTier::Kind::text, {}));
    model.tiers.push_back(MakeTier("letters", RuleTier::Kind::fromText, tokens));
    RuleTier& letters = model.tiers.back();
    AddFeature(letters, "even", {"yes", "no"}, even);
    AddFeature(letters, "some", {"undefined", "odd"}, some);
    Field& stress = letters.fields.emplace_back();
    stress.name = "stress";
    stress.kind = Field::Kind::number;
    model.tiers.push_back(MakeTier("time", RuleTier::Kind::time, {}));

    CPlexa plexa(nullptr);
    ASSERT_TRUE(DeclareTiers(plexa, model));
    ASSERT_FALSE(DeclareTiers(plexa, model)) << "it has streams already";
    CStream* pLetters = plexa.pStream("letters");
    for (int i = 0; i < 100; ++i) {
        CToken* pToken = pLetters->CreateToken(tokens[static_cast<std::size_t>(i)].c_str());
        EXPECT_EQ(pToken->GetFieldValueIndex(0), i);
        EXPECT_STREQ(pToken->GetFieldValueString(1), i % 2 == 0 ? "yes" : "no");
        EXPECT_STREQ(pToken->GetFieldValueString(2), i % 2 == 0   ? kNoValue
                                                     : i % 4 == 1 ? "undefined"
                                                                  : "odd");
        pToken->ResetFieldValuesToDefault();
        EXPECT_EQ(pToken->GetFieldValueIndex(3), 0);
        CStream::DiscardStreamObj(pToken);
    }
    EXPECT_EQ(plexa.GetDefaultTimeStream(), plexa.pStream("time"));
    CToken* pCharacter = plexa.pStream(kTextTier)->CreateToken("8364");
    EXPECT_EQ(pCharacter->GetFieldValueIndex(0), 8364);
    CStream::DiscardStreamObj(pCharacter);
    EXPECT_TRUE(plexa.pStream(1)->pGetFirstStreamObj()->IsSynchronous(
        plexa.pStream(2)->pGetFirstStreamObj()));
}

TEST(DeclareTiers, RefusesWhatTheContainerWouldLeaveOut) {
    Model model;
    model.tiers.push_back(MakeTier("letters", RuleTier::Kind::plain, {"a", "b"}));
    std::vector<std::string> values;
    for (int i = 0; i < 30; ++i) values.push_back("v" + std::to_string(i));
    AddFeature(model.tiers[0], "full", values, {0, 1});
    CPlexa full(nullptr);
    EXPECT_TRUE(DeclareTiers(full, model));

    model.tiers[0].fields[1].valueOfToken[1] = -1;
    CPlexa withRest(nullptr);
    EXPECT_FALSE(DeclareTiers(withRest, model));

    model.tiers[0].fields.resize(1);
    model.tiers[0].name = std::string(51, 'x');
    CPlexa longName(nullptr);
    EXPECT_FALSE(DeclareTiers(longName, model));
}

}  // namespace
}  // namespace mlds_test
