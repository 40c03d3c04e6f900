// What a container says of what it refused.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/logcapture.h"
#include "support/tiers.h"

using namespace mlds_test;
using testing::HasSubstr;

namespace {

struct Scene {
    Tiers t{{"phone", "||a|b||"}, {"inp", "||x||"}, {"digits"}};
    CPlexa& plexa = t.plexa;
    CStream* pPhone = t["phone"];
    CSyncMark *pLeft = t.Mark("phone", 0), *pRight = t.Mark("phone", 2);
    CSyncMark* pNone = nullptr;
    CToken* pNoToken = nullptr;
    CVarList list{&plexa};

    Scene() {
        pPhone->AddField("stress")->SetFieldType(fvInt);
        t["digits"]->GetField(0)->SetFieldType(fvInt);
        list.AddSyncMarkPtr("m", &pNone);
        list.AddTokenPtr("v", &pNoToken);
    }
};

TEST(LastError, SaysWhichPartOfATextWasWrong) {
    struct Row {
        const char* text;
        const char* error;
    };
    for (const Row& row : {
             Row{"a", "character 1: a text begins with \"[\", \"{\" or \"%\" and a stream's name"},
             Row{"  [ab 'cd", "character 7: a quote is not closed"},
             Row{"[a < b stress:1", "character 4: a field list is not closed"},
             Row{"[a <b stress:12345678901234567890123456789012>",
                 "character 4: a field or its value is too long"},
             Row{"[ 'abcdefghijklmnopqrst'", "character 3: a name is too long"},
             Row{"[a %fone b]", "character 4: there is no stream \"fone\""},
             Row{"[$w]", "character 2: there is no variable \"w\""},
             Row{"[a $v]", "character 4: the variable \"v\" holds no token"},
             Row{"[a $m]", "character 4: the variable \"m\" holds no token"},
             Row{"[a !^v b]", "character 4: the variable \"v\" is for a token, not for a mark"},
             Row{"%digits 12 x", "character 12: a name of this stream is a number"},
             Row{"%fone a", "there is no stream \"fone\""},
         }) {
        Scene s;
        const bool bLenient = std::string(row.text).substr(0, 5) == "%fone";
        EXPECT_EQ(s.plexa.InsertString(row.text, s.pLeft, s.pRight), bLenient) << row.text;
        EXPECT_STREQ(s.plexa.LastError(), row.error) << row.text;
        EXPECT_EQ(s.t.Picture("phone"), "||a|b||");
        ASSERT_TRUE(s.plexa.InsertString("[c", s.pLeft, s.pRight));
        EXPECT_STREQ(s.plexa.LastError(), "") << "of the call before";
    }
    for (const Row& row : {
             Row{"[name:a]", "character 2: a list begins with \"<\""},
             Row{"[<stress:1", "character 11: a list is not closed, or a part of it is too long"},
             Row{"[<stress:1 strss:2>]", "character 12: the stream has no field \"strss\""},
             Row{"[<stress:1 $v.stress>]", "character 13: the variable \"v\" holds no token"},
             Row{"[<stress:1 $v stress>]",
                 "character 13: the variable \"v\" is not followed by \".\" and a field"},
         }) {
        Scene s;
        EXPECT_FALSE(s.plexa.Mark(row.text, s.pLeft, s.pRight)) << row.text;
        EXPECT_STREQ(s.plexa.LastError(), row.error) << row.text;
    }
}

TEST(LastError, SaysWhyAnEditWasRefused) {
    Scene s;
    CPlexa& c = s.plexa;
    const auto error = [&](bool bDone) {
        return (bDone ? "done: " : "") + std::string(c.LastError());
    };
    CToken* pToken = s.pPhone->CreateToken("c");
    CSyncMark* pStart = s.t.First("phone");
    EXPECT_EQ(error(c.InsertString(s.pPhone, "c", s.pRight, s.pLeft)),
              "the right mark does not lie right of the left one");
    Fill(s.pPhone, "||a|b||");
    s.pLeft = s.t.Mark("phone", 0);
    s.pRight = s.t.Mark("phone", 2);
    EXPECT_EQ(error(c.InsertString(s.pPhone, "c", pStart, s.pLeft)),
              "character 1: the stream has no place for \"c\"");
    EXPECT_EQ(error(c.InsertString(s.pPhone, "c", nullptr, nullptr)),
              "character 1: a token needs a mark to stand beside");
    EXPECT_EQ(error(c.InsertString(s.pPhone, "c", s.t.Mark("inp", 0), nullptr)),
              "a mark has no counterpart in the stream, and tokens leave the place for one open");
    EXPECT_EQ(error(c.InsertStreamObject(s.pPhone, pStart, s.pLeft, pToken)),
              "done: the stream has no place for the object there");
    EXPECT_EQ(error(c.InsertStreamObject(s.pPhone, s.pLeft, s.pRight, pToken, ilAtLeft)),
              "done: the stream has no place for the object there");
    EXPECT_EQ(error(c.InsertStreamObject(s.pPhone, s.pLeft, nullptr, nullptr)),
              "the object is null, linked already, or belongs to another container");
    EXPECT_EQ(error(c.DeleteStreamSyncMark(s.pPhone, s.t.Mark("phone", 1))),
              "two tokens would touch");
    EXPECT_EQ(error(c.DeleteStreamItems(s.pPhone, s.pLeft, nullptr, bsmKeepBoth)),
              "a mark is null, belongs to another container or is in no stream");
    EXPECT_EQ(error(c.SetDuration(s.pPhone, s.pLeft, s.pRight, 5)),
              "the stream is none of this container whose field 0 is a number");
    EXPECT_EQ(error(c.Mark(s.pPhone, "strss", 1, s.pLeft, s.pRight)),
              "done: the stream has no field \"strss\"");
    CStreamObj* list[] = {pToken};
    EXPECT_EQ(error(c.InsertStreamObjects(s.pPhone, pStart, s.pLeft, list, 1)),
              "done: the stream has no place for the object there");
    EXPECT_EQ(error(c.ProjectSyncMark(nullptr, 0, s.pLeft, nullptr, sdLeft) != nullptr),
              "there is no stream in the list");
    CStream* streams[] = {s.pPhone};
    EXPECT_EQ(error(c.ProjectSyncMark(streams, 1, nullptr, nullptr, sdLeft) != nullptr),
              "a mark is null, belongs to another container or is in no stream");
    EXPECT_EQ(error(c.DeleteStreamItems(s.pPhone, s.pLeft, s.pRight, bsmKeepBoth)), "done: ");
    CStream::DiscardStreamObj(pToken);
}

TEST(LastError, IsLoggedForDebugging) {
    Scene s;
    LogCapture log(4);
    EXPECT_FALSE(s.plexa.InsertString("[a $v]", s.pLeft, s.pRight));
    // Once, by the call that the host made.
    EXPECT_THAT(log.Take(), testing::ElementsAre(testing::AllOf(
                                HasSubstr("CPlexa::InsertString(char * text, CSyncMark * pLeft"),
                                HasSubstr("character 4: the variable \"v\" holds no token"))));
}

}  // namespace
