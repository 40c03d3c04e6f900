// Whole tests: focus and contexts, fences, what is committed, and programs that make no sense.
#include <pthread.h>

#include <climits>

#include "rules.h"

namespace {

using mlds_test::Rules;
using mlds_test::Where;
using CoreTest = Rules;

TEST_F(CoreTest, ContextsAreBothTriedInAnOrder) {
    m_x = m_tiers.MarkAt("phone.2");
    for (const int direction : {0, 1, 2, 255}) {
        for (const int holding : {0, 1, 2, 3}) {
            m_y = nullptr;
            const int first = direction == 1 ? AssignPtr(y) : Ptr(x);
            const int focus = Adj(first, direction == 1 ? Ptr(x) : AssignPtr(y));
            const int left = (holding & 1) != 0 ? See('l') : Not(See('l'));
            const int right = (holding & 2) != 0 ? See('r') : Not(See('r'));
            EXPECT_EQ(Test(Anchor(focus, direction), left, right), holding == 3);
            EXPECT_EQ(m_seen, direction == 1 ? "l<r>" : "r>l<");
            EXPECT_EQ(Where(m_y), holding == 3 ? "phone.2" : "null");
        }
    }
    // From the focus' end in the stream of the test, whatever the other context did.
    EXPECT_TRUE(Test(Ptr(x), AngleBrkt(Is('o'), See('l')), AngleBrkt(Is('l'), See('r'))));
    EXPECT_TRUE(Test(Ptr(x), Adj(Any(), See('l')), AngleBrkt(Is('l'))));
    // A link in the place of the direction says it, too.
    Link(1, 0, 4);  // See('a')
    Link(1, 1, 'a');
    EXPECT_TRUE(Test(Adj(1, Ptr(x)), See('l'), See('r')));
    EXPECT_EQ(m_seen, "a<l<r>");
}

TEST_F(CoreTest, TheListIsToldOnlyWhenContextsWereReached) {
    m_x = m_tiers.MarkAt("phone.1");
    EXPECT_FALSE(Test(Adj(Ptr(x), AssignPtr(y))));  // ends where stream inp has no mark
    EXPECT_EQ(Where(m_list.GetDupVarPtr(y)), "phone.1");
    m_x = m_tiers.MarkAt("inp.2");
    EXPECT_FALSE(Test(Adj(Ptr(x), And(AssignPtr(y), Fail()))));
    EXPECT_EQ(Where(m_list.GetDupVarPtr(y)), "inp.2");
    EXPECT_FALSE(Test(Adj(Ptr(x), AssignPtr(y)), 0, Fail()));
    EXPECT_EQ(Where(m_list.GetDupVarPtr(y)), "null");
    EXPECT_EQ(Where(m_y), "null");
}

TEST_F(CoreTest, TheAnchoredPlaceIsFreeOfFencesDuringTheTest) {
    m_x = m_tiers.MarkAt("inp.2");
    m_y = m_tiers.MarkAt("phone.2");
    CSyncMark* pApart = m_none = m_tiers.MarkAt("phone.1");
    m_list.SetFence("phone");
    const auto held = [&] { return m_x->GetAdjacentStreamObj(sdRight, true) == nullptr; };
    EXPECT_FALSE(Test(Adj(Ptr(x), AngleBrkt())) || Test(Adj(Ptr(x), Any())));
    EXPECT_TRUE(Test(Adj(Anchor(Ptr(x)), AngleBrkt())) && held());
    EXPECT_TRUE(Test(Anchor(Ptr(x)), 0, AngleBrkt()) && held());
    EXPECT_FALSE(Test(Adj(Anchor(Ptr(x), 0, 1), AngleBrkt())));
    EXPECT_FALSE(Test(Adj(Anchor(Ptr(x)), Adj(Anchor(Or(0, 0), 0, 9), AngleBrkt()))));
    EXPECT_TRUE(Test(Adj(Ptr(x), Or(Anchor(Fail()), AngleBrkt()))));  // also where it fails
    EXPECT_TRUE(Test(Or(And(Anchor(Ptr(y)), Fail()), Adj(Ptr(x), AngleBrkt()))));  // synchronous
    EXPECT_FALSE(Test(And(Anchor(Ptr(x)), Fail())) || !held());
    EXPECT_FALSE(Test(And(Anchor(Ptr(x)), Ptr(none))) || !held());
    EXPECT_FALSE(Test(Anchor(Ptr(x)), Fail()) || !held());
    EXPECT_EQ(m_none, pApart);
}

TEST_F(CoreTest, ADivisionWithoutResultEndsTheTest) {
    m_x = m_tiers.MarkAt("inp.2");
    for (const auto& [a, b] : {std::pair(1, 0), std::pair(INT_MIN, -1)}) {
        const auto bad = [&, a = a, b = b] { return NotEq(Div(Int(a), Int(b)), Int(77)); };
        EXPECT_FALSE(Test(Adj(Ptr(x), Or(bad(), 0))));
        EXPECT_FALSE(Test(Adj(Ptr(x), Not(bad()))));
        EXPECT_FALSE(Test(Adj(Ptr(x), RightContext(Int(0), bad()))));
        EXPECT_FALSE(Test(Adj(Ptr(x), AssignPtr(y)), 0, Or(bad(), 0)));
        EXPECT_EQ(m_list.GetDupVarPtr(y), nullptr);
        EXPECT_FALSE(Test(Adj(Ptr(x), And(AssignPtr(y), Or(bad(), 0)))));
        EXPECT_EQ(m_list.GetDupVarPtr(y), m_x);
    }
    EXPECT_TRUE(Test(Adj(Ptr(x), Or(Eq(Div(Int(INT_MIN), Int(1)), Int(0)), 0))));
    EXPECT_FALSE(Test(Eq(Div(Int(1), Int(0)), 200))) << "the other operand is not even there";
}

TEST_F(CoreTest, ProgramsThatMakeNoSenseFail) {
    m_x = m_tiers.MarkAt("inp.2");
    std::vector<int> unlisted{0, 11, 12, 13, 20, 21, 25, 37, 39, 46, 47, 48};
    for (int opcode = 53; opcode < 256; ++opcode) unlisted.push_back(opcode);
    for (const int opcode : unlisted) {
        const int a = See('a');
        EXPECT_EQ(From("inp.2", Op(opcode, a, a, a, a)), "no") << opcode;
    }
    EXPECT_FALSE(Test(0));
    EXPECT_FALSE(Test(Ptr(x), 0, 0, 9));
    const unsigned char program[][5] = {
        {7, 7, 7, 7, 7}, {99, 3, 0, 0, 1}, {34, 0, 0, 0, 0}, {7, 7, 7, 7, 7}, {99, 0, 0, 0, 0}};
    CPlexa& plexa = m_tiers.plexa;
    EXPECT_TRUE(plexa.Test("rule", program, 1) && plexa.Test(nullptr, program, 1));
    EXPECT_FALSE(plexa.Test("rule", nullptr, 0) || plexa.Test("rule", program, -1));
    plexa.PopVarListStack();
    EXPECT_FALSE(plexa.Test("rule", program, 1));
}

TEST_F(CoreTest, TestsThatDoNotEndAreEnded) {
    m_x = m_tiers.MarkAt("inp.0");
    // Twice as many instructions for every level; 2^26 are the limit.
    const auto levels = [&](int n) {
        int tree = Fail();
        while (n-- > 0) tree = Or(tree, tree);
        return Test(Adj(Ptr(x), Or(tree, 0)));
    };
    EXPECT_TRUE(levels(12));
    m_bWatched = false;  // it takes long enough as it is
    EXPECT_FALSE(levels(26));
    m_bWatched = true;
    auto loops = [&] {
        for (const int opcode : {4, 5, 6, 7, 9, 10, 15, 16, 43, 44}) {
            const int loop = Op(opcode);
            Link(loop, 2, loop);
            EXPECT_FALSE(Test(Adj(Ptr(x), Or(loop, 0)))) << opcode;
        }
    };
    loops();
    // The same where there is little stack.
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 128 * 1024);
    const auto run = [](void* p) -> void* {
        (*static_cast<decltype(loops)*>(p))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &loops), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

// Marks that nothing orders are tried one by one, each against the place: 4,000 of them take as
// many searches of 4,000 steps. A test that asked for that again and again would run for days.
TEST_F(CoreTest, SearchesCountAsWork) {
    CStream* pWord = m_tiers["word"];
    std::vector<CStreamObj*> marks(4000);
    for (CStreamObj*& p : marks) p = m_tiers.plexa.CreateSyncMark(pWord);
    ASSERT_TRUE(m_tiers.plexa.InsertStreamObjects(pWord, m_tiers.Mark("word", 0), nullptr,
                                                  marks.data(), 4000));
    m_x = m_tiers.MarkAt("inp.1");
    const auto levels = [&](int n) {
        int tree = And(RightContext(Int(2), Stay()), Fail());
        while (n-- > 0) tree = Or(tree, tree);
        return Test(Adj(Ptr(x), Or(tree, 0)));
    };
    EXPECT_TRUE(levels(0));
    m_bWatched = false;
    EXPECT_FALSE(levels(16));
    EXPECT_TRUE(m_tiers.plexa.Context(pWord, m_x, sdRight) != nullptr) << "outside a test, as long";
}

TEST_F(CoreTest, LongRepetitionsHaveRoomOnTheStack) {
    std::string picture = "||";
    for (int i = 0; i < 1000; ++i) picture += "t|";
    mlds_test::Fill(m_tiers["inp"], picture + "|");
    m_x = m_tiers.MarkAt("inp.0");
    EXPECT_TRUE(Test(Adj(Ptr(x), Stars(Any(), 0, AssignPtr(y)))));
    EXPECT_EQ(Where(m_y), "inp.1000");
}

TEST_F(CoreTest, AnObserverMayThrow) {
    struct Thrower : CPlexaTestObserver {
        void BeforeInstruction(const CPlexaTestStep& step) override {
            if (step.instruction[0] == 30) throw 7;
        }
    } thrower;
    m_x = m_tiers.MarkAt("inp.0");
    m_bWatched = false;
    m_list.SetFence("phone");
    m_tiers.plexa.SetTestObserver(&thrower);
    EXPECT_THROW(Test(Adj(Anchor(Ptr(x)), Any(), AssignTok(t, AssignTok(t, Any())))), int);
    m_tiers.plexa.SetTestObserver(nullptr);
    EXPECT_FALSE(Test(Adj(Ptr(x), Any()))) << "the anchored place is forgotten";
    m_tiers.plexa.Fence("phone", false);
    EXPECT_TRUE(Test(Adj(Ptr(x), Any()))) << "the test before is over";
}

// What an observer hears of a test, and where the interpreter says fences do not hold.
TEST_F(CoreTest, AnObserverHearsOfTheWholeTest) {
    struct Listener : CPlexaTestObserver {
        explicit Listener(CPlexaTest& tested) : test(tested) {}
        void BeforeTest(const char* name, int base) override {
            heard += std::string(name) + std::to_string(base) + Free();
        }
        void AfterTest(bool bHolds) override { heard += (bHolds ? "yes" : "no") + Free(); }
        void AfterInstruction(const CPlexaTestStep& step, PTestFuncReturnType) override {
            heard += std::to_string(step.instruction[0]) + Free();
        }
        std::string Free() const { return "(" + Where(test.getSyncMarkItsOKtoAdvanceFrom()) + ")"; }
        CPlexaTest& test;
        std::string heard;
    };
    m_x = m_tiers.MarkAt("inp.2");
    CPlexaTest test(&m_tiers.plexa);
    Listener listener(test);
    test.SetObserver(&listener);
    const unsigned char program[][5] = {
        {0, 0, 0, 0, 0}, {0, 3, 0, 0, 1}, {3, 2, 0, 0, 0}, {34, 0, 0, 0, x}, {22, 0, 0, 0, 0}};
    EXPECT_TRUE(test.Test("rule", program, 1));
    EXPECT_EQ(listener.heard, "rule1(null)34(null)3(inp.2)yes(null)");
    EXPECT_EQ(test.getSyncMarkItsOKtoAdvanceFrom(), nullptr);
    listener.heard.clear();
    m_x = nullptr;
    EXPECT_FALSE(test.Test("again", program, 1));
    EXPECT_EQ(listener.heard, "again1(null)34(null)3(null)no(null)");
}

}  // namespace
