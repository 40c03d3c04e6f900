// Projection: where a mark of one stream falls in another.
#include "container/calls.h"
#include "support/logcapture.h"

using namespace mlds_test;

namespace {

TEST(Projection, GoesWhereTheTiesAllow) {
    LogCapture log(1);
    ExpectAfter(
        {{"a", "||a|b|c||"}, {"p"}, {"w", "||w||"}, {"RawInput", "||h|e|y||"}}, "",
        {"||x|| a.1=p.0: Project a.1 -> p.0", "||x||: Project p.1 -> p.1",
         "||: Project a.1 -> p.0 ||| a.1=p.0",
         "||x||y|| a.0=p.1 a.2=p.2: Project a.1 -> p.2 ||x|||y|| a.0=p.1 a.1=p.2 a.2=p.3",
         "||x||y|| a.0=p.1 a.2=p.2: Project a.1 a.0 -> p.2 ||x|||y|| a.0=p.1 a.1=p.2 a.2=p.3",
         // on either side of a token
         "||x|| a.0=p.0 a.2=p.1: Project a.1 a.0 -> p.1 |||x|| a.0=p.0 a.1=p.1 a.2=p.2",
         "||x|| a.0=p.0 a.2=p.1: Project a.1 p.0 -> p.1 |||x|| a.0=p.0 a.1=p.1 a.2=p.2",
         "||x|| a.0=p.0 a.2=p.1: Project a.1 a.2 -> p.1 ||x||| a.0=p.0 a.1=p.1 a.2=p.2",
         "||x|| a.0=p.0 a.2=p.1: Project a.1 p.1 -> p.1 ||x||| a.0=p.0 a.1=p.1 a.2=p.2",
         "||x|| a.0=p.0 a.2=p.1: Project a.1 a.start -> p.0 |||x|| a.0=p.1 a.1=p.0 a.2=p.2",
         // a disambiguator of no help
         "||x|| a.0=p.0 a.2=p.1: Project a.1 a.1 -> null",
         "||x|| a.0=p.0 a.2=p.1: Project a.1 w.0 -> null",
         "||x|| a.0=p.0 a.3=p.1: Project a.2 a.1 -> null"});
    EXPECT_THAT(log.Take(), testing::IsEmpty());
}

TEST(Projection, ReportsAnAmbiguousPlace) {
    LogCapture log(1);
    ExpectAfter({{"a", "||a|b||"}, {"p"}, {"RawInput", "||h|e|y||"}},
                "||x|| a.0=p.0 a.2=p.1: ", {"Project a.1 -> null"});
    EXPECT_THAT(log.Take()[0],
                testing::HasSubstr(
                    "error 1760 (1): mlds:723 CPlexa::ProjectSyncMark(CStream * pTargetStream, "
                    "CSyncMark * pSyncMark, CSyncMark *pSyncMarkDisambiguator): hey"));
}

// Sentinels that are not tied to each other: nothing lies right of the end.
TEST(Projection, BesideTheEndThereIsNoPlace) {
    CPlexa plexa(nullptr);
    CStream* pA = plexa.pStream(plexa.AddStream("a"));
    CStream* pP = plexa.pStream(plexa.AddStream("p"));
    pA->AddField("name")->SetFieldType(fvChar);
    Fill(pA, "||a||");
    Mark(pA, 0)->SetToSynchronous(pP->pGetLastStreamObj());
    const std::string before = Dump(plexa);
    LogCapture log(1);
    EXPECT_EQ(plexa.ProjectSyncMark(pP, Mark(pA, 1), Mark(pA, 0)), nullptr);
    EXPECT_EQ(plexa.ProjectSyncMark(pP, Mark(pA, 1), nullptr), nullptr);
    EXPECT_THAT(log.Take(), testing::ElementsAre(testing::EndsWith(": ")));  // without RawInput
    EXPECT_EQ(Dump(plexa), before);
}

TEST(Projection, IntoSeveralStreams) {
    Tiers t{{"a", "||a|b||"}, {"p"}, {"w", "||w||"}, {"s"}};
    t.TieAll("a.0=w.0 a.2=w.1");
    CStream* streams[] = {nullptr, t["a"], t["p"], t["w"], t["s"]};
    const auto project = [&](int n) {
        return Where(t.plexa.ProjectSyncMark(streams, n, t.Mark("a", 1), nullptr, sdRight));
    };
    EXPECT_EQ(project(2), "null");  // none to project into
    EXPECT_EQ(project(5), "null");  // stops at w; what it made for p stays
    EXPECT_EQ(Ties(t.plexa), "a.0=w.0 a.1=p.0 a.2=w.1");
    streams[3] = nullptr;
    EXPECT_EQ(project(5), "s.0");
    EXPECT_EQ(Ties(t.plexa), "a.0=w.0 a.1=p.0=s.0 a.2=w.1");
    EXPECT_EQ(Where(t.plexa.ProjectSyncMark("s", t.Mark("p", 0), nullptr)), "s.0");
}

}  // namespace
