// The field schema: possible values, defaults, field value sets, defaults of names.
#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <stdexcept>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

using Names = std::vector<const char*>;

/// A stream whose field "name" has the values a to e, and a second field.
struct Schema : Tiers {
    Schema() : Tiers{{"s", "||", {"a", "b", "c", "d", "e"}}} {
        pName = (*this)["s"]->GetField(0);
        pOther = (*this)["s"]->AddField("other");
    }
    /// The members of a set among -1 to 5, as text.
    static std::string Members(CFieldValueSet* pSet) {
        std::string members;
        for (int i = -1; i <= 5; ++i) {
            if (pSet->IsSetMember(i)) members += std::to_string(i);
        }
        return members;
    }
    static int Default(CField* pField) { return *static_cast<int*>(pField->GetDefaultValue()); }

    CField* pName;
    CField* pOther;
};

TEST(Field, TakesItsValuesOnce) {
    Schema s;
    CField* p = s.pOther;
    EXPECT_EQ(p->GetFieldType(), fvEnum);
    EXPECT_EQ(Schema::Default(p), -1);
    std::string text = "one";
    const char* values[] = {text.c_str(), "", "two", "one", nullptr};
    p->SetPossibleValues(nullptr, 1);
    p->SetPossibleValues(values, -1);
    p->SetPossibleValues(values, 5);
    EXPECT_TRUE(!p->GetPossibleValues() && p->GetValueIndex("one") == -1);
    p->SetPossibleValues(values, 4);
    p->SetPossibleValues(values + 2, 1);
    text = "???";
    EXPECT_EQ(p->GetNumPossibleValues(), 4);
    EXPECT_STREQ(p->GetPossibleValues(0), "one");
    EXPECT_TRUE(p->GetPossibleValues(-1) == nullptr && p->GetPossibleValues(4) == nullptr);
    const std::pair<const char*, int> indices[] = {
        {"one", 0}, {"", 1}, {"two", 2}, {"Two", -1}, {nullptr, -1}};
    for (const auto& [value, index] : indices) EXPECT_EQ(p->GetValueIndex(value), index);
    CField* pNone = s["s"]->AddField("none");
    pNone->SetPossibleValues(values, 0);
    pNone->SetPossibleValues(values, 4);
    EXPECT_EQ(pNone->GetNumPossibleValues(), 0);  // an empty list is a list
}

TEST(Field, NamesAndNumberAreLimited) {
    Schema s;
    CStream* p = s["s"];
    const std::string longest(50, 'f'), tooLong(51, 'f');
    for (const char* name : {tooLong.c_str(), static_cast<const char*>(nullptr)}) {
        s.pOther->SetFieldName(name);
        p->SetStreamName(name);
    }
    EXPECT_STREQ(s.pOther->GetFieldName(), "other");
    EXPECT_STREQ(p->GetStreamName(), "s");
    s.pOther->SetFieldName(longest.c_str());
    p->SetStreamName(longest.c_str());
    EXPECT_EQ(s[longest]->GetField(longest.c_str()), s.pOther);
    EXPECT_STREQ(p->AddField(tooLong.c_str())->GetFieldName(), "");
    while (p->GetNumFields() < 50) EXPECT_NE(p->AddField("same"), nullptr);
    EXPECT_TRUE(p->AddField("51st") == nullptr && p->AddField(nullptr) == nullptr);
    EXPECT_EQ(p->GetFieldIndex("same"), 3);
    EXPECT_TRUE(p->GetFieldIndex("Same") == -1 && p->GetFieldIndex(nullptr) == -1);
    EXPECT_TRUE(!p->GetField("unknown") && !p->GetField(-1) && !p->GetField(50));
}

TEST(Field, DefaultsFollowTheType) {
    Schema s;
    CField* p = s.pName;
    const std::pair<int, int> defaults[] = {
        {fvInt, 5},   {fvBool, 1}, {fvFloat, std::bit_cast<int>(.5f)}, {fvEnum, -1}, {fvType3, -1},
        {fvChar, -1}, {7, -1}};
    for (const auto& [type, value] : defaults) {
        p->SetFieldType(static_cast<FieldValType>(type));
        p->SetDefaultValue("nothing");  // -1 whatever the type
        p->SetDefaultValue(5);
        p->SetDefaultValue(true);
        p->SetDefaultValue(0.5f);
        EXPECT_EQ(Schema::Default(p), value) << type;
    }
    p->SetDefaultValue("d");
    p->SetDefaultValue(static_cast<const char*>(nullptr));
    EXPECT_EQ(Schema::Default(p), 3);
}

TEST(FieldValueSet, HoldsRangesValuesAndExclusions) {
    const struct {
        Names ranges, values, excludedRanges, excluded;
        const char* members;
    } rows[] = {{{}, {}, {}, {}, ""},
                {{"b", "d"}, {}, {}, {}, "123"},
                {{"d", "b"}, {}, {}, {}, ""},
                {{"?", "c"}, {}, {}, {}, "-1012"},
                {{nullptr, "a"}, {}, {}, {}, "-10"},
                {{"a", "a", "d", "e"}, {"b"}, {}, {}, "0134"},
                {{"a", "e"}, {}, {"b", "c"}, {"e"}, "03"},
                {{}, {}, {}, {"d"}, "-101245"},
                {{}, {}, {"a", "d"}, {}, "-145"},
                {{}, {"?"}, {}, {}, "-1"},
                {{}, {"b", "c"}, {}, {"c", "?"}, "1"}};
    const auto half = [](const Names& names) { return static_cast<int>(names.size() / 2); };
    for (const auto& row : rows) {
        Schema s;
        CFieldValueSet* p = s.pOther->CreateFieldValueSet("set");
        p->SetIncludeRanges(row.ranges.data(), half(row.ranges));
        p->SetExcludeRanges(row.excludedRanges.data(), half(row.excludedRanges));
        for (const char* value : row.values) p->AddIncludeValue(value);
        for (const char* value : row.excluded) p->AddExcludeValue(value);
        EXPECT_EQ(Schema::Members(p), row.members);
        p->SetName("undef");
        p->SetName("named");  // does not take it back
        EXPECT_EQ(Schema::Members(p), "-1012345");
    }
}

TEST(FieldValueSet, TakesRangesOnceUntilCleared) {
    Schema s;
    CFieldValueSet* p = s.pOther->CreateFieldValueSet("set");
    int some[] = {1, 2, 4, 4};
    int all[] = {-1, 5};
    p->SetIncludeRanges(static_cast<int*>(nullptr), 1);
    p->SetIncludeRanges(some, -1);
    p->SetIncludeRanges(some, 2);
    p->SetIncludeRanges(all, 1);
    EXPECT_EQ(Schema::Members(p), "124");
    p->SetExcludeRanges(some, 1);
    p->SetExcludeRanges(all, 1);
    EXPECT_EQ(Schema::Members(p), "4");
    p->Clear();
    for (int i = 0; i < 31; ++i) p->AddIncludeValue(i < 29 ? 0 : i - 28);  // ..., 0, 1, 2
    EXPECT_EQ(Schema::Members(p), "01");
    p->Clear();
    for (int i = 0; i < 31; ++i) p->AddExcludeValue(i < 29 ? 0 : i - 28);
    EXPECT_EQ(Schema::Members(p), "-12345");
}

// A field that was copied into another stream shares the sets, and follows what becomes of them.
TEST(FieldValueSet, IsSharedByCopiesOfItsField) {
    Schema s;
    s.pOther->CreateFieldValueSet("first");
    CFieldValueSet* pSet = s.pOther->CreateFieldValueSet("set");
    pSet->AddIncludeValue("a");
    CStream* pStream = s.plexa.pStream(s.plexa.AddStream("copied"));
    *pStream->AddField("name") = *s.pName;
    *pStream->AddField("other") = *s.pOther;
    const auto derived = [&](const char* name) {
        return std::pair(CToken(s["s"], name).GetFieldValueIndex(1),
                         CToken(pStream, name).GetFieldValueIndex(1));
    };
    EXPECT_EQ(derived("a"), std::pair(1, 1));
    EXPECT_EQ(derived("b"), std::pair(0, 0)) << "in no set";
    pSet->AddIncludeValue("b");
    EXPECT_EQ(derived("b"), std::pair(1, 1));
}

TEST(FieldValueSet, ListIsLimitedAndOverNames) {
    Schema s;
    CField* pField = s.pOther;
    const Names odd = {"x", "a"};
    pField->SetPossibleValues(odd.data(), 2);
    CFieldValueSet* p = pField->CreateFieldValueSet("set");
    p->AddIncludeValue("a");
    EXPECT_EQ(Schema::Members(p), "0");  // the index among names, not among the field's own values
    EXPECT_EQ(pField->CreateFieldValueSet(nullptr), nullptr);
    EXPECT_EQ(pField->CreateFieldValueSet(std::string(30, 'n').c_str()), nullptr);
    EXPECT_NE(pField->CreateFieldValueSet(std::string(29, 'n').c_str()), nullptr);
    for (int i = 2; i < 30; ++i) EXPECT_EQ(pField->CreateFieldValueSet("set")->GetIndex(), i);
    EXPECT_EQ(pField->CreateFieldValueSet("31st"), nullptr);
    EXPECT_EQ(pField->GetNumFieldValueSets(), 30);
    EXPECT_EQ(pField->GetFieldValueSet("set"), p);  // the first
    EXPECT_TRUE(!pField->GetFieldValueSet("Set") && !pField->GetFieldValueSet(-1) &&
                !pField->GetFieldValueSet(30) &&
                !pField->GetFieldValueSet(static_cast<const char*>(nullptr)));
}

TEST(NameDefaults, ReadTheirValues) {
    const auto bits = [](float value) { return std::bit_cast<int>(value); };
    const struct {
        int type;
        std::vector<std::pair<const char*, int>> texts;
    } rows[] = {{2, {{"0.5", bits(.5f)}, {"1.2.3", bits(1.2f)}, {"-.25x", bits(-.25f)}}},
                {1, {{"12", 12}, {"-3", -3}, {" +7", 7}, {"12abc", 12}, {"0x10", 0}}},
                {1, {{"", 0}, {"two", 1}, {"three", -1}, {"-", -1}}}};
    // Also where the host's numbers have commas, if such a locale is there.
    for (const char* locale : {"de_DE.UTF-8", "C"}) {
        std::setlocale(LC_ALL, locale);
        for (const auto& row : rows)
            for (const auto& [text, value] : row.texts) {
                Schema s;
                const Names values = {"one", "two"};
                s.pOther->SetPossibleValues(values.data(), 2);
                const Names list = {"c", "other", text, nullptr, "nowhere", "1"};
                s.pName->SetDefaultValue(list.data(), 2);
                s.pName->SetDefaultValue(list.data(), 1);  // once only
                ASSERT_EQ(s.pName->GetnumNSDV(), 2);
                NameSpcDefVal** ppEntries = s.pName->GetppNameSpecificDefaultValues();
                EXPECT_TRUE(ppEntries[0]->nNameValueIndex == 2 && ppEntries[0]->nFieldIndex == 1);
                EXPECT_TRUE(ppEntries[1]->nNameValueIndex == -1 && ppEntries[1]->nFieldIndex == -1);
                EXPECT_EQ(ppEntries[0]->nValueType, row.type) << text;
                EXPECT_EQ(ppEntries[0]->nValue, value) << text;
            }
    }
}

TEST(NameDefaults, ThrowAtUnreadableFloats) {
    for (const char* text : {".", "a.b", "..5"}) {
        Schema s;
        const Names list = {"a", "other", "1", "b", "other", text, "c", "other", "2"};
        try {
            s.pName->SetDefaultValue(list.data(), 3);
            ADD_FAILURE() << "read " << text;
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "sscanf problem");
        }
        EXPECT_EQ(s.pName->GetnumNSDV(), 3);
        EXPECT_EQ(CToken(s["s"], "a").GetFieldValueIndex(1), 1);  // by what was read before
        EXPECT_EQ(CToken(s["s"], "c").GetFieldValueIndex(1), 0);
    }
}

}  // namespace
