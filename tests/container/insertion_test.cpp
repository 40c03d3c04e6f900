// Insertion of objects and lists between and beside marks.
#include "container/calls.h"

using namespace mlds_test;

namespace {

void Expect(const Rows& rows, Checks checks = {}) {
    ExpectAfter({{"a", "||a|b|c||"}, {"p"}}, "", rows, checks);
}

TEST(Insertion, OfOneObject) {
    Expect({// It replaces what lies between two marks ...
            "||o|l|a||: Insert p.0 p.3 x -> 1 ||x||",
            "||o|l|a|| a.1=p.1: Insert p.0 p.2 | -> 1 ||||a||", "||o|l||: Insert p.0 p.0 x -> 1",
            "||o|l||: Insert p.2 p.0 x -> 0", "||o|l||: Insert null null x -> 1",
            // ... or goes next to one, where it must touch neither a token nor a sentinel.
            "||||: Insert p.0 null x -> 1 ||x||", "||o||: Insert p.0 null x -> 1 ||x|o||",
            "||o||: Insert p.0 null | -> 1 |||o||", "||||: Insert null p.1 x -> 1 ||x||",
            "||o||: Insert null p.1 x -> 1 ||o|x||", "||o||: Insert null p.1 | -> 1 ||o|||",
            "||o||: Insert p.start null x -> 1", "||o||: Insert p.end null x -> 1",
            "||o||: Insert null p.end | -> 1 ||o|||",
            // Marks of other streams are carried over, the left one first.
            "||: Insert a.1 a.2 x -> 1 ||x|| a.1=p.0 a.2=p.1",
            "||o|| a.0=p.0 a.2=p.1: Insert a.2 a.1 x -> 0",
            "||o|| a.1=p.1: Insert a.2 a.0 x -> 0 ||o||| a.1=p.1 a.2=p.2"});
}

TEST(Insertion, BesideOneOfTwoMarks) {
    Expect({"||||: At0 p.0 p.1 x -> 1 ||x||", "||o||: At0 p.0 p.1 x -> 1",
            "||||: At0 p.1 p.0 x -> 1", "||o||: At0 a.0 p.1 x -> 0", "||o||: At0 p.end a.1 x -> 0",
            "||||: At1 p.0 p.1 x -> 1 ||x||", "||o||: At1 p.0 p.1 x -> 1",
            "||o||: At1 p.0 a.0 x -> 0", "||o||: At1 a.1 p.start x -> 0",
            "||||: At3 p.0 p.1 x -> 1"});
    // A mark that is made on the far side is not counted.
    Expect({"||o|| a.0=p.0: At0 a.0 a.1 x -> 1 ||x|o|| a.0=p.0 a.1=p.1",
            "||o|| a.2=p.1: At1 a.1 a.2 x -> 1 ||o|x|| a.1=p.1 a.2=p.2"},
           {.bCounters = false});
    Tiers t{{"a", "||a||"}, {"p", "|||"}};
    t.TieAll("a.0=p.0");
    EXPECT_EQ(Caller(t)("At0 a.0 a.1 x"), "1");
    EXPECT_EQ(Picture(t["p"]), "||x||");
    EXPECT_EQ(t["p"]->GetNumSyncMarks(), 1);
}

TEST(Insertion, IntoAToken) {
    Expect({"||o|l||: At2 p.0 p.1 x -> 1 ||o|x|o|l||",
            "||o|| a.0=p.0 a.3=p.1: At2 a.1 a.2 x -> 1 ||o|x|o|| a.0=p.0 a.1=p.1 a.2=p.2 a.3=p.3",
            "||o|| a.0=p.0 a.3=p.1: At2 a.1 a.3 | -> 1 ||o|||o|| a.0=p.0 a.1=p.1 a.3=p.4",
            "|||| a.0=p.0: At2 a.0 a.2 x -> 1 |||x||| a.0=p.0 a.2=p.2",
            "||o|l|| a.0=p.0 a.3=p.2: At2 a.1 a.2 x -> 0", "||o||: At2 p.end p.end x -> 0"});
}

TEST(Insertion, OfAList) {
    Expect({"||||: List p.0 p.1 xy -> 1 ||x|y||", "||o|l||: List p.0 p.2 |x|y| -> 1 |||x|y|||",
            "||o|l||: List p.0 p.2 -> 1 ||||", "||o|l||: List p.2 p.0 x -> 0",
            "||o|l||: List p.1 p.0 x -> 0 ||o||",  // the rest went before it was seen
            "||o||: List p.0 p.0 xy -> 1 ||x|y|o||", "||o||: List p.0 p.0 -> 1",
            "||o||: List p.end p.end x -> 0", "||||: List p.0 null x -> 1 ||x||",
            "||o||: List p.0 null | -> 1 ||||o||", "||o||: List null p.1 | -> 1 ||o||||",
            "||o||: List null p.1 xy -> 1 ||o|x|y||", "||o||: List null null -> 1",
            "||: List a.0 a.1 xy -> 1 ||x|y|| a.0=p.0 a.1=p.2",
            "||o||: List p.start null x|y -> 1 ||y|o||"});  // x would touch the sentinel
}

TEST(Insertion, RebuildsTheRankingAndDeletionDoesNot) {
    Tiers t{{"x", "||a|b|c||"}, {"y", "||d|e||"}, {"p", "||f||"}};
    t.TieAll("x.1=p.0 y.1=p.1");
    Caller call(t);
    for (const std::string row :
         {"Insert p.1 p.end z -> 0", "Insert p.1 null | -> 1", "Mark p.2 -> 1", "List p.0 p.0 -> 1",
          "List p.0 p.1 -> 0", "String p.0 p.1 ab -> 1"}) {
        EXPECT_EQ(call(Parts(row).first), "1") << row;
        EXPECT_EQ(call("Search x.0 y.2 right"), Parts(row).second) << row;
    }
}

}  // namespace
