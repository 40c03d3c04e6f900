// One container per thread, and containers that are handed over.
#include <gtest/gtest.h>

#include <barrier>
#include <future>
#include <memory>
#include <thread>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

constexpr std::size_t kThreads = 4;

struct Work : Tiers {
    Work() : Tiers{{"inp", "||a||"}, {"phone"}} { list.AddSyncMarkPtr("x", &x); }
    // Uses all that threads could share by mistake: pools, searches, variables, fences.
    void Do() {
        list.SetFence("phone");
        EXPECT_TRUE(plexa.InsertString("%phone h o!^x l a", Mark("inp", 0), Mark("inp", 1)));
        EXPECT_TRUE(plexa.StripOutTokens((*this)["phone"], Mark("phone", 0), x, Token("phone", 0)));
        EXPECT_EQ(Where(plexa.Context("inp", x, sdRight)), "inp.1");
        EXPECT_EQ(Picture("phone") + CheckStructure(plexa), "||o|l|a||");
        plexa.CPlexaReset();
        Fill((*this)["inp"], "||a||");
    }
    CSyncMark* x = nullptr;
    CVarList list{&plexa};
};

TEST(Threads, EachWithItsOwnContainers) {
    std::barrier start(kThreads);
    std::jthread threads[kThreads];
    for (std::jthread& thread : threads) {
        thread = std::jthread([&] {
            start.arrive_and_wait();
            for (int i = 0; i < 200; ++i) Work().Do();
        });
    }
}

// Every thread makes containers and gets those of its neighbour to use and destroy.
TEST(Threads, HandContainersOver) {
    for (int round = 0; round < 50; ++round) {
        std::promise<std::unique_ptr<Work>> made[kThreads];
        std::jthread threads[kThreads];
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads[i] = std::jthread([&made, i] {
                auto pMade = std::make_unique<Work>();
                pMade->Do();
                made[i].set_value(std::move(pMade));
                made[(i + 1) % kThreads].get_future().get()->Do();
            });
        }
    }
}

}  // namespace
