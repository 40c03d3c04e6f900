// What streams, fields, marks and tokens do when memory runs out. With pools, some operations need
// no new memory.
#include <gtest/gtest.h>

#include <functional>

#include "support/failing_new.h"
#include "support/tiers.h"

using namespace mlds_test;

namespace {

TEST(Allocation, FailsWholly) {
    const std::string one(9000, 'x');
    Tiers t{{"a", "||x|y||", {"x", "y", one.c_str()}}, {"b", "||"}};
    CStream* a = t["a"];
    CStream* b = t["b"];
    CSyncMark* pMark = t.MarkAt("a.0");
    CField* pField = a->AddField("kind");
    CFieldValueSet* pSet = pField->CreateFieldValueSet("undef");
    CStreamObj* p = nullptr;
    const char* const values[] = {"one", "two", "three"};
    int bounds[] = {0, 1, 2, 3};
    const struct {
        std::function<void()> work;
        std::function<int()> state;  // as before after a failure, or as after success
        int before, after;
    } rows[] = {
        {[&] { p = t.plexa.CreateSyncMark(a); }, [&] { return p != nullptr; }, 0, 1},
        {[&] { p = new (std::nothrow) CSyncMark(a); }, [&] { return p != nullptr; }, 0, 1},
        {[&] { p = a->CreateToken(); }, [&] { return p != nullptr; }, 0, 1},
        {[&] {
             pSet->SetName("undef");  // drops what was derived
             p = a->CreateToken("y");
         },
         [&] { return p == nullptr                              ? 0
                      : static_cast<CToken*>(p)->IsItA("undef") ? 1
                                                                : 2; }, 0, 1},
        {[&] {
             CSyncMark* pNew = t.plexa.CreateSyncMark(b);
             p = pNew;
             if (pNew != nullptr) pMark->SetToSynchronous(pNew);
         },
         [&] { return pMark->IsSynchronous(); }, 0, 1},
        {[&] { pField->SetPossibleValues(values, 3); },
         [&] { return pField->GetNumPossibleValues() + pField->GetValueIndex("three"); }, -1, 5},
        {[&] { pSet->SetIncludeRanges(bounds, 2); }, [&] { return 0; }, 0, 0},
        {[&] { pField->CreateFieldValueSet("new"); },
         [&] { return pField->GetNumFieldValueSets(); }, 1, 2},
        {[&] { a->AddField("new"); }, [&] { return a->GetNumFields(); }, 2, 3},
        {[&] { t.plexa.AddStream("new"); }, [&] { return t.plexa.GetNumStreams(); }, 2, 3}};
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const std::string before = Dump(t.plexa, true);
        const auto undo = [&] {
            if (p == nullptr) return;
            CStream::DiscardStreamObj(p);
            p = nullptr;
            EXPECT_EQ(Dump(t.plexa, true), before);
        };
        FailEachAllocation(row.work, [&](int k) {
            EXPECT_TRUE(row.state() == row.before || row.state() == row.after) << k;
            undo();
            EXPECT_EQ(CheckStructure(t.plexa, {true, true, true}), "");
        });
        EXPECT_EQ(row.state(), row.after);
        undo();
    }
    t.Token("a", 0)->SetFieldValue(0, 2);
    FailEachAllocation([&] { a->GetStr(nullptr, nullptr, true); },
                       [&](int) { EXPECT_EQ(t.Picture("a"), "||" + one + "|y||"); });
}

}  // namespace
