// Objects that left a chain and live on: what may be scanned from them, and for how long.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

using Held = std::unique_ptr<CStreamObj, void (*)(CStreamObj*)>;

Held Remove(CStream* pStream, CStreamObj* p) {
    return {pStream->RemoveStreamObj(p, false), &CStream::DiscardStreamObj};
}

std::string Around(CStreamObj* p) {
    std::string text;
    for (CStreamObj* pFound : {static_cast<CStreamObj*>(p->GetPrevSyncMark()),
                               static_cast<CStreamObj*>(p->GetPrevToken()),
                               static_cast<CStreamObj*>(p->GetNextSyncMark()),
                               static_cast<CStreamObj*>(p->GetNextToken()),
                               p->GetAdjacentStreamObj(sdRight, otToken, true)}) {
        text += Where(pFound) + " ";
    }
    return text;
}

TEST(Absence, ALoopMayRemoveWhereItStands) {
    Tiers t{{"p", "||a|b|c|d||"}};
    std::vector<Held> held;
    std::string names;
    for (CToken* p = t.First("p")->GetNextToken(); p != nullptr; p = p->GetNextToken()) {
        names += p->GetNameField();
        held.push_back(Remove(t["p"], p));
    }
    EXPECT_EQ(names, "abcd");
    EXPECT_EQ(t.Picture("p"), "|||||||");
}

TEST(Absence, ScansStopOnceSomethingOfTheStreamIsDestroyed) {
    for (const char* gone : {"p.4", "p[1]", "p.1", "q.0", "a loose mark"}) {
        SCOPED_TRACE(gone);
        Tiers t{{"p", "||a|b|c|d||"}, {"q", "||x||"}};
        CSyncMark* pLoose = t.plexa.CreateSyncMark(t["p"]);  // was never in the chain
        const Held b = Remove(t["p"], t.Token("p", 1));
        const std::string before = "p.1 p[0] p.2 p[1] p[1] ";
        ASSERT_EQ(Around(b.get()), before);
        const bool bOfStream = gone[0] == 'p';
        if (bOfStream || gone[0] == 'q') {
            CStreamObj* p = t.At(gone);
            p->GetStream()->RemoveStreamObj(p, true);
        }
        CStream::DiscardStreamObj(pLoose);
        EXPECT_EQ(Around(b.get()), bOfStream ? "null null null null null " : before);
        // The raw links stay as they were, for comparing.
        EXPECT_NE(b->GetNextStreamObj(), nullptr);
        // Back in the stream, links are true again.
        ASSERT_TRUE(t["p"]->InsertStreamObj(b.get(), 2, t.Mark("p", 0)));
        EXPECT_EQ(Around(b.get()).substr(0, 3), "p.0");
        const_cast<Held&>(b).release();
    }
}

TEST(Absence, FencesHoldOnlyScansThatAsk) {
    Tiers t{{"p", "||a|b||"}, {"q", "|||"}};
    t.TieAll("p.1=q.0");
    t.plexa.Fence("q", true);
    const Held a = Remove(t["p"], t.Token("p", 0));
    EXPECT_EQ(a->GetNextToken(), t.Token("p", 0));
    EXPECT_EQ(a->GetAdjacentStreamObj(sdRight, otToken, true), nullptr);
    // The same by way of a mark that was taken out itself, and with it out of its group.
    const Held mark = Remove(t["p"], t.Mark("p", 1));
    EXPECT_EQ(a->GetAdjacentStreamObj(sdRight, otToken, true), t.Token("p", 0));
}

// What was held outside counts when it is destroyed; so does a neighbour of another stream.
TEST(Absence, EveryEndThatLinksCouldLeadToCounts) {
    Tiers t{{"p", "||a|b|c||"}, {"q", "||x||"}};
    Held b = Remove(t["p"], t.Token("p", 1));
    Held mark = Remove(t["p"], t.Mark("p", 2));
    const Held c = Remove(t["p"], t.Token("p", 1));
    EXPECT_EQ(b->GetNextSyncMark(), mark.get());
    EXPECT_EQ(b->GetNextToken(), c.get()) << "by way of the mark, which was taken out in between";
    mark.reset();
    EXPECT_EQ(b->GetNextSyncMark(), nullptr);

    CToken* pGuest = t["q"]->CreateToken("g");
    ASSERT_TRUE(t["p"]->InsertStreamObj(pGuest, 2, t.Mark("p", 0)));  // ||ga|...
    Held a = Remove(t["p"], t.Token("p", 1));
    EXPECT_EQ(a->GetPrevToken(), pGuest);
    t["p"]->RemoveStreamObj(pGuest, true);
    EXPECT_EQ(a->GetPrevToken(), nullptr);
    EXPECT_EQ(a->GetNextToken(), nullptr);
}

// Tokens that touch: what lies in front of the next token is no mark then.
TEST(Absence, MovesFromARemovedMarkDoNotTakeATokenForAMark) {
    Tiers t{{"p", "||a|b||"}};
    CStream* p = t["p"];
    CSyncMark* pMark = t.Mark("p", 1);
    const Held held = Remove(p, pMark);
    EXPECT_EQ(pMark->UptoTokens(sdRight, 0), nullptr) << "a touches b now";
    EXPECT_EQ(pMark->OverTokens(sdRight, 1), t.Mark("p", 1));
    EXPECT_EQ(pMark->BySyncMarks(sdLeft), t.Mark("p", 0));
    EXPECT_TRUE(t.plexa.CSMSearch(pMark, t.Mark("p", 1), sdRight));
    EXPECT_FALSE(t.plexa.CSMSearch(pMark, t.Mark("p", 0), sdRight));
}

TEST(Absence, ObjectsMayOutliveTheirStreams) {
    std::vector<Held> held;
    {
        Tiers t{{"p", "||a|b|c|d||"}, {"q", "||x||"}};
        held.push_back(Remove(t["p"], t.Token("p", 0)));
        held.push_back(Remove(t["p"], t.Mark("p", 1)));
        CStreamObj *pFirst = nullptr, *pLast = nullptr;
        ASSERT_TRUE(
            t["p"]->ExciseSection(t.Mark("p", 1), t.Mark("p", 3), &pFirst, &pLast, bsmKeepBoth));
        for (CStreamObj* p = pFirst; p != nullptr; p = p->GetNextStreamObj()) {
            held.emplace_back(p, &CStream::DiscardStreamObj);
        }
    }
    CToken* pToken = static_cast<CToken*>(held[0].get());
    for (const Held& p : held) {
        CStream* pShell = p->GetStream();
        EXPECT_EQ(pShell->pGetStreamPlexa(), nullptr) << "the stream is but a shell";
        EXPECT_STREQ(pShell->GetStr(nullptr, nullptr, true), "");
        EXPECT_FALSE(pShell->InsertStreamObj(p.get(), nullptr, held[0].get()));
        EXPECT_EQ(pShell->CreateToken("a"), nullptr);
        pShell->StreamReset();
        p->LinkBetween(held[2].get(), held[3].get());
        p->GetAdjacentStreamObj(sdRight, otSyncMark, true);
    }
    EXPECT_EQ(pToken->GetNextToken(), nullptr);
    EXPECT_EQ(pToken->GetNameField(), nullptr);
    pToken->SetFieldValue(0, 1);
    pToken->SetFieldValue(0, "a");
    EXPECT_FALSE(pToken->IsItA("vowel"));
    // In the cut-out chain the links stay true, and what leaves it leads nowhere.
    held[3]->UnLink();
    EXPECT_EQ(held[3]->GetNextSyncMark(), nullptr);
    while (!held.empty()) held.pop_back();
}

// A token of q between marks of p, and what its end means to objects of p that were taken out.
TEST(Absence, StrangersInTheChainAreAskedForTheirOwnLinks) {
    for (const bool bRight : {false, true}) {
        Tiers t{{"p", "|||||"}, {"q"}};
        CToken* pStranger = t["q"]->CreateToken("x");
        ASSERT_TRUE(t["p"]->InsertStreamObj(pStranger, 2, t.Mark("p", 1)));
        CSyncMark* pMark = t.Mark("p", 1);
        const Held mark = Remove(t["p"], pMark);
        CSyncMark* pBeside = t.plexa.CreateSyncMark(t["q"]);
        ASSERT_TRUE(t["p"]->InsertStreamObj(pBeside, bRight ? 2 : 3, pStranger));
        const Held stranger = Remove(t["p"], pStranger);
        t["p"]->RemoveStreamObj(pBeside, true);
        EXPECT_EQ(pMark->GetNextToken(), pStranger);
        EXPECT_EQ(bRight ? pMark->OverTokens(sdRight, 1) : pMark->UptoTokens(sdRight, 0), nullptr);
    }
}

// A mark of q linked into what was cut out of p comes back with it, and both number what is theirs.
TEST(Absence, StrangersComeBackWithTheChain) {
    Tiers t{{"p", "||a|b||"}, {"q"}};
    for (int i = 0; i < 80; ++i) {
        t["q"]->InsertStreamObj(t.plexa.CreateSyncMark(t["q"]), 2, t.First("q"));
    }
    CSyncMark *m1 = t.Mark("p", 0), *m2 = t.Mark("p", 1);
    CStreamObj *pFirst = nullptr, *pLast = nullptr;
    ASSERT_TRUE(t["p"]->ExciseSection(m1, t.Mark("p", 2), &pFirst, &pLast, bsmKeepBoth));
    CSyncMark* pStranger = t.plexa.CreateSyncMark(t["q"]);
    pStranger->LinkBetween(pFirst, m2);
    ASSERT_TRUE(t["p"]->InsertSection(pFirst, pLast, &m1, nullptr));
    for (CStreamObj* p = m1; p->GetNextStreamObj() != nullptr; p = p->GetNextStreamObj()) {
        EXPECT_LT(p->GetOrderIndex(), p->GetNextStreamObj()->GetOrderIndex());
    }
    t["p"]->RemoveStreamObj(pStranger, true);
    t["q"]->Renumber();
    EXPECT_EQ(t.Mark("q", 0)->GetOrderIndex(), 0xFFFFFFFFu / (81 + 10)) << "80 marks and the end";
}

TEST(Absence, StripsNothingAtMarksThatAreNotInTheStream) {
    Tiers t{{"p", "|||"}, {"q"}};
    CSyncMark* pGuest = t.plexa.CreateSyncMark(t["q"]);
    ASSERT_TRUE(t["p"]->InsertStreamObj(pGuest, 2, t.Mark("p", 0)));
    ASSERT_TRUE(t["p"]->InsertStreamObj(t.plexa.CreateSyncMark(t["p"]), 2, pGuest));
    ASSERT_TRUE(t["p"]->InsertStreamObj(t["p"]->CreateToken("x"), 2, pGuest));
    CSyncMark* pLoose = t.plexa.CreateSyncMark(t["p"]);
    ASSERT_TRUE(pLoose->SetToSynchronous(pGuest));
    CToken pattern(t["p"], "x");
    EXPECT_TRUE(t.plexa.StripOutTokens(t["p"], t.Mark("p", 0), t.Mark("p", 2), &pattern));
    EXPECT_EQ(t.Picture("p"), "|||x||");
    CStream::DiscardStreamObj(pLoose);
}

// What is made through a copy of a stream belongs to the stream.
TEST(Absence, CopiesOfStreamsAndContainersMayGo) {
    Tiers t{{"p", "|||"}, {"q"}};
    {
        CStream copy(*t["p"]);
        CSyncMark* pMark = new CSyncMark(&copy);
        EXPECT_EQ(pMark->GetStream(), t["p"]);
        EXPECT_TRUE(t["p"]->InsertStreamObj(pMark, 2, t.First("p")));
        CPlexa container(t.plexa);
        EXPECT_EQ(container.AddStream("r"), -1);
    }
    EXPECT_EQ(t.Picture("p"), "||||");
    EXPECT_EQ(CheckStructure(t.plexa), "");
}

}  // namespace
