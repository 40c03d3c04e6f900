// The chain of a stream: insertion and its refusals, removal, scans and fences, text and counts.
#include <gtest/gtest.h>

#include <sstream>

#include "support/logcapture.h"
#include "support/tiers.h"

using namespace mlds_test;

namespace {

// One character per object: object k of the chain is character k.
const std::string kBefore = "||a||b||";
constexpr int kEnd = 7;
constexpr int kBetween = -1;  // the form of InsertStreamObj that names both neighbours

std::vector<std::string> Entries(int line) {
    std::string form = "CStreamObj * pStreamObj, int InsertWhere, CStreamObj * pAt";
    if (line > 1100) {
        form =
            "CStreamObj * pToBeInserted, CStreamObj * pStreamObjLeft, CStreamObj * "
            "pStreamObjRight";
    }
    return {"mlds: error 1750 (1): cstream:" + std::to_string(line) + " CStream::InsertStreamObj(" +
            form + "): a"};
}

// Inserts next to or between objects (-1 is null). The outcome is + for success, with the object
// left of character `at`, L for a refusal with a log entry, and - for any other refusal.
void Try(char kind, int where, int l, int r, char outcome, int at, int line) {
    SCOPED_TRACE(testing::Message() << kind << ", " << where << ", at " << l << " " << r);
    Tiers t{{"a", kBefore.c_str()}};
    LogCapture log((l + r) % 2 == 0 ? 1 : 0);
    const bool bLogged = outcome == 'L' && okuLog.m_nLevel > 0;
    std::vector<CStreamObj*> chain = Chain(t["a"]);
    chain.insert(chain.begin(), nullptr);
    CStreamObj* pL = chain[static_cast<std::size_t>(l + 1)];
    CStreamObj* pR = chain[static_cast<std::size_t>(r + 1)];
    const std::string dump = Dump(t.plexa, true);
    CStreamObj* p = nullptr;
    if (kind == '|') p = t.plexa.CreateSyncMark(t["a"]);
    if (kind == 'x') p = t["a"]->CreateToken("x");
    EXPECT_EQ(where == kBetween ? t["a"]->InsertStreamObj(p, pL, pR)
                                : t["a"]->InsertStreamObj(p, where, pL),
              outcome == '+');
    EXPECT_EQ(log.Take(), bLogged ? Entries(line) : std::vector<std::string>{});
    EXPECT_EQ(CheckStructure(t.plexa, {true, where == kBetween, false}), "");
    if (outcome == '+') {
        EXPECT_EQ(t.Picture("a"),
                  std::string(kBefore).insert(static_cast<std::size_t>(at), 1, kind));
    } else {
        EXPECT_EQ(Dump(t.plexa, true), dump);
        CStream::DiscardStreamObj(p);  // still the caller's
    }
}

TEST(Insertion, TakesOrRefusesEveryPlace) {
    const struct {
        char kind;
        int where;
        const char* outcomes;  // at null and objects 0 to 7, or between 0 and 1 to between 6 and 7
    } rows[] = {{'|', 2, "-+++++++-"}, {'|', 3, "--+++++++"}, {'|', kBetween, "+++++++"},
                {'x', 2, "-L+++++LL"}, {'x', 3, "-LL+++++L"}, {'x', kBetween, "L--+--L"},
                {'x', 0, "---------"}, {'x', 4, "---------"}, {'|', 4, "---------"}};
    for (const auto& row : rows) {
        const int line = row.where == 2 ? 1060 : 1048;
        for (int l = -1; l <= kEnd; ++l) {
            const int at = row.where == 2 ? l + 1 : l;
            if (row.where != kBetween)
                Try(row.kind, row.where, l, -1, row.outcomes[l + 1], at, line);
            for (int r = -1; r <= kEnd && row.where == kBetween; ++r) {
                const int left = l >= 0 ? l : r - 1;
                const bool bPlace = left >= 0 && left < kEnd && (r < 0 || r == left + 1);
                Try(row.kind, row.where, l, r, bPlace ? row.outcomes[left] : '-', left + 1,
                    left == 0 ? 1149 : 1158);
            }
        }
    }
}

TEST(Insertion, RefusesWhatIsLinkedAndPlacesThatAreNot) {
    Tiers other{{"a"}};
    Tiers t{{"a", "||x||y||"}, {"b", "||z||"}};
    CStream* a = t["a"];
    CStreamObj* pStranger = other.plexa.CreateSyncMark(other["a"]);
    CStreamObj* pLoose = a->RemoveStreamObj(t.At("a.1"), false);
    CSyncMark* pNew = t.plexa.CreateSyncMark(a);
    const std::string before = Dump(t.plexa, true);
    CStreamObj* p = t.At("a.1");
    CStreamObj* pEnd = t.At("a.end");
    for (CStreamObj* pLinked : {p, t.At("a[0]"), t.At("a.start"), t.At("b.0")}) {
        EXPECT_FALSE(a->InsertStreamObj(pLinked, 3, pEnd) ||
                     a->InsertStreamObj(pLinked, t.At("a.2"), pEnd));
        pLinked->LinkBetween(t.At("a.2"), pEnd);
        CStream::DiscardStreamObj(pLinked);
    }
    for (int where : {1, 2, 3}) EXPECT_FALSE(a->InsertStreamObj(nullptr, where, p));
    EXPECT_FALSE(a->InsertStreamObj(nullptr, nullptr, pEnd) ||
                 a->InsertStreamObj(pNew, pLoose, p) || a->InsertStreamObj(pNew, pLoose, nullptr) ||
                 a->InsertStreamObj(pNew, 2, pLoose) ||
                 a->InsertStreamObj(pNew, t.At("a.2"), t.At("b.end")));
    pNew->LinkBetween(p, nullptr);
    pNew->LinkBetween(nullptr, p);
    pNew->LinkBetween(t.At("a.0"), pEnd);
    pNew->LinkBetween(pLoose, p);
    EXPECT_FALSE(a->InsertStreamObj(pStranger, 3, pEnd) ||
                 a->InsertStreamObj(pStranger, nullptr, pEnd) ||
                 other["a"]->RemoveStreamObj(p, false));
    pStranger->LinkBetween(t.At("a.2"), pEnd);
    EXPECT_EQ(Dump(t.plexa, true), before);
    CStream::DiscardStreamObj(pStranger);
    CStream::DiscardStreamObj(pLoose);

    EXPECT_TRUE(a->InsertStreamObj(pNew, 1, nullptr));  // only counted
    EXPECT_EQ(t.Picture("a") + std::to_string(a->GetNumSyncMarks()), "||x|y||4");
    pNew->LinkBetween(t.At("a.2"), pEnd);
    EXPECT_EQ(CheckStructure(t.plexa), "");
}

TEST(Removal, TakesOutAndHandsOver) {
    Tiers t{{"a", "||x||y||"}, {"b", "||z||"}};
    t.TieAll("a.1=b.0");
    CStream* a = t["a"];
    const std::string before = Dump(t.plexa, true);
    for (CStreamObj* p : {t.At("null"), t.At("a.start"), t.At("a.end")}) {
        EXPECT_TRUE(!a->RemoveStreamObj(p, true) && !a->RemoveStreamObj(p, false));
        if (p != nullptr) p->UnLink();
    }
    CStream::DiscardStreamObj(nullptr);
    EXPECT_EQ(Dump(t.plexa, true), before);

    CSyncMark* pMark = t.MarkAt("a.1");
    EXPECT_EQ(a->RemoveStreamObj(pMark, false), pMark);
    EXPECT_TRUE(!pMark->IsSynchronous() && Ties(t.plexa).empty());
    EXPECT_EQ(Where(pMark->GetPrevStreamObj()) + Where(pMark->GetNextStreamObj()), "a[0]a.1");
    EXPECT_EQ(a->RemoveStreamObj(pMark, true), nullptr);  // no longer linked
    pMark->UnLink();
    CStream::DiscardStreamObj(pMark);
    EXPECT_EQ(t.Picture("a"), "||x|y||");
    EXPECT_EQ(CheckStructure(t.plexa), "");
    a->StreamReset();
    EXPECT_EQ(t.Picture("a"), "||");
}

TEST(Scan, StepsByKindAndDirection) {
    Tiers t{{"a", "||x||y||"}};
    // From, direction (7 acts as sdLeft), kind (2 is none).
    const char* const rows[][2] = {
        {"a.start 1 0", "a[0]"}, {"a.0 1 1", "a.1"},    {"a[1] 1 0", "null"},
        {"a.3 1 1", "a.end"},    {"a.end 1 1", "null"}, {"a.end 0 0", "a[1]"},
        {"a.0 7 1", "a.start"},  {"a.1 1 2", "null"},   {"a.start 0 1", "null"},
        {"a[1] 7 0", "a[0]"},    {"a[1] 1 1", "a.3"},   {"a[1] 0 1", "a.2"}};
    for (const auto& row : rows) {
        std::string from;
        int direction = 0, kind = 0;
        std::istringstream(row[0]) >> from >> direction >> kind;
        CStreamObj* p = t.At(from);
        const auto d = static_cast<ScanDirectionType>(direction);
        const auto type = static_cast<ObjectType>(kind);
        EXPECT_EQ(Where(p->GetAdjacentStreamObj(d, type)), row[1]) << row[0];
        EXPECT_EQ(Where(p->GetAdjacentStreamObj(d, type, true)), row[1]) << row[0];
    }
    CStreamObj* p = t.At("a.1");
    EXPECT_EQ(Where(p->GetNextToken()) + Where(p->GetPrevToken()), "a[1]a[0]");
    EXPECT_EQ(Where(p->GetNextSyncMark()) + Where(p->GetPrevSyncMark()), "a.2a.0");
    EXPECT_EQ(Where(p->GetAdjacentStreamObj(sdLeft)), "a[0]");
}

// With no test running, no scan leaves a mark that a fenced stream shares.
TEST(Scan, StopsAtFences) {
    Tiers t{{"a", "||x|y||"}, {"b", "||z||"}, {"c"}};
    t.TieAll("a.1=b.0");
    const auto scan = [&](const char* from, ScanDirectionType direction, ObjectType type) {
        return Where(t.At(from)->GetAdjacentStreamObj(direction, type, true));
    };
    const auto step = [&](const char* from) {
        return Where(t.At(from)->GetAdjacentStreamObj(sdRight, true));
    };
    t.plexa.Fence("b", true);
    EXPECT_EQ(scan("a.0", sdRight, otToken), "a[0]");
    EXPECT_EQ(scan("a.0", sdRight, otSyncMark), "a.1");  // reached, not left
    EXPECT_EQ(scan("a[0]", sdRight, otToken) + scan("a[1]", sdLeft, otToken), "nullnull");
    // Its own mark, one without a group, a token. Sentinels see the streams that were there first.
    EXPECT_EQ(step("b.0") + step("b.1") + step("a[0]"), "nullb.enda.1");
    EXPECT_EQ(step("a.start") + step("b.start") + step("c.start"), "a.0b.0null");
    EXPECT_EQ(Where(t.At("a[0]")->GetAdjacentStreamObj(sdRight, otToken, false)), "a[1]");
    t.plexa.Fence("b", false);
    EXPECT_EQ(scan("a[0]", sdRight, otToken), "a[1]");
    t.plexa.Fence("a", true);
    EXPECT_EQ(step("a.start") + step("b.start") + step("c.start"), "a.0nullnull");
}

TEST(Stretch, GivesTextAndCounts) {
    Tiers t{{"a", "||x|y|z||"}, {"b", "||u||"}, {"e"}};
    t.TieAll("a.1=b.0 a.3=b.1");
    // Stream and bounds; text, tokens, tokens with projected bounds, marks.
    const char* const rows[][2] = {
        {"a null null", "||x|y|z|| 3 3 4"}, {"a a.start a.end", "||x|y|z|| 3 3 4"},
        {"a a.0 a.2", "|x|y| 2 2 3"},       {"a a.1 a.1", "| 0 0 1"},
        {"a a.2 a.0", "|z|| 0 0 -1"},       {"a a.1 null", "|y|z|| 2 2 3"},
        {"a null a.1", "||x| 1 1 2"},       {"a b.0 b.1", "|y|z| 1 2 2"},
        {"a b.0 null", "|y|z|| 0 2 -1"},    {"b a.0 b.1", " 0 -1 -1"},
        {"b a.1 a.3", "|u| 2 1 3"},         {"e null null", "|| 0 0 0"}};
    const auto stretch = [](CStream* p, CSyncMark* from, CSyncMark* to) {
        std::ostringstream text;
        text << p->GetStr(from, to, true) << ' ' << p->GetNumTokens(from, to, false) << ' '
             << p->GetNumTokens(from, to, true) << ' ' << p->GetNumSyncMarks(from, to);
        return text.str();
    };
    for (const auto& row : rows) {
        std::string stream, from, to;
        std::istringstream(row[0]) >> stream >> from >> to;
        EXPECT_EQ(stretch(t[stream], t.MarkAt(from), t.MarkAt(to)), row[1]) << row[0];
    }
    EXPECT_STREQ(t["a"]->GetStr(nullptr, nullptr, false), "xyz");
    CSyncMark* pLoose = t.plexa.CreateSyncMark(t["a"]);
    EXPECT_EQ(stretch(t["a"], pLoose, nullptr), " -1 -1 -1");
    CStream::DiscardStreamObj(pLoose);
}

TEST(Stretch, TextGrowsPastItsBuffer) {
    for (std::size_t length : {7999u, 8000u, 8001u, 15999u, 16000u, 40000u}) {
        const std::string one(length - 4, 'x');
        Tiers t{{"a", "||", {one.c_str(), "y"}}};
        for (const std::string& names : {one, "y|" + one + "|UNKNOWN|" + one, std::string("y")}) {
            Fill(t["a"], "||" + names + "||");  // compares
        }
    }
}

}  // namespace
