// What the container does when memory runs out.
#include "container/calls.h"
#include "support/failing_new.h"

using namespace mlds_test;

namespace {

struct Stage {
    Stage() {
        t.TieAll("a.0=p.0 a.3=p.1");
        t.plexa.RankPopulatedStreams();
        list.AddTokenPtr("v", &v);
        list.AddSyncMarkPtr("x", &x);
    }
    ~Stage() {
        for (CStreamObj* obj : objs) CStream::DiscardStreamObj(obj);
    }
    Tiers t{{"a", "||a|b|c||"}, {"p", "||o||"}, {"w"}};
    CPlexa& c = t.plexa;
    CStream *p = t["p"], *w = t["w"];
    CSyncMark *a0 = t.Mark("a", 0), *a1 = t.Mark("a", 1), *a2 = t.Mark("a", 2),
              *a3 = t.Mark("a", 3);
    CSyncMark *p0 = t.Mark("p", 0), *x = nullptr;
    CStreamObj* objs[2] = {p->CreateToken("y"), p->CreateToken("z")};
    CToken* v = t.Token("a", 1);
    CVarList list{&c};
};

// What a result promises: true that all is done, false that nothing is changed; true alone;
// nothing.
enum Promise { kAllOrNothing, kAllIfTrue, kNothing };
using S = Stage&;
const struct {
    Promise promise;
    bool bCounted;
    bool (*run)(Stage&);
} kOperations[] = {
    {kAllOrNothing, true, [](S s) { return s.c.ProjectSyncMark(s.w, s.a1, nullptr) != nullptr; }},
    {kAllOrNothing, true, [](S s) { return s.c.ProjectSyncMark(s.w, s.a0, nullptr) != nullptr; }},
    {kAllOrNothing, true, [](S s) { return s.a1->SetToSynchronous(s.p0, true); }},
    {kAllOrNothing, true, [](S s) { return s.list.SetTokenPtr(0, s.v), s.list.IsDirty(0); }},
    {kAllIfTrue, true, [](S s) { return s.c.InsertString("%p p!^x<q>$v'r'!^x", s.a0, s.a3); }},
    {kAllIfTrue, true, [](S s) { return s.c.InsertString("%w pq", s.a1, s.a2); }},
    {kAllIfTrue, true, [](S s) { return s.c.InsertString("%p pq", s.a0, nullptr); }},
    {kAllIfTrue, true, [](S s) { return s.c.InsertLiteralString(s.p, "pqr", s.a0, s.a3); }},
    {kAllIfTrue, true, [](S s) { return s.c.InsertLiteralString(s.p, "pq", nullptr, s.a3); }},
    {kAllIfTrue, false,
     [](S s) { return s.c.InsertStreamObject(s.p, s.a0, s.a1, s.objs[0], ilAtLeft); }},
    {kAllIfTrue, false,
     [](S s) { return s.c.InsertStreamObject(s.p, s.a1, s.a3, s.objs[0], ilAtRight); }},
    {kAllIfTrue, true,
     [](S s) { return s.c.InsertStreamObject(s.p, s.a1, s.a2, s.objs[0], ilSplitToken); }},
    {kNothing, true, [](S s) { return s.c.InsertStreamObject(s.p, s.a0, nullptr, s.objs[0]); }},
    {kNothing, true, [](S s) { return s.c.InsertStreamObjects(s.p, s.a0, s.a3, s.objs, 2); }},
};

TEST(OutOfMemory, LeavesTheStructureWhole) {
    for (const auto& operation : kOperations) {
        auto pStage = std::make_unique<Stage>();
        const std::string before = Dump(pStage->c);
        EXPECT_TRUE(operation.run(*pStage));
        const std::string done = Dump(pStage->c);
        pStage = std::make_unique<Stage>();
        bool bResult = false;
        const auto check = [&](int k) {
            SCOPED_TRACE("operation " + std::to_string(&operation - kOperations) + ", allocation " +
                         std::to_string(k));
            EXPECT_EQ(CheckStructure(pStage->c, {.bCounters = operation.bCounted}), "");
            if (bResult && operation.promise != kNothing) {
                EXPECT_EQ(Dump(pStage->c), done);
            } else if (!bResult && operation.promise == kAllOrNothing) {
                EXPECT_EQ(Dump(pStage->c), before);
            }
            pStage = std::make_unique<Stage>();
        };
        FailEachAllocation([&] { bResult = operation.run(*pStage); }, check);
        EXPECT_EQ(Dump(pStage->c), done);
    }
}

TEST(OutOfMemory, AContainerThatLacksPartsCanBeUsed) {
    int nAdded = 0, nStreams = 0;
    const auto use = [&] {
        CPlexa plexa(nullptr);
        nAdded = (plexa.AddStream("a") >= 0) + (plexa.AddStream("b") >= 0);
        nStreams = plexa.GetNumStreams();
        plexa.Initialize();
        if (nStreams == 0 || plexa.pStream(0)->AddField("name") == nullptr) return;
        CSyncMark* pStart = plexa.pStream(0)->pGetFirstStreamObj();
        plexa.InsertString("%a 'x'<y>", pStart, nullptr);
        plexa.ProjectSyncMark("b", pStart->GetNextSyncMark(), nullptr);
        plexa.Test("t", nullptr, 0);
    };
    FailEachAllocation(use, [&](int k) { EXPECT_EQ(nAdded, nStreams) << k; });
    EXPECT_EQ(nStreams, 2);
}

}  // namespace
