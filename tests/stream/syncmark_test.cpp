// Synchrony groups, moves along a stream and visited stamps.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

struct FourTiers : Tiers {
    explicit FourTiers(const char* ties = "")
        : Tiers{{"a", "|||||"}, {"b", "|||||"}, {"c", "|||||"}, {"d", "|||||"}} {
        TieAll(ties);
    }
    bool Join(const std::string& mark, const std::string& other, bool bReplace = false) {
        return MarkAt(mark)->SetToSynchronous(MarkAt(other), bReplace);
    }
};

TEST(Synchrony, JoinsMergesAndRefuses) {
    // Before; the marks joined, with + or - for the result; after.
    const char* const rows[][3] = {{"", "a.0 b.1 +", "a.0=b.1"},
                                   {"", "a.0 a.0 +", ""},
                                   {"", "a.0 a.1 -", ""},
                                   {"a.0=b.1", "b.1 a.0 +", "a.0=b.1"},
                                   {"a.0=b.1", "b.1 c.0 +", "a.0=b.1=c.0"},
                                   {"a.0=b.1", "c.0 b.1 +", "a.0=b.1=c.0"},
                                   {"a.0=b.1 c.0=d.2", "b.1 d.2 +", "a.0=b.1=c.0=d.2"},
                                   {"a.0=b.1 c.0=d.2", "d.2 a.0 +", "a.0=b.1=c.0=d.2"},
                                   {"a.0=b.1 b.0=c.2", "a.0 c.2 -", "a.0=b.1 b.0=c.2"},
                                   {"a.0=b.1", "a.0 null -", "a.0=b.1"},
                                   {"a.0=b.1", "a.0 b.end -", "a.0=b.1"}};
    for (const auto& row : rows) {
        FourTiers t(row[0]);
        std::string mark, other, sign;
        std::istringstream(row[1]) >> mark >> other >> sign;
        EXPECT_EQ(t.MarkAt(mark)->SetToSynchronous(t.MarkAt(other)), sign == "+") << row[1];
        EXPECT_EQ(t.Join(mark, other), sign == "+") << row[1];
        EXPECT_EQ(Ties(t.plexa), row[2]) << row[1];
        EXPECT_EQ(CheckStructure(t.plexa), "") << row[1];
    }
    FourTiers t, other;
    EXPECT_FALSE(t.MarkAt("a.0")->SetToSynchronous(other.MarkAt("b.0")));
    EXPECT_FALSE(t.MarkAt("a.0")->IsSynchronous());
}

TEST(Synchrony, AnswersQuestions) {
    FourTiers t("a.0=b.1");
    CSyncMark* p = t.MarkAt("a.0");
    EXPECT_TRUE(p->IsSynchronous() && p->IsSynchronous(0) && p->IsSynchronous(t["b"]) &&
                p->IsSynchronous(p) && p->IsSynchronous(t.MarkAt("b.1")));
    for (const char* other : {"null", "a.1", "b.0"})
        EXPECT_FALSE(p->IsSynchronous(t.MarkAt(other)));
    for (int i : {-1, 2, 50, 1 << 30}) {
        EXPECT_TRUE(p->GetCorrespondingSyncMark(i) == nullptr && !p->IsSynchronous(i));
    }
    CSyncMark* pAlone = t.MarkAt("a.1");
    EXPECT_TRUE(pAlone->IsSynchronous(pAlone) && !pAlone->IsSynchronous(0));
    EXPECT_EQ(pAlone->GetCorrespondingSyncMark(0), pAlone);
}

TEST(Synchrony, ShrinksAndDissolves) {
    for (bool bDelete : {true, false}) {
        FourTiers t("a.0=b.1=c.2");
        for (const char* place : {"b.1", "c.2"}) {
            CStreamObj* p = t.At(place);
            CStream::DiscardStreamObj(p->GetStream()->RemoveStreamObj(p, bDelete));
            EXPECT_EQ(Ties(t.plexa), place[0] == 'b' ? "a.0=c.2" : "");
            EXPECT_EQ(CheckStructure(t.plexa), "");
        }
    }
}

// A mark that joins takes the place of the member of its stream, which goes on pointing to the
// group. Whatever leaves then, in whatever order, must not leave anything dangling.
TEST(Synchrony, KeepsDisplacedMarksSafe) {
    std::string places[] = {"a.0", "b.0", "b.1"};
    do {
        FourTiers t("a.0=b.0");
        EXPECT_TRUE(t.Join("a.0", "b.1"));
        EXPECT_EQ(Ties(t.plexa), "a.0=b.1 b.0!");
        std::vector<CStreamObj*> objs;
        for (const std::string& place : places) objs.push_back(t.At(place));
        for (CStreamObj* p : objs) {
            p->GetStream()->RemoveStreamObj(p, true);
            EXPECT_EQ(Ties(t.plexa).find('?'), std::string::npos);
        }
        EXPECT_EQ(Ties(t.plexa), "");
    } while (std::next_permutation(std::begin(places), std::end(places)));

    FourTiers leaves("a.0=b.0");
    EXPECT_TRUE(leaves.Join("a.0", "b.1"));
    leaves["b"]->RemoveStreamObj(leaves.At("b.0"), true);  // clears its stream's slot all the same
    EXPECT_EQ(Ties(leaves.plexa), "b.0!");
    EXPECT_FALSE(leaves.MarkAt("a.0")->IsSynchronous());

    // Whose group has come to its end, by going or by merging, is alone and joins as such.
    for (const bool bFirst : {true, false}) {
        FourTiers ended("a.0=b.0"), one("a.0=b.0 c.0=d.0");
        EXPECT_TRUE(ended.Join("a.0", "b.1") && one.Join("a.0", "b.1") && one.Join("c.0", "a.0"));
        ended["a"]->RemoveStreamObj(ended.At("a.0"), true);
        EXPECT_EQ(Ties(ended.plexa), "b.0!");
        for (FourTiers* p : {&ended, &one}) {
            EXPECT_TRUE(bFirst ? p->Join("b.0", "d.1") : p->Join("d.1", "b.0"));
            EXPECT_EQ(Where(p->MarkAt("b.0")->GetCorrespondingSyncMark(3)), "d.1");
            EXPECT_EQ(CheckStructure(p->plexa), "");
        }
        EXPECT_EQ(Ties(ended.plexa), "b.0=d.1");
        EXPECT_EQ(Ties(one.plexa), "a.0=b.1=c.0=d.0 b.0=d.1");
    }

    FourTiers merged("a.0=b.0 c.0=d.0");
    EXPECT_TRUE(merged.Join("a.0", "b.1") && merged.Join("c.0", "a.0"));
    EXPECT_EQ(Ties(merged.plexa), "a.0=b.1=c.0=d.0 b.0!");
    EXPECT_EQ(merged.MarkAt("b.0")->GetCorrespondingSyncMark(0), nullptr);
}

TEST(Synchrony, ReplacesAMark) {
    FourTiers t("b.1=c.0=d.0");
    CSyncMark* pLoose = t.plexa.CreateSyncMark(t["c"]);
    for (int i = 0; i < 2; ++i) {  // the second time, within the group
        EXPECT_TRUE(t.Join("a.0", "b.1", true));
        EXPECT_EQ(Ties(t.plexa), "a.0=b.1 c.0=d.0");
        EXPECT_EQ(CheckStructure(t.plexa, {true, true, true}), "");
    }
    const std::string before = Dump(t.plexa);
    EXPECT_TRUE(t.Join("a.0", "a.0", true));
    for (const char* other : {"a.1", "null"}) EXPECT_FALSE(t.Join("a.0", other, true));
    EXPECT_FALSE(t.MarkAt("a.0")->SetToSynchronous(pLoose, true));
    EXPECT_EQ(Dump(t.plexa), before);
    // Sentinels are never removed: the fresh mark stands beside them.
    EXPECT_TRUE(t.Join("a.0", "c.end", true) && t.Join("a.0", "d.start", true));
    EXPECT_EQ(Ties(t.plexa), "a.0=b.1=c.3=d.0 c.0=d.1");
    EXPECT_EQ(CheckStructure(t.plexa, {true, true, true}), "");
    CStream::DiscardStreamObj(pLoose);
}

TEST(Synchrony, CopiesPointToTheGroupUnlisted) {
    FourTiers t("a.0=b.0 c.0=d.0");
    CSyncMark* pCopy = new CSyncMark(*t.MarkAt("a.0"));
    CSyncMark* pAssigned = t.plexa.CreateSyncMark(t["a"]);
    *pAssigned = *t.MarkAt("c.0");
    EXPECT_EQ(Where(pCopy->GetCorrespondingSyncMark(1)), "b.0");
    EXPECT_EQ(Where(pAssigned->GetCorrespondingSyncMark(3)), "d.0");
    t.plexa.CPlexaReset();
    EXPECT_EQ(pCopy->GetCorrespondingSyncMark(1), nullptr);
    for (CSyncMark* p : {pCopy, pAssigned}) CStream::DiscardStreamObj(p);
}

// Marks look at the fences of the streams that existed when they were made, and no others.
TEST(Synchrony, RecordsTheStreamsOfItsTime) {
    Tiers t{{"a"}};
    CSyncMark* pOld = t.plexa.CreateSyncMark(t["a"]);
    t.plexa.AddStream("b");
    CSyncMark* pNew = t.plexa.CreateSyncMark(t["b"]);
    t["a"]->InsertStreamObj(pOld, nullptr, t.At("a.end"));
    t["b"]->InsertStreamObj(pNew, nullptr, t.At("b.end"));
    t.TieAll("a.0=b.0");
    t.plexa.Fence("b", true);
    EXPECT_TRUE(pNew->IsSynchronousWithFence() && !pOld->IsSynchronousWithFence());
    EXPECT_EQ(Where(pOld->GetAdjacentStreamObj(sdRight, true)), "a.end");
    EXPECT_EQ(Where(pNew->GetAdjacentStreamObj(sdRight, true)), "null");
    t.plexa.Fence("a", true);
    EXPECT_TRUE(pOld->IsSynchronousWithFence());
}

TEST(Moves, CountTokens) {
    Tiers t{{"a", "||x|y||z||"}};
    // From, direction (-3 acts as sdLeft), number; where UptoTokens and OverTokens lead.
    const char* const rows[][2] = {
        {"a.0 1 -1", "a.0 a.0"}, {"a.0 1 0", "a.0 a.0"},         {"a.0 1 1", "a.1 a.1"},
        {"a.0 1 2", "a.3 a.2"},  {"a.0 1 3", "null a.4"},        {"a.0 1 4", "null null"},
        {"a.2 1 0", "a.3 a.2"},  {"a.start 1 0", "a.0 a.start"}, {"a.end 0 0", "a.4 a.end"},
        {"a.4 0 1", "a.2 a.3"},  {"a.4 -3 2", "a.1 a.1"},        {"a.end 1 0", "null a.end"}};
    for (const auto& row : rows) {
        std::string from;
        int direction = 0, n = 0;
        std::istringstream(row[0]) >> from >> direction >> n;
        CSyncMark* p = t.MarkAt(from);
        const auto d = static_cast<ScanDirectionType>(direction);
        EXPECT_EQ(Where(p->UptoTokens(d, n)) + " " + Where(p->OverTokens(d, n)), row[1]) << row[0];
    }
    EXPECT_EQ(Where(t.MarkAt("a.1")->BySyncMarks(sdLeft)), "a.0");
    EXPECT_EQ(Where(t.MarkAt("a.4")->BySyncMarks(sdRight)), "a.end");
    EXPECT_EQ(Where(t.MarkAt("a.start")->BySyncMarks(sdLeft)), "null");
}

TEST(SearchNumber, IsTestedAndStored) {
    Tiers t{{"a", "||x||"}};
    CSyncMark* p = t.MarkAt("a.0");
    EXPECT_TRUE(p->TestSearchNumber(0));  // never touched
    EXPECT_TRUE(!p->TestSearchNumber(7) && p->TestSearchNumber(7) && !p->TestSearchNumber(8));
    p->TouchSearchNumber(7);
    EXPECT_TRUE(p->TestSearchNumber(7));
}

}  // namespace
