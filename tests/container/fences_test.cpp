// Which streams are fenced, and by which list.
#include "container/calls.h"

using namespace mlds_test;

namespace {

struct Fenced {
    // The streams fenced for scans and, behind a space, by the current list.
    std::string State() {
        std::string live, own;
        for (int i = 0; i < 3; ++i) {
            live += t.plexa.Fence(i) ? "apw"[i] : '-';
            own += t.plexa.GetCurrentVarList()->GetFenceState(i) ? "apw"[i] : '-';
        }
        return live + " " + own;
    }
    Tiers t{{"a"}, {"p"}, {"w"}};
    CPlexa& c = t.plexa;
    CVarList list{&c};
};

TEST(Fences, AreGivenByNameStreamOrIndex) {
    Fenced f;
    Tiers foreign{{"a"}, {"p"}};
    for (const std::string row :
         {"p, w -> -pw", " ,p,, -> -p-", " -> ---", "w,a -> a-w", "x p A -> -p-", ", -> ---",
          "p p -> -p-", "pw ap -> ---", "a -> a--"}) {
        f.list.SetFence(Parts(row).first.c_str());
        EXPECT_EQ(f.State(), Parts(row).second + " " + Parts(row).second) << row;
    }
    f.list.SetFence(-1, 2, -1, 1, 2);
    EXPECT_EQ(f.State(), "-pw -pw");
    f.list.SetFence(nullptr, f.t["a"], foreign["p"], nullptr, nullptr);
    EXPECT_EQ(f.State(), "a-- a--");
    f.list.SetFence(3, 50, -2, 51, 1);  // not all are streams
    EXPECT_EQ(f.State(), "-p- -p-");
    {
        CPlexa copy(f.c);  // shares the streams
        CVarList list(&copy);
        list.SetFence(f.t["w"], nullptr, nullptr, nullptr, nullptr);
        EXPECT_TRUE(list.GetFenceState(2) && f.c.Fence("w"));
    }
    f.list.SetFence("p");
    f.c.Fence("w", true);
    f.c.Fence(1, false);
    f.c.Fence("x", true);
    f.c.Fence(3, true);
    EXPECT_EQ(f.State(), "--w -p-");
    EXPECT_FALSE(f.c.Fence("x") || f.c.Fence(-1) || f.c.Fence(3) || foreign.plexa.Fence("p"));
    EXPECT_FALSE(f.list.GetFenceState(-1) || f.list.GetFenceState(3) || f.list.GetFenceState(50));
}

TEST(Fences, FollowTheListOnTop) {
    Fenced f;
    f.list.SetFence("p");
    f.c.Fence("w", true);
    {
        CVarList inner(&f.c);
        EXPECT_EQ(f.State(), "-pw -p-");  // from its parent, whatever is live
        inner.SetFence("a");
        EXPECT_EQ(f.State(), "a-- a--");
    }
    EXPECT_EQ(f.State(), "-p- -p-");
    f.c.Fence("a", true);
    f.c.PushVarListStack(&f.list);
    EXPECT_EQ(f.State(), "ap- -p-");
    f.c.PopVarListStack();
    EXPECT_EQ(f.State(), "-p- -p-");
    f.c.PopVarListStack();
    EXPECT_FALSE(f.c.Fence("p"));
}

}  // namespace
