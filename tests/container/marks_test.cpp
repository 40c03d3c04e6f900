// Marks: one field set on every token between two marks. Durations: field 0 as time.
#include <gtest/gtest.h>

#include <climits>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

// The stream phone with the fields name, stress (an integer) and tone (high, low); the variable v
// holds its second token, which has the stress 5 and is low.
struct Scene {
    Scene() {
        pPhone->AddField("stress")->SetFieldType(fvInt);
        CField* pTone = pPhone->AddField("tone");
        pTone->SetFieldType(fvEnum);
        const char* tones[] = {"high", "low"};
        pTone->SetPossibleValues(tones, 2);
        Fill(pPhone, "||p|a|t||");  // with all the fields
        t.TieAll("phone.0=inp.0 phone.3=inp.1");
        v = t.Token("phone", 1);
        v->SetFieldValue("stress", 5);
        v->SetFieldValue("tone", "low");
        list.AddTokenPtr("v", &v);
        list.AddTokenPtr("none", &pNone);
        list.AddSyncMarkPtr("m", &pMark);
    }
    // Names, stress and tone: "p00 a51 t00" at first.
    std::string Values() {
        std::string text;
        for (int i = 0; i < 3; ++i) {
            CToken* p = t.Token("phone", i);
            text += (i > 0 ? " " : "") + std::string(p->GetNameField());
            text += std::to_string(p->GetFieldValueIndex(1));
            text += std::to_string(p->GetFieldValueIndex(2));
        }
        return text;
    }

    Tiers t{{"phone", "||p|a|t||", {"p", "a", "t"}}, {"inp", "||x||"}};
    CStream* pPhone = t["phone"];
    CSyncMark* pMark = nullptr;
    CToken *v = nullptr, *pNone = nullptr;
    CVarList list{&t.plexa};
};

TEST(Mark, ByFieldAndValue) {
    Scene s;
    CPlexa& c = s.t.plexa;
    CStream* pPhone = s.pPhone;
    CSyncMark *m0 = s.t.Mark("inp", 0), *m2 = s.t.Mark("phone", 2);
    EXPECT_TRUE(c.Mark(pPhone, "stress", 3, m0, m2));
    EXPECT_EQ(s.Values(), "p30 a31 t00");
    EXPECT_TRUE(c.Mark(pPhone, "stress", "12x", m2, s.t.Mark("inp", 1)));
    EXPECT_TRUE(c.Mark(pPhone, "tone", "none", m0, m2)) << "no possible value";
    EXPECT_EQ(s.Values(), "p3-1 a3-1 t120");
    EXPECT_TRUE(c.Mark(pPhone, "tone", "low", m2, m0)) << "ends with the stream";
    EXPECT_TRUE(c.Mark(pPhone, "nosuch", 3, m0, m2)) << "changes nothing";
    EXPECT_TRUE(c.Mark(pPhone, "stress", 9, m2, m2)) << "nothing between";
    const std::string before = s.Values();
    EXPECT_EQ(before, "p3-1 a3-1 t121");
    EXPECT_FALSE(c.Mark(pPhone, "nosuch", "3", m0, m2));
    EXPECT_FALSE(c.Mark(pPhone, "stress", 4, nullptr, m2));
    EXPECT_FALSE(c.Mark(s.t["inp"], "name", 4, m0, m2)) << "no counterpart";
    EXPECT_FALSE(c.Mark(nullptr, "stress", 4, m0, m2));
    EXPECT_FALSE(c.Mark(pPhone, nullptr, 4, m0, m2));
    EXPECT_FALSE(c.Mark(pPhone, "stress", static_cast<const char*>(nullptr), m0, m2));
    EXPECT_EQ(s.Values(), before);
}

TEST(Mark, WithNoTextIsWithNoValue) {
    Tiers t{{"p", "||a||", {"a", ""}}};
    CToken* v = t["p"]->CreateToken("nosuch");  // its name has no text
    CVarList list(&t.plexa);
    list.AddTokenPtr("v", &v);
    EXPECT_TRUE(t.plexa.Mark(t["p"], "<$v.name>", t.Mark("p", 0), t.Mark("p", 1)));
    EXPECT_EQ(t.Token("p", 0)->GetFieldValueIndex(0), -1);
    CStream::DiscardStreamObj(v);
}

struct Row {
    const char* text;
    bool result = false;
    const char* values = "p00 a51 t00";  // as at first
};

// The first two tokens, marked with the text.
template <typename Mark>
void ExpectMarked(std::initializer_list<Row> rows, Mark mark) {
    for (const Row& row : rows) {
        Scene s;
        EXPECT_EQ(mark(s, row.text, s.t.Mark("phone", 2)), row.result) << row.text;
        EXPECT_EQ(s.Values(), row.values) << row.text;
    }
}

TEST(Mark, ByAListOfItems) {
    const std::string long20(20, 'x'), long52(52, 'v');
    const std::string longParts[] = {
        "<" + long20 + ">", "<stress:1 " + long20 + ":1>", "<stress:1 stress:" + long20 + ">",
        "<stress:1 $v." + long20 + ">", "<stress:1 $" + long52 + ".a>"};
    ExpectMarked(
        {{"<stress:1>", true, "p10 a11 t00"},
         {"  < stress:  '12' tone:low  > [", true, "p121 a121 t00"},
         {"<stress:1]", true, "p10 a11 t00"},
         {"<stress:1 low}", true, "p11 a11 t00"},
         {"<name:a>", true, "a00 a51 t00"},
         {"<stress:7 stress:>", true, "p00 a01 t00"},  // no text is the number 0 ...
         {"<tone:>", true, "p0-1 a5-1 t00"},           // ... and no possible value
         {"<low>", true, "p01 a51 t00"},
         {"<t>", true, "t00 t51 t00"},
         {"<nosuchvalue>", true},
         {"<>", true},
         {"<$v.stress>", true, "p50 a51 t00"},
         {"<stress:$v.tone>", true, "p00 a01 t00"},  // "low" as a number
         {"<tone: $v.tone stress:2>", true, "p21 a21 t00"},
         {"<low$v.stress>", true, "p00 a51 t00"},     // a word reaches up to a space
         {"<low $v.stress>", true, "p0-1 a5-1 t00"},  // one item: the variable's value counts
         {"<stress:3 $nosuch.tone>", true, "p30 a31 t00"},
         // Up to a variable without a point the list holds.
         {"<stress:1 low $v stress>", false, "p10 a11 t00"},
         {"<$v stress>"},
         {"name:a"},
         {""},
         {"<"},
         {"<stress:1"},
         {"<stress:1 "},
         {"<stress:1 $v.stress"},
         {"<stress:'1"},
         {"<stress:1 nosuch:2>"},
         {"<stress:1 $v.nosuch>"},
         {"<stress:1 stress:$none.stress>"},
         {"<stress:1 stress:$m.stress>"},
         {"<$nosuch.tone>"},
         {"<stress:1 ]low>"},
         {longParts[0].c_str()},
         {longParts[1].c_str()},
         {longParts[2].c_str()},
         {longParts[3].c_str()},
         {longParts[4].c_str()}},
        [](Scene& s, const char* text, CSyncMark* pRight) {
            return s.t.plexa.Mark(s.pPhone, text, s.t.Mark("phone", 0), pRight);
        });
    Scene s;
    EXPECT_FALSE(s.t.plexa.Mark(s.pPhone, nullptr, s.pMark, s.pMark));
    EXPECT_FALSE(s.t.plexa.Mark(nullptr, "<low>", s.pMark, s.pMark));
    EXPECT_TRUE(s.t.plexa.Mark(s.pPhone, "<low>", nullptr, s.pMark)) << "each item fails by itself";
}

TEST(Mark, ByAListWithItsStream) {
    const std::string long51 = "%" + std::string(51, 'x') + " <low>";
    ExpectMarked({{"[<stress:1>]", true, "p10 a11 t00"},
                  {" [ <low>", true, "p01 a51 t00"},
                  {"%phone <low>", true, "p01 a51 t00"},
                  {"{%phone<low>", true},  // no stream: a name reaches up to a space
                  {"{ %phone <low>}", true, "p01 a51 t00"},
                  {"%nosuchstream <a:b>", true},
                  {"{<nosuch:1>}"},
                  {"[<nosuch:1>]"},
                  {"[low]"},
                  {"x"},
                  {"  "},
                  {long51.c_str()}},
                 [](Scene& s, const char* text, CSyncMark* pRight) {
                     return s.t.plexa.Mark(text, s.t.Mark("phone", 0), pRight);
                 });
    // A stream may have no name at all.
    Tiers t{{"", "||a||"}};
    t[""]->AddField("stress")->SetFieldType(fvInt);
    Fill(t[""], "||a||");
    EXPECT_TRUE(t.plexa.Mark("% <stress:7>", t.Mark("", 0), t.Mark("", 1)));
    EXPECT_EQ(t.Token("", 0)->GetFieldValueIndex(1), 7);
}

// The stream time, of which every token is as long as its name says, tied at its ends.
struct Times {
    explicit Times(std::initializer_list<int> lengths) {
        pTime->GetField(0)->SetFieldType(fvInt);
        std::string text;
        for (std::size_t i = 0; i < lengths.size(); ++i) text += "0 ";
        CSyncMark* pEnds[] = {t.plexa.CreateSyncMark(pTime), t.plexa.CreateSyncMark(pTime)};
        pTime->InsertStreamObj(pEnds[0], t.First("time"), t.Last("time"));
        pTime->InsertStreamObj(pEnds[1], pEnds[0], t.Last("time"));
        t.plexa.InsertString(pTime, text.c_str(), pEnds[0], pEnds[1]);
        t.plexa.SetDefaultTimeStream(pTime);
        left = t.Mark("inp", 0);
        right = t.Mark("inp", 1);
        int k = 0;
        for (const int n : lengths) t.Token("time", k++)->SetFieldValue(0, n);
        t.TieAll("time.0=inp.0 time." + std::to_string(lengths.size()) + "=inp.1");
    }
    CSyncMark* Inner(int k) { return t.Mark("time", k); }
    std::string Lengths() { return t.Picture("time"); }

    Tiers t{{"time"}, {"inp", "||x||"}};
    CStream* pTime = t["time"];
    CSyncMark *left = nullptr, *right = nullptr;
};

TEST(Duration, IsASumBetweenOffsets) {
    Times s{100, 50, 7};
    CPlexa& c = s.t.plexa;
    CSyncMark *l = s.left, *r = s.Inner(2);
    ASSERT_EQ(s.Lengths(), "||100|50|7||");
    for (const int all : {c.Duration(l, r), c.Duration(s.pTime, l, r), c.Duration("time", l, r)}) {
        EXPECT_EQ(all, 150);
    }
    for (const int n :
         {c.Duration(l, 5, r), c.Duration(s.pTime, l, 5, r), c.Duration("time", l, 5, r)}) {
        EXPECT_EQ(n, 145);
    }
    for (const int n :
         {c.Duration(l, r, 3), c.Duration(s.pTime, l, r, 3), c.Duration("time", l, r, 3)}) {
        EXPECT_EQ(n, 153);
    }
    for (const int n : {c.Duration(l, 5, r, 3), c.Duration(s.pTime, l, 5, r, 3),
                        c.Duration("time", l, 5, r, 3)}) {
        EXPECT_EQ(n, 148);
    }
    EXPECT_EQ(c.Duration(l, 5, l, 3), -2);
    EXPECT_EQ(c.Duration(l, s.right), 157);
    EXPECT_EQ(c.Duration(r, l), -1) << "not in order";
    EXPECT_EQ(c.Duration("inp", l, r), -1) << "no time";
    EXPECT_EQ(c.Duration("nosuch", l, r), -1);
    EXPECT_EQ(c.Duration(nullptr, r, 9), 0);
    CSyncMark* pLone = c.CreateSyncMark(s.pTime);
    EXPECT_EQ(c.Duration(s.pTime, l, 4, s.t.First("inp"), 9), -1) << "the start lies left";
    EXPECT_EQ(c.Duration(l, pLone, 9), 0) << "no counterpart";
    CStream::DiscardStreamObj(pLone);
    c.SetDefaultTimeStream(nullptr);
    EXPECT_EQ(c.Duration(l, r), -1);
    EXPECT_FALSE(c.SetDuration(l, r, 20));
    Times wrapping{2147483647, 2147483647};
    EXPECT_EQ(wrapping.t.plexa.Duration(wrapping.left, wrapping.right), -2);
}

TEST(SetDuration, ScalesByThousandthsAndCarries) {
    const struct {
        std::initializer_list<int> lengths;
        int newDuration;
        const char* after;  // null: refused
    } rows[] = {{{100, 100, 100}, 200, "||67|67|66||"},
                {{10, 30}, 80, "||20|60||"},
                {{1, 1, 1, 1}, 3, "||1|1|1|0||"},
                {{7, 11, 13}, 62, "||14|22|26||"},
                {{100, 50}, 0, "||0|0||"},
                {{100, 50}, -75, "||-50|-25||"},
                {{3, 3}, -4, "||-1|-1||"},
                {{0, 0}, 10, nullptr},
                {{5, -5}, 10, nullptr},
                {{100}, 2147484, nullptr},  // times 1000 is too much
                {{100}, -2147484, nullptr},
                {{100}, 2147483, "||2147483||"},
                {{3000000, -2999999}, 2, nullptr},  // a token would overflow
                {{1073741824, -1073740824}, 2, nullptr},
                {{1073741823, -1073740823}, 2, "||2147484|-2147481||"},
                {{INT_MAX, INT_MIN, 1001}, 1, "||2147484|-2147483|1||"}};
    for (const auto& row : rows) {
        Times s(row.lengths);
        const std::string before = s.Lengths();
        EXPECT_EQ(s.t.plexa.SetDuration(s.left, s.right, row.newDuration), row.after != nullptr);
        EXPECT_EQ(s.Lengths(), row.after != nullptr ? row.after : before) << row.newDuration;
    }
    Times s{100, 50, 7};
    CPlexa& c = s.t.plexa;
    EXPECT_TRUE(c.SetDuration(s.pTime, s.Inner(1), s.right, 114));
    EXPECT_FALSE(c.SetDuration(s.pTime, s.right, s.left, 10));
    EXPECT_FALSE(c.SetDuration(s.pTime, s.left, s.left, 10)) << "nothing to scale";
    EXPECT_FALSE(c.SetDuration(s.t["inp"], s.left, s.right, 10));
    EXPECT_FALSE(c.SetDuration(nullptr, s.left, s.right, 10));
    EXPECT_FALSE(c.SetDuration(s.left, nullptr, 10));
    EXPECT_EQ(s.Lengths(), "||100|100|14||");
}

}  // namespace
