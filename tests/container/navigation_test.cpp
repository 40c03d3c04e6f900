// Order, nearest marks and small moves across streams.
#include "container/calls.h"

using namespace mlds_test;

namespace {

TEST(Navigation, SearchesCrossOnlyRankedStreams) {
    const auto expect = [](const char* given, const Rows& rows) {
        ExpectAfter({{"x", "||a|b|c||"}, {"y", "||d|e||"}, {"p"}}, given, rows);
    };
    expect("|| x.1=y.1: ",
           {"Search x.1 x.1 right -> 1", "Search x.1 x.1 left -> 1", "Search x.0 x.2 right -> 1",
            "Search x.0 x.2 left -> 0", "Before x.2 x.0 7 -> 1", "Search x.0 y.2 right -> 1",
            "Before y.2 x.1 left -> 1", "Before y.2 x.1 right -> 0"});
    // p may be where a search begins or arrives ...
    expect("||f|| x.1=p.1: Search ", {"p.0 x.2 right -> 1", "x.0 p.1 right -> 1"});
    // ... but is no way from x to y, not even from its own synchronous mark. With a third mark it
    // is.
    expect("||f|| x.1=p.0 y.1=p.1: Search ",
           {"x.0 y.2 right -> 0", "y.2 x.0 left -> 0", "p.0 y.2 right -> 0"});
    expect("|||f|| x.1=p.1 y.1=p.2: Search ",
           {"x.0 y.2 right -> 1", "y.2 x.0 left -> 1", "x.0 y.2 left -> 0"});
}

TEST(Navigation, ContextIsTheNearestMark) {
    ExpectAfter(
        {{"a", "||h|o|l|a||"}, {"p"}}, "||o|l|a|| a.1=p.0 a.4=p.3: Context ",
        {"p a.0 left -> p.start", "p a.0 right -> p.0", "p a.1 left -> p.0", "p a.1 right -> p.0",
         "p a.2 7 -> p.0", "p a.2 right -> p.3", "p a.end left -> p.end", "a p.2 right -> a.4",
         "a p.2 left -> a.1", "a a.3 left -> a.3", "a a.3 right -> a.3"});
    Tiers t{{"a"}, {"p"}};
    EXPECT_EQ(t.plexa.Context("p", t.First("a"), sdRight),
              t.plexa.Context(1, t.First("a"), sdLeft));
}

// From x.1, the way over p.3 is found first, and p.2 is ordered against nothing: p got its marks
// after the ranking, and v leads nowhere.
TEST(Navigation, ContextPassesOverUnorderedMarks) {
    Tiers t{{"x", "||a|b||"}, {"w", "||a|b|c|d||"}, {"v", "||q||"}, {"p"}};
    t.plexa.RankPopulatedStreams();
    Fill(t["p"], "||a|b|c||");
    t.TieAll("x.1=w.1 x.2=p.3 w.3=p.1 v.0=p.2");
    for (const std::string row : {"Search p.2 x.1 left -> 0", "Search p.2 x.1 right -> 0",
                                  "Sub p x.1 right -> p.3", "Context p x.1 right -> p.1"}) {
        EXPECT_EQ(Caller(t)(Parts(row).first), Parts(row).second) << row;
    }
}

// Three streams tied mark by mark leave two marks behind on the work stack per step.
TEST(Navigation, ASearchThatRunsOutOfRoomFindsNothing) {
    for (const std::size_t n : {9000u, 11000u}) {
        Tiers t{{"a"}, {"b"}, {"c"}, {"p", "|||"}};
        for (const char* stream : {"a", "b", "c"}) Fill(t[stream], std::string(n + 2, '|'));
        CSyncMark *pB = t.First("b"), *pC = t.First("c");
        for (CSyncMark* p = t.Mark("a", 0); p != t.Last("a"); p = p->GetNextSyncMark()) {
            p->SetToSynchronous(pB = pB->GetNextSyncMark());
            p->SetToSynchronous(pC = pC->GetNextSyncMark());
        }
        pC->SetToSynchronous(t.Mark("p", 0));
        t.plexa.RankPopulatedStreams();
        EXPECT_EQ(Caller(t)("Search a.0 p.0 right"), n == 9000 ? "1" : "0");
        EXPECT_EQ(Caller(t)("Sub p a.0 right"), n == 9000 ? "p.0" : "null");
    }
}

TEST(Navigation, AdjacentMoveAndBracket) {
    ExpectAfter({{"a", "||a|||b||"}, {"p"}, {"w"}}, "||o|| a.1=p.0 a.4=p.1: ",
                {"Adjacent a.1 a.1 -> 1",
                 "Adjacent a.1 a.3 -> 1",
                 "Adjacent a.3 a.1 -> 0",
                 "Adjacent a.0 a.1 -> 0",
                 "Adjacent p.0 a.3 -> 1",
                 "Adjacent p.0 a.4 -> 0",
                 "Adjacent a.4 p.1 -> 1",
                 "Adjacent a.2 p.1 -> 0",
                 "Adjacent a.end a.4 -> 0",
                 "Move a a.1 left -> a.1",
                 "Move a a.1 right -> a.3",
                 "Move a a.2 7 -> a.1",
                 "Move a p.1 right -> a.end",
                 "Move a a.end right -> a.end",
                 "Move p a.1 left -> p.start",
                 "Move p a.2 right -> null",
                 "Bracket a.start right -> 1 a.0 a.1",
                 "Bracket a.1 right -> 1 a.3 a.4",
                 "Bracket a.end left -> 1 a.3 a.4",
                 "Bracket a.4 right -> 0 null null",
                 "Bracket a.1 right null p -> 1 null p.1",
                 "Bracket a.3 7 a p -> 1 null p.0",
                 "Bracket a.start right a w -> 1 null null",
                 "Bracket a.1 right p a -> 1 a.1 a.4",
                 "Bracket a.1 right p -> 1 p.0 p.1",
                 "Bracket a.2 right p -> 0 null null"});
}

}  // namespace
