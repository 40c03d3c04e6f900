// Rule variables in tests, and moves between the streams.
#include "rules.h"

namespace {

using mlds_test::Fill;
using mlds_test::Rules;
using PointersTest = Rules;

TEST_F(PointersTest, PtrAndParentPtrFindABoundaryInTheRunOfMarks) {
    m_y = m_tiers.MarkAt("inp.2");
    Check({{"phone.1", Ptr(y), "phone.2"},
           {"phone.1", ParentPtr(y), "phone.2!"},
           {"phone.1", ParentPtr(y, 0, 0, 52), "phone.2!"},
           {"phone.1", ParentPtr(y, 0, AngleBrkt()), "phone.3!"},
           {"phone.0", Ptr(y), "no"},
           {"phone.1<", Ptr(y), "no"},
           {"phone.1<", ParentPtr(y), "no"},
           {"inp.1", Ptr(none), "no"},
           {"inp.1", Ptr(t), "no"},
           {"inp.1", Ptr(77), "no"}});
    EXPECT_TRUE(Test(ParentPtr(y)));
    m_y = m_tiers.MarkAt("word.1");
    Check({{"phone.2<", Ptr(y), "phone.1"}, {"phone.2<", ParentPtr(y), "phone.1!"}});
    m_list.SetFence("inp");
    Check({{"phone.2<", Ptr(y), "no"}, {"phone.2<", ParentPtr(y), "no"}});
}

TEST_F(PointersTest, TokStaysAndParentPtrStepsOver) {
    Check({{"inp.1", Tok(t, 255), "inp.1!"},
           {"inp.1", ParentPtr(t, 255), "inp.2!"},
           {"inp.1", Tok(t, 0, See('c')), "inp.2 c>"},
           {"inp.2<", ParentPtr(t, 0, See('c')), "inp.1 c<"},
           {"inp.0", Tok(t, 0), "no"},
           {"inp.0", ParentPtr(t), "no"},
           {"inp.0", Tok(u, 0), "no"},
           {"inp.0", ParentPtr(u), "no"},
           {"inp.0", Tok(y, 0), "no"}});
    // One field, or all.
    m_tiers["inp"]->AddField("stress");
    Fill(m_tiers["inp"], "||o||");
    m_tiers.Token("inp", 0)->SetFieldValue(1, 7);
    CStream::DiscardStreamObj(m_t);
    m_t = m_tiers["inp"]->CreateToken("o");
    Check(
        {{"inp.0", Tok(t, 0), "inp.0!"}, {"inp.0", Tok(t, 1), "no"}, {"inp.0", Tok(t, 255), "no"}});
    m_t->SetFieldValue(1, 7);
    Check({{"inp.0", Tok(t, 1), "inp.0!"}, {"inp.0", Tok(t, 255), "inp.0!"}});
}

// A rule deleted what a variable holds, or the host never set it: as long as nothing is done with
// the object, that does not matter, and it comes back as it was.
TEST_F(PointersTest, WhatAVariableHoldsIsLeftAloneUntilItIsUsed) {
    m_x = m_tiers.MarkAt("inp.4");  // no token follows
    m_y = reinterpret_cast<CSyncMark*>(std::uintptr_t{16});
    m_u = reinterpret_cast<CToken*>(std::uintptr_t{32});
    EXPECT_TRUE(Test(Adj(Ptr(x), Or(AssignPtr(y, Fail()), 0))));
    EXPECT_EQ(m_y, reinterpret_cast<CSyncMark*>(std::uintptr_t{16}));
    EXPECT_TRUE(m_list.IsDirty(y));
    EXPECT_TRUE(Test(Adj(Ptr(x), Not(Or(Tok(u, 255), Adj(ParentPtr(u), Fail()))))));
    EXPECT_TRUE(Test(Or(Not(Ptr(y)), Ptr(x)))) << "a position that nobody asks anything";
}

TEST_F(PointersTest, AssignPtrGivesBackTheBindingButNotTheFlag) {
    Check({{"inp.1", AssignPtr(y), "inp.1! y=inp.1"},
           {"inp.2", AssignPtr(y, Any()), "inp.3 y=inp.2"},
           {"phone.3", AssignPtr(y, Ptr(y)), "phone.3 y=phone.3"},  // sees the new binding
           {"inp.0", AssignPtr(y, Adj(Any(), Or(AssignPtr(y, Fail()), 0))), "inp.1! y=inp.0"},
           {"inp.1", AssignPtr(256 + y), "no"},
           {"inp.1", AssignPtr(t), "no"},
           {"inp.1", Or(AssignPtr(y, Fail()), 0), "inp.1"}});
    EXPECT_TRUE(m_list.IsDirty(y));
}

TEST_F(PointersTest, AssignTokLooksLeftInBothDirections) {
    Check({{"inp.1", AssignTok(t), "inp.1! t=h"},
           {"inp.1<", AssignTok(t), "inp.1! t=h"},
           {"inp.0", AssignTok(t), "no"},
           {"inp.3", AssignTok(t, Adj(Any(), AssignTok(t))), "inp.4! t=a"},
           {"inp.3", AssignTok(t, Adj(Any(), Or(AssignTok(t, Fail()), 0))), "inp.4! t=l"},
           {"inp.1", AssignTok(t, Tok(t, 0)), "no"},  // not the token from before
           {"inp.1", AssignTok(y), "no"},
           {"inp.1", Or(AssignTok(t, Fail()), 0), "inp.1"}});
    EXPECT_FALSE(m_list.IsDirty(t));
    m_list.SetFence("inp");
    Check({{"inp.4", AssignTok(t), "inp.4! t=a"}, {"inp.4<", AssignTok(t), "no"}});
}

TEST_F(PointersTest, ContextsIgnoreTheTruthOfTheirPattern) {
    Check({{"inp.1", RightContext(Int(1), Fail()), "phone.2"},
           {"inp.1", LeftContext(Int(1), Fail()), "phone.0"},
           {"inp.1<", RightContext(Int(1), See('a')), "phone.2 a<"},
           {"inp.0", LeftContext(Int(0), Unless('h')), "inp.1"},
           {"inp.0", RightContext(Int(0), AngleBrkt()), "inp.1!"},
           {"inp.0", RightContext(Int(9), Stay()), "no"}});
    // What the stream expression reads does not count here, but in a move.
    const auto expression = [&](int stream) { return Add(Int(stream), Mult(Field(), Int(0))); };
    Check({{"inp.0", RightContext(expression(0), Stay()), "inp.0"},
           {"inp.0", MoveRight(expression(0), Stay()), "inp.1"},
           {"inp.0", Plexa(expression(1), Stay()), "inp.0!"}});
}

TEST_F(PointersTest, MovesSlideOverARunOfMarks) {
    Check({
        {"phone.0", MoveRight(0, Any()), "phone.2"},
        {"phone.1<", MoveRight(0, See('a')), "phone.2 a<"},
        {"inp.2", MoveLeft(Int(1), Stay()), "phone.1"},
        {"inp.1", MoveLeft(Int(1), Stay()), "no"},
        {"inp.2", MoveLeft(Int(1), Fail()), "no"},
        {"inp.0", MoveLeft(0, Stay()), "inp.start"},
        {"inp.2", TimeMoveLeft(Stay()), "no"}  // no time stream yet
    });
    m_tiers.plexa.SetDefaultTimeStream(m_tiers["phone"]);
    Check({{"inp.2", TimeMoveLeft(Stay()), "phone.1"},
           {"inp.2", TimeMoveRight(Stay()), "no"},  // a token is next
           {"word.1", TimeMoveRight(Stay()), "phone.2"},
           {"word.1<", TimeMoveRight(Stay()), "phone.2"},
           {"inp.1", TimeMoveLeft(Stay()), "no"},
           {"inp.3<", TimeMoveLeft(Any()), "phone.1"},
           {"inp.2", TimeMoveLeft(Fail()), "no"}});
    m_list.SetFence("inp");
    Check({{"inp.2", TimeMoveLeft(Stay()), "no"}});
}

TEST_F(PointersTest, OnlySyncTestSaysTheEndWhereItFails) {
    Check({
        {"phone.1", AdjacencyTest(), "phone.2!"},
        {"phone.2<", AdjacencyTest(See('c')), "phone.1 c<"},
        {"phone.2", Or(AdjacencyTest(), 0), "phone.2"},
        {"phone.1", SyncTest(Int(0)), "phone.2!"},
        {"phone.1", SyncTest(Int(0), See('c')), "phone.2 c>"},
        {"phone.3", SyncTest(Int(0)), "no"},
        {"phone.3", Or(SyncTest(Int(0)), 0), "phone.3!"},
        {"phone.3", Or(SyncTest(Int(0), See('c')), 0), "phone.3"},
        {"phone.3", Or(SyncTest(0), 0), "phone.3"},
        {"inp.4", SyncTest(Int(9)), "no"}  // as far as the end of the stream
    });
    m_list.SetFence("inp");
    Check({{"phone.2<", SyncTest(Int(2)), "phone.1!"},  // over a fence
           {"phone.2<", AdjacencyTest(), "no"}});
}

TEST_F(PointersTest, PlexaCrossesAndComesBack) {
    Check({{"inp.0", Plexa(Int(1), AngleBrkt()), "inp.2!"},
           {"inp.0", Plexa(Int(1), AngleBrkt(), AngleBrkt(Is('l'))), "inp.3!"},
           {"inp.0", Plexa(Int(1), AngleBrkt(), See('c')), "inp.2 c>"},
           {"inp.4<", Plexa(Int(1), AngleBrkt(0, AngleBrkt())), "inp.2!"},
           {"inp.1", Plexa(Int(1), See('s')), "no"},
           {"phone.1", Plexa(Int(0), Stay()), "phone.2!"},
           {"inp.0", Plexa(Int(1), AngleBrkt(0, AngleBrkt())), "no"},  // no way back
           {"inp.0", Plexa(Int(1), Fail(), See('c')), "no"},
           {"inp.0", Plexa(0, See('s')), "no"},
           {"inp.0", Plexa(Int(9), See('s')), "no"}});
    m_list.SetFence("inp");
    Check({{"phone.2<", Plexa(Int(2), Stay()), "phone.1!"}});
}

}  // namespace
