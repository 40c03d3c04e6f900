// Tokens: values, derivation from names, texts, comparison, class tests, copies.
#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <functional>
#include <sstream>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

int Bits(float value) {
    return std::bit_cast<int>(value);
}

/// Letters, and whether they are vowels.
struct Letters : Tiers {
    Letters() : Tiers{{"s", "||", {"a", "e", "i", "p", "t"}}} {
        pStream = (*this)["s"];
        pVowel = pStream->AddField("vowel");
        pYes = pVowel->CreateFieldValueSet("yes");
        for (int name : {0, 1, 2}) pYes->AddIncludeValue(name);
        pNo = pVowel->CreateFieldValueSet("no");
        for (const char* name : {"p", "t"}) pNo->AddIncludeValue(name);
    }

    CStream* pStream;
    CField* pVowel;
    CFieldValueSet* pYes;
    CFieldValueSet* pNo;
};

TEST(Derivation, FollowsTheName) {
    Letters s;
    s.pStream->GetField(0)->CreateFieldValueSet("undef");  // field 0 itself is never derived
    CToken token(s.pStream, "e");
    EXPECT_EQ(token.GetFieldValueIndex("name"), 1);
    EXPECT_EQ(token.GetFieldValueInt("vowel"), 0);
    EXPECT_TRUE(token.IsItA("yes") && token.IsItA("any") && token.IsItA("e") && token.IsItA(1));
    token.SetFieldValue(0, 3);
    EXPECT_EQ(token.GetFieldValueInt(1), 1);
    EXPECT_TRUE(token.IsItA("no") && token.IsItA("vowel", "no"));
    EXPECT_FALSE(token.IsItA("yes") || token.IsItA("t") || token.IsItA("vowel", "p"));
    token.SetFieldValue("name", "a");
    token.SetFieldValue("name", "unknown");
    EXPECT_EQ(token.GetFieldValueInt(1), 0);
    token.SetFieldValue("vowel", 1);  // derives nothing
    EXPECT_STREQ(token.GetNameField(), "a");

    CToken unknown(s.pStream, "x");
    EXPECT_EQ(unknown.GetFieldValueIndex(0), -1);
    EXPECT_EQ(unknown.GetFieldValueIndex(1), 0);  // in no set
    EXPECT_EQ(unknown.GetNameField(), nullptr);
    EXPECT_FALSE(unknown.IsItA("x") || unknown.IsItA(""));
    EXPECT_TRUE(unknown.IsItA("name", "nothing"));  // both -1

    CToken plain(s.pStream);
    EXPECT_EQ(plain.GetFieldValueIndex(0), 0);
    s.pStream->GetField(0)->SetDefaultValue("p");
    plain.ResetFieldValuesToDefault();
    EXPECT_STREQ(plain.GetNameField(), "p");
    EXPECT_EQ(plain.GetFieldValueIndex(1), -1);  // its own default comes after the derivation
}

// Answers are remembered; whatever changes them must be noticed.
TEST(Derivation, NoticesChangedSets) {
    static int all[] = {-200, 2000};
    static const char* const fromEToP[] = {"e", "p"};
    const struct {
        std::function<void(Letters&)> change;
        const char* derived;  // for a, e, i, p, t, an unknown name and 128; 9 in no set
    } rows[] = {{[](Letters&) {}, "0001199"},
                {[](Letters& s) { s.pYes->AddIncludeValue("p"); }, "0000199"},
                {[](Letters& s) { s.pYes->AddIncludeValue(128); }, "0001190"},
                {[](Letters& s) { s.pYes->AddExcludeValue("a"); }, "9001199"},
                {[](Letters& s) { s.pNo->Clear(); }, "0009999"},
                {[](Letters& s) { s.pYes->SetIncludeRanges(fromEToP, 1); }, "0000199"},
                {[](Letters& s) { s.pYes->SetIncludeRanges(all, 1); }, "0000000"},
                {[](Letters& s) { s.pYes->SetExcludeRanges(all, 1); }, "9991199"},
                {[](Letters& s) { s.pYes->SetExcludeRanges(fromEToP, 1); }, "0991199"},
                {[](Letters& s) { s.pNo->SetName("undef"); }, "0001111"},
                {[](Letters& s) { s.pVowel->CreateFieldValueSet("undefined"); }, "0001122"},
                {[](Letters& s) { *s.pYes = *s.pNo; }, "9991199"}};
    for (const auto& row : rows) {
        Letters s;
        const auto derive = [&](int name) {
            CToken token(s.pStream);
            token.SetFieldValue(1, 9);
            token.SetFieldValue(0, name);
            return std::to_string(token.GetFieldValueIndex(1));
        };
        EXPECT_EQ(derive(1), "0");
        row.change(s);
        std::string derived;
        for (int name : {0, 1, 2, 3, 4, -1, 128}) derived += derive(name);
        EXPECT_EQ(derived, row.derived) << &row - rows;
    }
}

TEST(Derivation, DependsOnTheTypeOfTheName) {
    Letters s;
    CField* pName = s.pStream->GetField(0);
    const char* const list[] = {"a", "vowel", "77"};
    pName->SetDefaultValue(list, 1);
    s.pNo->AddIncludeValue('a');
    s.pNo->AddIncludeValue(-23);
    const struct {
        FieldValType type;
        const char* name;
        int value, derived;
    } rows[] = {{fvEnum, "a", 0, 77},  // the default of the name wins
                {fvInt, "3x", 3, 0},
                {fvChar, "abc", 'a', 1},
                {fvChar, "\xE9", -23, 1},
                {fvChar, "", 0, 0}};
    for (const auto& row : rows) {
        pName->SetFieldType(row.type);
        CToken token(s.pStream, row.name);
        EXPECT_EQ(token.GetFieldValueIndex(0), row.value) << row.name;
        EXPECT_EQ(token.GetFieldValueIndex(1), row.derived) << row.name;
    }
}

TEST(Derivation, AppliesDefaultsOfNames) {
    Letters s;
    s.pStream->AddField("n")->SetFieldType(fvInt);
    s.pStream->AddField("m")->SetFieldType(fvInt);
    const char* const list[] = {"?", "nowhere", "1", "a", "m", "5", "a", "m", "2.5"};
    s.pStream->GetField(0)->SetDefaultValue(list, 3);
    CToken a(s.pStream, "a");
    EXPECT_EQ(a.GetFieldValueIndex("m"), Bits(2.5f));  // the last one
    EXPECT_STREQ(a.GetFieldValueString("m"), std::to_string(Bits(2.5f)).c_str());
    // The float's tag went to the slot with the number of its entry, which is n's.
    EXPECT_STREQ(a.GetFieldValueString("n"), "0.");
    CToken e(s.pStream, "e");
    EXPECT_STREQ(e.GetFieldValueString("n"), "0");
    e.SetFieldValue(0, 0);
    e.SetFieldValue("m", Bits(2.5f));
    EXPECT_FALSE(e.TokenCompare(&a));  // values agree, tags do not
    EXPECT_TRUE(e.TokenFieldCompare(&a, "m") && e.TokenFieldCompare(&a, "unknown"));
    EXPECT_EQ(CToken(s.pStream, "x").GetFieldValueIndex("n"), 0);  // an entry with no target
}

TEST(Values, AreShownByType) {
    const std::string fourDigits =
        "7 7. -3 -3. 0 0. 1234 1234. -9999 -9999. 12345 1.235e+004 12344 1.234e+004 "
        "-12345 -1.235e+004 10000 1.e+004 12300 1.23e+004 99995 1.e+005 1000500 1.001e+006 "
        "1056964608 1.057e+009 2147483647 2.147e+009 -2147483648 -2.147e+009";
    const struct {
        FieldValType type;
        std::string shown;  // values and their texts
    } rows[] = {{fvEnum, fourDigits},      {fvFloat, fourDigits},
                {fvType3, fourDigits},     {fvBool, fourDigits},
                {fvType5, fourDigits},     {fvInt, "42 42 -2147483648 -2147483648"},
                {fvChar, "321 A -23 \xE9"}};
    for (const auto& row : rows) {
        Tiers t{{"s"}};
        CField* pField = t["s"]->AddField("value");
        pField->SetFieldType(row.type);
        CToken token(t["s"]);
        std::istringstream shown(row.shown);
        std::string text;
        for (int value = 0; shown >> value >> text;) {
            token.SetFieldValue("value", value);
            EXPECT_STREQ(token.GetFieldValueString("value"), text.c_str()) << row.type;
        }
        if (row.type == fvChar) continue;
        const char* const names[] = {"zero", "one"};
        pField->SetPossibleValues(names, 2);
        EXPECT_EQ(token.GetFieldValueString(1), nullptr);
        token.SetFieldValue(1, row.type == fvInt ? "1" : "one");
        EXPECT_STREQ(token.GetFieldValueString(1), "one");
    }
}

TEST(Values, AreReadByType) {
    const struct {
        FieldValType type;
        const char* text;
        int value;
    } rows[] = {{fvInt, "12x", 12}, {fvInt, " -7", -7}, {fvInt, "x", 0},     {fvChar, "\xE9z", -23},
                {fvChar, "", 0},    {fvEnum, "one", 5}, {fvFloat, "1.5", 5}, {fvBool, "1", 5}};
    for (const auto& row : rows) {
        Tiers t{{"s"}};
        t["s"]->AddField("value")->SetFieldType(row.type);
        CToken token(t["s"]);
        token.SetFieldValue(1, 5);
        token.SetFieldValue(1, row.text);
        EXPECT_EQ(token.GetFieldValueIndex(1), row.value) << row.text;
    }
}

TEST(TokenCompare, ComparesByType) {
    const int nan = Bits(std::nanf(""));
    const struct {
        int type, a, b;
        bool bEqual;
    } rows[] = {{fvFloat, Bits(0.f), Bits(-0.f), true},
                {fvFloat, nan, Bits(1.f), true},
                {fvFloat, Bits(1.f), Bits(1.5f), false},
                {fvInt, Bits(0.f), Bits(-0.f), false},
                {fvChar, -23, 233, false},
                {fvType5, 3, 3, true},
                {7, 3, 3, false}};
    for (const auto& row : rows) {
        Tiers t{{"s"}, {"other"}};
        t["s"]->AddField("value")->SetFieldType(static_cast<FieldValType>(row.type));
        CToken a(t["s"]), b(t["s"]), other(t["other"]);
        a.SetFieldValue(1, row.a);
        b.SetFieldValue(1, row.b);
        EXPECT_EQ(a.TokenCompare(&b), row.bEqual) << row.type << " " << row.a;
        EXPECT_EQ(b.TokenCompare(&a), row.bEqual) << row.type << " " << row.a;
        EXPECT_FALSE(a.TokenCompare(&other) || a.TokenCompare(nullptr));
    }
}

TEST(IsItA, TakesTheFirstFieldWithSuchASet) {
    Letters s;
    s.pVowel->CreateFieldValueSet("t");  // names of one character are never looked up
    CField* pLast = s.pStream->AddField("last");
    pLast->CreateFieldValueSet("undef");
    pLast->CreateFieldValueSet("yes");
    CToken token(s.pStream, "t");
    EXPECT_TRUE(token.IsItA("t") && token.IsItA("no") && token.IsItA("undef"));
    token.SetFieldValue(2, 1);
    EXPECT_FALSE(token.IsItA("yes"));
    EXPECT_TRUE(token.IsItA("last", "yes"));
    EXPECT_FALSE(token.IsItA("unknown", "yes") || token.IsItA("vowel", nullptr) ||
                 token.IsItA(nullptr, "yes") || token.IsItA(nullptr) ||
                 token.TestFieldValue("vowel", "no"));
}

TEST(Copies, ShareOrDuplicate) {
    Letters s;
    Fill(s.pStream, "||a|t||");
    CToken* pA = s.Token("s", 0);
    CToken duplicate(pA), shared(*pA), nothing(static_cast<CToken*>(nullptr));
    duplicate.SetFieldValue(0, 2);
    EXPECT_STREQ(pA->GetNameField(), "a");
    shared.SetFieldValue(0, 1);
    EXPECT_STREQ(pA->GetNameField(), "e");
    shared = duplicate;
    shared.SetFieldValue(0, 3);
    EXPECT_STREQ(duplicate.GetNameField(), "p");
    duplicate.TokenCopy(s.Token("s", 1));
    EXPECT_STREQ(shared.GetNameField(), "t");
    nothing.SetFieldValue(0, 1);
    nothing.TokenCopy(pA);
    duplicate.TokenCopy(nullptr);
    EXPECT_EQ(nothing.GetFieldValueIndex("name"), -1);
    EXPECT_FALSE(s.pStream->InsertStreamObj(&nothing, 2, s.At("s.0")));
    EXPECT_EQ(s.pStream->CreateToken(nullptr), nullptr);
    EXPECT_EQ(s.Picture("s"), "||e|t||");
    EXPECT_EQ(CheckStructure(s.plexa, {true, true, true}), "");

    // The other classes: nothing is freed twice, and what is left works.
    int bounds[] = {4, 4};
    s.pVowel->CreateFieldValueSet("late")->SetIncludeRanges(bounds, 1);
    {
        CFieldValueSet set(*s.pVowel->GetFieldValueSet("late")), own(s.pVowel, 0);
        own.SetIncludeRanges(bounds, 1);
        set = own;
        CField field(*s.pVowel), other(s.pStream);
        other = *s.pStream->GetField(0);
        EXPECT_TRUE(set.IsSetMember(4) && other.GetValueIndex("t") == 4);
        CPlexa plexa(s.plexa);
        CStream stream(*plexa.pStream("s"));
        EXPECT_STREQ(stream.GetStr(nullptr, nullptr, false), "et");
    }
    EXPECT_TRUE(s.pVowel->GetFieldValueSet("late")->IsSetMember(4));
    EXPECT_EQ(s.Picture("s"), "||e|t||");
}

TEST(Copies, KeepToTheFieldsOfTheirTime) {
    Letters s;
    CToken old(s.pStream, "a");
    s.pStream->AddField("late")->CreateFieldValueSet("undef");
    CToken young(s.pStream, "t");
    young.SetFieldValue("late", 4);
    old.SetFieldValue("late", 3);
    old.SetFieldValue("late", "text");
    old.SetFieldValue(0, 4);
    EXPECT_TRUE(old.GetFieldValueIndex("late") == -1 && !old.GetFieldValueString("late"));
    EXPECT_EQ(old.GetFieldValueIndex("vowel"), 1);
    EXPECT_FALSE(old.TokenCompare(&young) || young.TokenCompare(&old));
    EXPECT_FALSE(old.IsItA("undef") || old.IsItA("late", "undef"));
    old.SetFieldValue(0, 0);
    young.TokenCopy(&old);
    EXPECT_STREQ(young.GetNameField(), "a");
    EXPECT_EQ(young.GetFieldValueIndex("late"), 4);
    old.TokenCopy(&young);
    old.ResetFieldValuesToDefault();
    EXPECT_EQ(CToken(&old).GetFieldValueIndex(2), -1);
    for (int i : {-1, 3, INT_MAX, INT_MIN}) {
        young.SetFieldValue(i, 1);
        young.SetFieldValue(i, "text");
        EXPECT_TRUE(young.GetFieldValueIndex(i) == -1 && !young.GetFieldValueString(i));
    }
    young.SetFieldValue(nullptr, 1);
    young.SetFieldValue(0, nullptr);
    EXPECT_TRUE(young.GetFieldValueString(nullptr) == nullptr && young.IsItA("a"));
}

}  // namespace
