// Sections: cut out, put back, taken out of their groups, compared.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

// Marks m1, m2 and m3 of the stream p around the tokens a and b; m2 is tied to a mark of q.
struct Scene {
    Tiers t{{"p", "||a|b||"}, {"q", "||x|y||"}};
    CStream* pStream = t["p"];
    CSyncMark *m1 = t.Mark("p", 0), *m2 = t.Mark("p", 1), *m3 = t.Mark("p", 2);
    CStreamObj *a = t.Token("p", 0), *b = t.Token("p", 1);
    CStreamObj *pFirst = nullptr, *pLast = nullptr;

    Scene() { t.TieAll("p.0=q.0 p.1=q.1 p.2=q.2"); }
    bool Cut(BufferSyncMarkInsertionType type = bsmDeleteBoth) {
        return pStream->ExciseSection(m1, m3, &pFirst, &pLast, type);
    }
    bool PutBack(CSyncMark** ppLeft, CSyncMark** ppRight) {
        return pStream->InsertSection(pFirst, pLast, ppLeft, ppRight);
    }
    // The picture and the two counters.
    std::string State() {
        return t.Picture("p") + " " + std::to_string(pStream->GetNumSyncMarks()) + " " +
               std::to_string(pStream->GetNumTokens());
    }
    // The tokens a and b are nobody's when they are cut out.
    void DiscardChain() {
        for (CStreamObj* p = pFirst; p != nullptr;) {
            CStreamObj* pNext = p->GetAdjacentStreamObj(sdRight);
            CStream::DiscardStreamObj(p);
            p = pNext;
        }
    }
};

TEST(Sections, LoseTheirTies) {
    Scene s;
    s.pStream->DeSyncSection(s.m3, s.m1);
    s.pStream->DeSyncSection(s.m1, nullptr);
    s.pStream->DeSyncSection(s.m1, s.m1);
    EXPECT_EQ(Ties(s.t.plexa), "p.0=q.0 p.1=q.1 p.2=q.2");
    s.pStream->DeSyncSection(s.m1, s.t.Mark("q", 2));  // bounds of any stream
    EXPECT_EQ(Ties(s.t.plexa), "p.0=q.0 p.2=q.2");
    EXPECT_EQ(s.State(), "||a|b|| 3 2");
}

TEST(Sections, AreCutOutAndPutBack) {
    Scene s;
    ASSERT_TRUE(s.Cut());
    EXPECT_EQ(s.pFirst, s.a);
    EXPECT_EQ(s.pLast, s.b);
    EXPECT_EQ(s.a->GetAdjacentStreamObj(sdLeft), nullptr);
    EXPECT_EQ(s.b->GetAdjacentStreamObj(sdRight), nullptr);
    // A chain counts for its last object as a mark, whatever that is.
    EXPECT_EQ(s.State(), "|||| 1 1");
    EXPECT_EQ(Ties(s.t.plexa), "p.0=q.0 p.1=q.2");

    CSyncMark *pLeft = s.t.Mark("q", 0), *pRight = nullptr;
    ASSERT_TRUE(s.PutBack(&pLeft, nullptr));
    EXPECT_EQ(pLeft, s.m1);
    EXPECT_EQ(s.State(), "||a|b|| 3 2");
    EXPECT_FALSE(s.PutBack(&pLeft, &pRight)) << "is linked already";
    EXPECT_EQ(Ties(s.t.plexa), "p.0=q.0 p.2=q.2");
    EXPECT_EQ(CheckStructure(s.t.plexa, {.bIndices = true}), "");
}

// A token that came by a stream switch goes with the section, and back into the stream it was cut
// out of. As a bound it counts -1 for marks and for tokens.
TEST(Sections, MayHoldTokensOfOtherStreams) {
    struct Row {
        const char *what, *cut, *back;
    };
    for (const Row& row :
         {Row{"g m2 b", "|||| 4 3", "||g|b|| 3 2"}, Row{"a m2 g", "|||| 4 3", "||a|g|| 3 2"},
          Row{"g", "|||b|| 4 3", "||g|b|| 3 2"}}) {
        SCOPED_TRACE(row.what);
        Tiers t{{"p", "||a|b||"}, {"q", "||x||"}};
        CStream* p = t["p"];
        CSyncMark *m1 = t.Mark("p", 0), *m3 = t.Mark("p", 2);
        const bool bFirst = row.what[0] == 'g';
        CStreamObj* pOwn = t.Token("p", bFirst ? 0 : 1);
        ASSERT_TRUE(p->InsertStreamObj(t["q"]->CreateToken("g"), 2, pOwn));
        p->RemoveStreamObj(pOwn, true);
        CSyncMark* pTo = std::string(row.what) == "g" ? t.Mark("p", 1) : m3;
        CStreamObj *pFirst = nullptr, *pLast = nullptr;
        ASSERT_TRUE(p->ExciseSection(m1, pTo, &pFirst, &pLast, bsmKeepBoth));
        const auto state = [&] {
            return t.Picture("p") + " " + std::to_string(p->GetNumSyncMarks()) + " " +
                   std::to_string(p->GetNumTokens());
        };
        EXPECT_EQ(state(), row.cut);
        CSyncMark* pElsewhere = t.Mark("q", 0);
        EXPECT_FALSE(t["q"]->InsertSection(pFirst, pLast, &pElsewhere, nullptr)) << "of p";
        EXPECT_TRUE(p->InsertSection(pFirst, pLast, &m1, nullptr));
        EXPECT_EQ(state(), row.back);
        const std::vector<CStreamObj*> chain = Chain(p);
        EXPECT_EQ(chain.size(), 7u);
        for (std::size_t i = 1; i < chain.size(); ++i) {
            EXPECT_LT(chain[i - 1]->GetOrderIndex(), chain[i]->GetOrderIndex());
        }
    }
}

// In a chain that was cut out everything goes as in a stream.
TEST(Sections, CanBeWorkedOnWhileTheyAreOut) {
    Tiers t{{"p", "||a|b|a|b||"}, {"q", "||x|y||"}};
    CStream* p = t["p"];
    CSyncMark *m1 = t.Mark("p", 1), *m2 = t.Mark("p", 2), *m3 = t.Mark("p", 3);
    CStreamObj *pFirst = nullptr, *pLast = nullptr;
    ASSERT_TRUE(p->ExciseSection(t.Mark("p", 0), t.Mark("p", 4), &pFirst, &pLast, bsmKeepBoth));
    EXPECT_STREQ(p->GetStr(m1, m3, true), "|b|a|");
    EXPECT_STREQ(p->GetStr(m2, nullptr, false), "ab") << "to the chain's end";
    EXPECT_TRUE(t.plexa.CSMSearch(m1, m3, sdRight) && t.plexa.CSMSearch(m3, m1, sdLeft));
    EXPECT_FALSE(t.plexa.CSMSearch(m3, m1, sdRight));
    EXPECT_FALSE(p->CompareSection(m1, m2, m2, m3)) << "b is not a";
    EXPECT_TRUE(p->CompareSection(m1, m3, m1, m3));

    ASSERT_TRUE(m2->SetToSynchronous(t.Mark("q", 1)));
    p->DeSyncSection(m1, m3);
    EXPECT_FALSE(m2->IsSynchronous());

    // A mark between b and m2, then m2 and an end leave.
    CSyncMark* pNew = t.plexa.CreateSyncMark(p);
    CStreamObj* b = m1->GetNextStreamObj();
    pNew->LinkBetween(b, m2);
    EXPECT_TRUE(b->LeftOf(pNew) && pNew->LeftOf(m2));
    m2->UnLink();
    EXPECT_STREQ(p->GetStr(m1, m3, true), "|b|a|");
    pLast->UnLink();
    EXPECT_EQ(m3->GetNextStreamObj(), nullptr);
    CSyncMark* pLeft = t.Mark("p", 0);
    EXPECT_FALSE(p->InsertSection(pFirst, pLast, &pLeft, nullptr)) << "the last one has left";
    EXPECT_TRUE(p->InsertSection(pFirst, m3, &pLeft, nullptr));
    EXPECT_EQ(t.Picture("p"), "||a|b|a|||");
    EXPECT_EQ(CheckStructure(t.plexa, {.bCounters = false, .bIndices = true}), "");
    for (CStreamObj* pLoose : {static_cast<CStreamObj*>(m2), pLast}) {
        CStream::DiscardStreamObj(pLoose);
    }
}

TEST(Sections, TakeAMarkWithThem) {
    for (const auto type : {bsmDeleteLeft, bsmDeleteRight, bsmKeepBoth}) {
        Scene s;
        ASSERT_TRUE(s.Cut(type));
        EXPECT_EQ(s.State(), type == bsmKeepBoth ? "|||| 1 1" : "||| 0 1");
        EXPECT_EQ(Ties(s.t.plexa), type == bsmKeepBoth     ? "p.0=q.0 p.1=q.2"
                                   : type == bsmDeleteLeft ? "p.0=q.2"
                                                           : "p.0=q.0");
        s.DiscardChain();
    }
}

TEST(Sections, ThatAreNoneAreRefused) {
    Scene s;
    const std::string before = Dump(s.t.plexa, true);
    CSyncMark* pLone = s.t.plexa.CreateSyncMark(s.t["q"]);
    CStreamObj *&f = s.pFirst, *&l = s.pLast;
    EXPECT_FALSE(s.pStream->ExciseSection(s.m3, s.m1, &f, &l, bsmKeepBoth));
    EXPECT_FALSE(s.pStream->ExciseSection(s.m1, s.m1, &f, &l, bsmKeepBoth));
    EXPECT_FALSE(s.pStream->ExciseSection(s.t.First("p"), s.m1, &f, &l, bsmKeepBoth)) << "empty";
    EXPECT_FALSE(s.pStream->ExciseSection(s.m1, pLone, &f, &l, bsmKeepBoth));
    EXPECT_FALSE(s.pStream->ExciseSection(nullptr, s.m3, &f, &l, bsmKeepBoth));
    EXPECT_FALSE(s.pStream->ExciseSection(s.m1, s.m3, nullptr, &l, bsmKeepBoth));
    CSyncMark* pAt = s.m1;
    EXPECT_FALSE(s.pStream->InsertSection(nullptr, s.b, &pAt, nullptr));
    EXPECT_FALSE(s.pStream->InsertSection(s.a, s.b, &pAt, nullptr)) << "still linked";
    EXPECT_EQ(Dump(s.t.plexa, true), before);

    ASSERT_TRUE(s.Cut());
    const std::string cut = Dump(s.t.plexa, true);
    CSyncMark* pInQ = s.t.Mark("q", 0);
    EXPECT_FALSE(s.t["q"]->InsertSection(s.a, s.b, &pInQ, nullptr)) << "a chain of elsewhere";
    EXPECT_FALSE(s.PutBack(nullptr, nullptr));
    EXPECT_FALSE(s.pStream->InsertSection(s.b, s.a, &pAt, nullptr)) << "the wrong way round";
    CSyncMark* pLast = s.t.Last("p");
    EXPECT_FALSE(s.PutBack(&pAt, &pLast)) << "no neighbours";
    CSyncMark* pAtLone = pLone;
    EXPECT_FALSE(s.PutBack(&pAtLone, nullptr)) << "no counterpart";
    EXPECT_EQ(pAtLone, nullptr);
    CStream::DiscardStreamObj(pLone);
    EXPECT_EQ(Dump(s.t.plexa, true), cut);
    s.DiscardChain();
}

TEST(Sections, GetAMarkWhereTokensWouldTouch) {
    Scene s;
    ASSERT_TRUE(s.pStream->ExciseSection(s.m1, s.m2, &s.pFirst, &s.pLast, bsmKeepBoth));
    EXPECT_EQ(s.State(), "|||b|| 2 2");
    CSyncMark* pRight = s.m3;  // its left neighbour is b
    ASSERT_TRUE(s.PutBack(nullptr, &pRight));
    EXPECT_EQ(s.State(), "|||b|a|| 4 2");
    EXPECT_EQ(pRight, s.m3);

    ASSERT_TRUE(s.pStream->ExciseSection(s.t.Mark("p", 2), s.m3, &s.pFirst, &s.pLast, bsmKeepBoth));
    CSyncMark* pLeft = s.m2;  // its right neighbour is b
    ASSERT_TRUE(s.PutBack(&pLeft, nullptr));
    EXPECT_EQ(s.State(), "|||a|b||| 5 2");
    // With both bounds given there is no room for a mark.
    EXPECT_EQ(CheckStructure(s.t.plexa, {.bIndices = true}), "");
}

// What a caller does with the objects of a chain that it holds.
TEST(Sections, CanBeWalkedInTheCallersHands) {
    Scene s;
    ASSERT_TRUE(s.Cut());
    auto* pMark = static_cast<CSyncMark*>(s.a->GetAdjacentStreamObj(sdRight));
    EXPECT_EQ(s.a->GetNextToken(), s.b);
    EXPECT_EQ(s.b->GetPrevSyncMark(), pMark);
    EXPECT_EQ(pMark->GetAdjacentStreamObj(sdLeft, otToken), s.a);
    EXPECT_EQ(s.b->GetNextToken(), nullptr);
    auto* pFirst = reinterpret_cast<CSyncMark*>(s.a);
    auto* pLast = reinterpret_cast<CSyncMark*>(s.b);
    EXPECT_EQ(s.pStream->GetNumTokens(pFirst, pLast, false), 1);
    EXPECT_EQ(s.pStream->GetNumSyncMarks(pFirst, pLast), 2);
    s.DiscardChain();
}

TEST(Sections, StayWholeInTheCallersHands) {
    Scene s;
    ASSERT_TRUE(s.Cut());
    CSyncMark* pLeft = s.m1;
    CStream::DiscardStreamObj(s.a);
    EXPECT_EQ(s.m2->GetAdjacentStreamObj(sdLeft), nullptr);
    EXPECT_TRUE(s.pStream->InsertSection(s.b, s.b, &pLeft, nullptr)) << "a part of it";
    EXPECT_EQ(s.m2->GetAdjacentStreamObj(sdRight), nullptr);
    EXPECT_EQ(s.t.Picture("p"), "||b||");
    EXPECT_FALSE(s.pStream->InsertSection(s.m2, s.b, &pLeft, nullptr)) << "no longer one chain";
    EXPECT_TRUE(s.pStream->InsertStreamObj(s.m2, s.m1, s.b)) << "a single object";
    EXPECT_EQ(s.t.Picture("p"), "|||b||");
    EXPECT_EQ(CheckStructure(s.t.plexa, {.bCounters = false, .bIndices = true}), "");

    CStreamObj* pToken = s.pStream->RemoveStreamObj(s.b, false);
    EXPECT_TRUE(s.pStream->InsertSection(pToken, pToken, &pLeft, nullptr));
    EXPECT_EQ(s.t.Picture("p"), "||b|||");
}

TEST(Sections, LoseNothingWhenAMarkIsDiscarded) {
    Scene s;
    ASSERT_TRUE(s.Cut());
    CStream::DiscardStreamObj(s.m2);
    EXPECT_EQ(s.a->GetAdjacentStreamObj(sdRight), s.b);
    s.DiscardChain();
}

TEST(Sections, ArePartedWhereTokensWouldTouch) {
    Scene parted;
    ASSERT_TRUE(parted.Cut());
    CSyncMark* pLeft = parted.m1;
    EXPECT_TRUE(parted.pStream->InsertSection(parted.m2, parted.m2, &pLeft, nullptr));
    EXPECT_FALSE(parted.PutBack(&pLeft, nullptr));
    EXPECT_EQ(parted.a->GetAdjacentStreamObj(sdRight), nullptr);
    for (CStreamObj* p : {parted.b, parted.a}) {
        EXPECT_TRUE(parted.pStream->InsertSection(p, p, &pLeft, nullptr));
    }
    EXPECT_EQ(parted.t.Picture("p"), "||a|b|||");
}

// The very indices that a stream has which is renumbered whole by every insertion.
TEST(Sections, AreNumberedWithTheirStream) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        Tiers t{{"p", "||"}, {"q"}};
        CStream* pStream = t["p"];
        CStreamObj* pAt = t.First("p");
        for (int i = 0; i < 60; ++i) {  // one place, so that a numbering is put off
            CSyncMark* pMark = t.plexa.CreateSyncMark(pStream);
            ASSERT_TRUE(pStream->InsertStreamObj(pMark, pAt, pAt->GetAdjacentStreamObj(sdRight)));
            if (random() % 3 != 0) pAt = pMark;
        }
        const int from = static_cast<int>(random() % 57);
        const int to = from + 2 + static_cast<int>(random() % (58 - static_cast<unsigned>(from)));
        CStreamObj *pFirst = nullptr, *pLast = nullptr;
        ASSERT_TRUE(pStream->ExciseSection(t.Mark("p", from), t.Mark("p", to), &pFirst, &pLast,
                                           bsmKeepBoth));
        std::uint32_t index = pFirst->GetOrderIndex();
        for (CStreamObj* p = pFirst; (p = p->GetAdjacentStreamObj(sdRight)) != nullptr;) {
            ASSERT_LT(std::exchange(index, p->GetOrderIndex()), p->GetOrderIndex());
        }
        CSyncMark* pLeft = t.Mark("p", static_cast<int>(random()) & 1);
        ASSERT_TRUE(pStream->InsertSection(pFirst, pLast, &pLeft, nullptr));
        ASSERT_EQ(CheckStructure(t.plexa, {.bIndices = true}), "");
        EXPECT_EQ(pStream->GetNumSyncMarks(), 60);
        for (std::uint32_t k = 1; k <= 60; ++k) {
            ASSERT_EQ(t.Mark("p", static_cast<int>(k) - 1)->GetOrderIndex(),
                      k * t.Mark("p", 0)->GetOrderIndex());
        }
    }
}

TEST(Sections, AreComparedByTheirTokens) {
    Tiers t{{"p", "||a|b|c||a||b|d||a|b||"}, {"q", "||x||"}};
    CStream* pStream = t["p"];
    const auto equal = [&](int from1, int to1, int from2, int to2) {
        const auto mark = [&](int k) { return k < 0 ? nullptr : t.Mark("p", k); };
        return pStream->CompareSection(mark(from1), mark(to1), mark(from2), mark(to2));
    };
    EXPECT_TRUE(equal(0, 2, 4, 7)) << "marks do not matter";
    EXPECT_FALSE(equal(0, 3, 4, 8)) << "c and d";
    EXPECT_FALSE(equal(0, 3, 4, 7)) << "one more in the first";
    EXPECT_FALSE(equal(4, 7, 0, 3)) << "one more in the second";
    EXPECT_TRUE(equal(0, 2, 9, -1));
    EXPECT_FALSE(equal(0, 3, 9, -1));
    EXPECT_TRUE(equal(0, 3, 11, -1)) << "behind the last token of the stream anything fits";
    EXPECT_FALSE(equal(11, -1, 0, 3));
    EXPECT_FALSE(equal(9, -1, 0, 3));
    EXPECT_TRUE(equal(9, -1, 0, 2) && equal(-1, 2, 4, 7) && equal(4, 7, -1, 2));
    EXPECT_FALSE(equal(-1, -1, 0, 3));
    EXPECT_FALSE(equal(0, 3, -1, -1));
    EXPECT_FALSE(pStream->CompareSection(t.Mark("p", 0), t.Mark("q", 1), nullptr, t.Mark("p", 0)))
        << "a bound without a counterpart";
    EXPECT_TRUE(equal(2, 1, 5, 4)) << "both are exhausted";
    t.Token("p", 0)->SetFieldValue(0, 7);
    EXPECT_FALSE(equal(0, 2, 4, 7));
}

}  // namespace
