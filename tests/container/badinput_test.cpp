// What a caller must not pass is refused, and this and the other container stay as they are.
#include <functional>

#include "container/calls.h"

using namespace mlds_test;

namespace {

struct Host {
    Host() {
        for (Tiers* p : {&t, &foreign}) p->TieAll("a.0=p.0 a.1=p.2 a.2=p.4");
        t.plexa.RankPopulatedStreams();
    }
    std::string State() {
        return Dump(t.plexa) + CheckStructure(t.plexa) + Dump(foreign.plexa) +
               CheckStructure(foreign.plexa);
    }
    // "?" means an object that is in no stream: a token, a mark, or a mark that was in one.
    void Give(Tiers& from, const std::string& kind) {
        CStream* p = from["p"];
        CStreamObj* pMark = kind != "token" ? from.plexa.CreateSyncMark(p) : nullptr;
        pUnlinked.reset(call.pGiven = pMark ? pMark : p->CreateToken("z"));
        if (kind != "removed") return;
        p->InsertStreamObj(pMark, 2, from.At("p.2"));
        p->RemoveStreamObj(pMark, false);
    }
    Tiers foreign{{"a", "||a|b||"}, {"p", "||x|||y||"}}, t{{"a", "||a|b||"}, {"p", "||x|||y||"}};
    Caller call{t};
    std::unique_ptr<CStreamObj, void (*)(CStreamObj*)> pUnlinked{nullptr,
                                                                 &CStream::DiscardStreamObj};
};

void ExpectRefusals(const Rows& calls, std::function<void(Host&)> give) {
    for (const std::string& call : calls) {
        Host h;
        give(h);
        const std::string before = h.State();
        EXPECT_THAT(h.call(call), testing::AnyOf("0", "null", "0 null null")) << call;
        EXPECT_EQ(h.State(), before) << call;
    }
}

TEST(BadInput, Marks) {
    const Rows optional = {
        "String ? p.4 z", "String p.0 ? z", "String ? null z", "Literal ? p.4 z", "Literal p.0 ? z",
        "Insert ? p.4 z", "Insert p.0 ? z", "Insert null ? z", "List ? p.4 z",    "List p.0 ? z"};
    const Rows needed = {"At0 ? p.4 z",   "At1 p.0 ? z",   "At2 ? p.4 z",
                         "Items ? p.4 0", "Items p.0 ? 0", "Items ? ? 0",
                         "Mark ?",        "Strip ? p.4 x", "Move a ? left"};
    // These may begin at a mark that was taken out.
    const Rows navigation = {"Context a ? left",  "Sub a ? right",      "Search ? p.0 left",
                             "Search p.0 ? left", "Before ? p.4 right", "Before p.4 ? right",
                             "Bracket ? right a", "Adjacent ? p.0",     "Adjacent p.0 ?"};
    const auto expect = [&](const char* what, std::function<void(Host&)> give) {
        SCOPED_TRACE(what);
        ExpectRefusals(optional, give);
        ExpectRefusals(needed, give);
        ExpectRefusals({"Strip p.0 ? x"}, give);
        if (std::string(what) != "removed") ExpectRefusals(navigation, give);
        ExpectRefusals({"Project ?", "Project p.1 ?"},
                       [&](Host& h) { give(h), h.call.pTarget = h.t["a"]; });
    };
    ExpectRefusals(needed, [](Host&) {});
    ExpectRefusals(navigation, [](Host&) {});
    for (const char* kind : {"unlinked", "removed"})
        expect(kind, [=](Host& h) { h.Give(h.t, kind); });
    for (const char* place : {"p.1", "a.1", "a.end"}) {
        expect(place, [=](Host& h) { h.call.pGiven = h.foreign.At(place); });
    }
}

TEST(BadInput, StreamsAndObjects) {
    Rows calls = {"String p.0 p.4 z", "Literal p.0 p.4 z", "Insert p.0 p.4 z",   "At0 p.0 p.4 z",
                  "List p.0 p.4 z",   "Items p.0 p.4 3",   "Mark p.2",           "Strip p.0 p.4 x",
                  "Project a.0",      "Project a.1",       "Context ? a.1 left", "Sub ? a.1 left",
                  "Move ? a.1 left"};
    ExpectRefusals(calls, [](Host& h) { h.call.pTarget = nullptr; });
    calls.insert(calls.end(), {"Bracket a.0 right ?", "Bracket a.0 right null ?"});
    ExpectRefusals(calls, [](Host& h) { h.call.pTarget = h.foreign["p"]; });
    calls = {"Insert p.0 p.4 ?", "At0 p.0 p.1 ?", "At2 p.0 p.4 ?", "List p.0 p.4 z?"};
    for (const char* place : {"null", "p[1]", "p.1", "a[0]", "p.start"}) {
        ExpectRefusals(calls, [=](Host& h) { h.call.pGiven = h.t.At(place); });
        ExpectRefusals(calls, [=](Host& h) { h.call.pGiven = h.foreign.At(place); });
    }
    for (const char* kind : {"token", "mark"}) {
        ExpectRefusals(calls, [=](Host& h) { h.Give(h.foreign, kind); });
    }
}

TEST(BadInput, NothingWhereSomethingIsNeeded) {
    Host h;
    CPlexa& c = h.t.plexa;
    CStream* p = h.t["p"];
    CSyncMark *l = h.t.Mark("p", 0), *out = nullptr;
    const std::string before = h.State();
    EXPECT_FALSE(c.InsertStreamObjects(p, l, l, nullptr, 1) || c.InsertString(nullptr, l, l));
    EXPECT_FALSE(c.InsertString(p, nullptr, l, l) || c.InsertLiteralString(p, nullptr, l, l));
    EXPECT_FALSE(c.BracketToken(l, sdRight, nullptr, &out, nullptr, nullptr));
    EXPECT_FALSE(c.BracketToken(l, sdRight, &out, nullptr, nullptr, nullptr));
    EXPECT_FALSE(c.ProjectSyncMark(nullptr, 1, l, nullptr, sdRight) || c.Context(50, l, sdRight));
    EXPECT_FALSE(c.ProjectSyncMark("nosuch", l, nullptr) || c.Context("nosuch", l, sdRight));
    EXPECT_EQ(h.State(), before);
}

// The same object twice is placed once; one of no kind is passed over.
TEST(BadInput, OddLists) {
    struct Odd : CStreamObj {
        explicit Odd(CStream* p) : CStreamObj(p) { m_type = ObjectType{7}; }
    };
    Tiers t{{"p", "||x||"}};
    Odd odd(t["p"]);
    CStreamObj* list[] = {t["p"]->CreateToken("z"), &odd, nullptr};
    list[2] = list[0];
    EXPECT_TRUE(t.plexa.InsertStreamObjects(t["p"], t.Mark("p", 0), t.Mark("p", 1), list, 3));
    EXPECT_EQ(t.Picture("p"), "||z||");
}

TEST(BadInput, TextsOfTokensThatGo) {
    Tiers t{{"p", "||q|r||"}};
    char* own = t.Token("p", 0)->GetNameField();
    EXPECT_TRUE(t.plexa.InsertString(t["p"], own, t.Mark("p", 0), t.Mark("p", 1)));
    own = t.Token("p", 1)->GetNameField();
    EXPECT_TRUE(t.plexa.InsertLiteralString(t["p"], own, t.Mark("p", 1), t.Mark("p", 2)));
    EXPECT_EQ(t.Picture("p"), "||q|r||");
}

// A host linked a mark of another stream into the chain.
TEST(BadInput, StripOutTokensEndsOverAForeignMark) {
    for (const int where : {2, 3}) {
        Tiers t{{"p", "||x|y||"}, {"a"}};
        CSyncMark* pStrange = t.plexa.CreateSyncMark(t["a"]);
        t["p"]->InsertStreamObj(pStrange, where, t.Mark("p", 1));
        if (where == 3) pStrange->SetToSynchronous(t.Mark("p", 0));
        EXPECT_EQ(Caller(t)("Strip p.start p.end z"), "1");
        EXPECT_EQ(t.Picture("p"), "||x||y||");
    }
}

TEST(BadInput, MoreThanFiftyStreams) {
    CPlexa plexa(nullptr);
    for (int i = 0; i < 52; ++i) {
        EXPECT_EQ(plexa.AddStream(i < 9 ? "few" : "many"), i < 50 ? i : -1);
    }
    EXPECT_EQ(plexa.pStream("many"), plexa.pStream(9));
    EXPECT_FALSE(plexa.pStream(-1) || plexa.pStream(50) || plexa.pStream(51));
}

}  // namespace
