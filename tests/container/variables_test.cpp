// Rule variables: duplicates, commit and drop, the stack of lists.
#include <optional>

#include "container/calls.h"

using namespace mlds_test;

namespace {

// A list with mark variables x and y, and a token variable v.
struct Rule {
    Rule() {
        list.AddSyncMarkPtr("x", &x);
        list.AddTokenPtr("v", &v);
        list.AddSyncMarkPtrPtr("y", &y);
        list.ReSetForUse();
    }
    // What is dirty, the duplicates of x and v, x itself, and the stream.
    std::string State() {
        auto* pDup = static_cast<CToken*>(list.GetDupVarPtr(1));
        return (list.IsDirty(0) ? "x" : "") + std::string(list.IsDirty(1) ? "v " : " ") +
               Where(list.GetDupVarPtr(0)) + (pDup ? pDup->GetNameField() : " null ") + Where(x) +
               t.Picture("p");
    }
    Tiers t{{"p", "||a|b|c||"}};
    CSyncMark *m2 = t.Mark("p", 2), *x = t.Mark("p", 0), *y = nullptr;
    CToken *b = t.Token("p", 1), *c = t.Token("p", 2), *v = t.Token("p", 0);
    CVarList list{&t.plexa};
};

TEST(Variables, ATestWorksOnDuplicates) {
    for (const bool bHolds : {true, false}) {
        Rule r;
        EXPECT_EQ(r.State(), " p.0 null p.0||a|b|c||");
        r.list.SetSyncMarkPtr(0, r.m2);
        r.list.SetTokenPtr(1, r.b);
        CStreamObj* pDup = r.list.GetDupVarPtr(1);
        r.list.SetTokenPtr(1, r.c);
        EXPECT_EQ(r.list.GetDupVarPtr(1), pDup);
        EXPECT_EQ(r.State(), "xv p.2cp.0||a|b|c||");
        r.list.DoAssignmentsAndClear(bHolds);
        EXPECT_EQ(r.State(), bHolds ? "xv null null p.2||c|b|c||" : "xv null null p.0||a|b|c||");
        r.list.SetTokenPtr(1, r.b);  // dirty, but nothing to copy into
        r.list.ReSetForUse();
        r.list.DoAssignmentsAndClear(true);  // nothing is dirty
        EXPECT_EQ(r.State(), bHolds ? " p.2 null p.2||c|b|c||" : " p.0 null p.0||a|b|c||");
        r.list.SetSyncMarkPtr(0, nullptr);
        r.list.SetTokenPtr(1, r.b);
        r.list.UnsetSyncMarkPtr(0);
        r.list.UnsetTokenPtr(1);
        r.list.DoAssignmentsAndClear(true);
        EXPECT_EQ(r.State(), bHolds ? " null null p.2||c|b|c||" : " null null p.0||a|b|c||");
        r.list.SetTokenPtr(1, r.c);
        r.v = nullptr;  // nothing to copy the duplicate into
        r.list.DoAssignmentsAndClear(true);
        EXPECT_EQ(r.t.Picture("p"), bHolds ? "||c|b|c||" : "||a|b|c||");
    }
}

TEST(Variables, AreFoundByNameAndIndexAndKeepTheirKind) {
    Rule r;
    r.list.AddSyncMarkPtr("x", &r.m2);
    EXPECT_EQ(static_cast<void*>(r.list.GetVarPtr("x")), &r.x);
    EXPECT_EQ(static_cast<void*>(r.list.GetVarPtr(3)), &r.m2);
    EXPECT_TRUE(r.list.GetVarType("v") == vtTokenPtr && r.list.GetVarType(2) == vtSyncMarkPtrPtr);
    EXPECT_TRUE(r.list.GetVarPtr("V") == nullptr && r.list.GetVarType("V") == -1);
    for (const int i : {-1, 0, 1, 4, 50}) {  // none, or of the other kind
        if (i != 0) r.list.SetSyncMarkPtr(i, r.m2), r.list.UnsetSyncMarkPtr(i);
        if (i != 1) r.list.SetTokenPtr(i, r.b), r.list.UnsetTokenPtr(i);
        EXPECT_EQ(r.list.GetVarPtr(i) == nullptr, r.list.GetVarName(i) == nullptr);
        EXPECT_EQ(r.list.GetVarPtr(i) == nullptr, r.list.GetVarType(i) == -1);
    }
    r.list.SetTokenPtr(1, nullptr);
    EXPECT_EQ(r.State(), " p.0 null p.0||a|b|c||");
    r.list.AddTokenPtr(nullptr, &r.v);
    r.list.AddTokenPtr("null", nullptr);
    for (int i = 4; i < 51; ++i) r.list.AddTokenPtr(i < 50 ? "filler" : "late", &r.v);
    EXPECT_EQ(r.list.GetNumVars(), 50);
    EXPECT_EQ(r.list.GetVarIndex("late"), -1);
}

TEST(Variables, ListsLeaveTheStackInAnyOrder) {
    Tiers t{{"p"}};
    std::optional<CVarList> a, b, c;
    const auto top = [&] { return t.plexa.GetCurrentVarList(); };
    t.plexa.PopVarListStack();  // nothing there
    a.emplace(&t.plexa), b.emplace(&t.plexa), c.emplace(&t.plexa);
    b.reset();
    EXPECT_EQ(top(), &*c);
    t.plexa.PopVarListStack();
    EXPECT_EQ(top(), &*a);
    c.reset();  // on the stack no more
    b.emplace(&t.plexa);
    t.plexa.PushVarListStack(&*a);
    t.plexa.PushVarListStack(nullptr);
    EXPECT_EQ(top(), nullptr);
    {
        CVarList onNothing(&t.plexa);  // inherits nobody's fences
        EXPECT_EQ(top(), &onNothing);
    }
    t.plexa.PopVarListStack();
    EXPECT_EQ(top(), &*a);
    a.reset();  // on the stack twice
    EXPECT_EQ(top(), &*b);
    b.reset();
    EXPECT_EQ(top(), nullptr);
    // A full stack leaves further lists out, and they take nobody's entry with them.
    std::vector<std::unique_ptr<CVarList>> lists(1026);
    for (auto& pList : lists) pList = std::make_unique<CVarList>(&t.plexa);
    EXPECT_EQ(top(), lists[1023].get());
    lists.resize(1023);
    EXPECT_EQ(top(), lists[1022].get());
}

TEST(Variables, AListMayOutliveItsContainerButDoesNothingThen) {
    std::optional<Rule> r(std::in_place);
    Rule other;
    std::optional<CPlexa> copy(r->t.plexa);
    CVarList list(&r->t.plexa), onCopy(&*copy);
    const std::unique_ptr<CToken> pOld(r->b);
    r->t["p"]->RemoveStreamObj(r->b, false);
    list.AddTokenPtr("v", &other.v);
    list.SetTokenPtr(0, pOld.get());
    copy.reset();
    r.reset();
    list.SetTokenPtr(0, pOld.get());
    EXPECT_EQ(list.GetDupVarPtr(0), nullptr);
    list.SetFence("p");
    list.SetFence(0, -1, -1, -1, -1);
    list.SetFence(other.t["p"], nullptr, nullptr, nullptr, nullptr);
    list.DoAssignmentsAndClear(true);
    list.SendOutThisVarList(1010);
    other.t.plexa.PushVarListStack(&list);
    EXPECT_EQ(other.t.plexa.GetCurrentVarList(), nullptr);
    other.t.plexa.PopVarListStack();
    EXPECT_EQ(other.t.plexa.GetCurrentVarList(), &other.list);
    EXPECT_FALSE(other.t.plexa.Fence("p"));
    EXPECT_EQ(other.State(), " p.0 null p.0||a|b|c||");
}

// Both lists hold the duplicate; the sanitizer watches that it goes once.
TEST(Variables, AssignedListsShareDuplicates) {
    for (const bool bOtherContainer : {false, true}) {
        Rule r, other;
        std::optional<CVarList> list(bOtherContainer ? &other.t.plexa : &r.t.plexa);
        *list = other.list;  // without duplicates
        *list = CVarList(bOtherContainer ? &other.t.plexa : &r.t.plexa);
        list->AddTokenPtr("own", &other.v);
        list->SetTokenPtr(0, other.v);
        list->SetFence("p");
        r.list.SetTokenPtr(1, r.b);
        *list = r.list;
        *list = *list;
        EXPECT_EQ(list->GetDupVarPtr(1), r.list.GetDupVarPtr(1));
        r.list.ReSetForUse();
        list->DoAssignmentsAndClear(true);
        r.list.SetTokenPtr(1, r.c);
        *list = r.list;
        if (bOtherContainer) list.reset();
        EXPECT_EQ(r.State(), "v p.0cp.0||b|b|c||");
        EXPECT_FALSE(other.t.plexa.Fence("p"));  // the list that set it is not there any more
    }
}

TEST(Variables, AGuardRestoresThePointerUnlessTheResultIsTrue) {
    Rule r;
    for (const bool bResult : {false, true}) {
        std::optional<CRetValResetObj> guard(&r.x);
        EXPECT_TRUE(guard->m_bResult);
        r.x = r.m2;
        guard->m_bResult = bResult;
        guard.reset();
        EXPECT_EQ(Where(r.x), bResult ? "p.2" : "p.0");
    }
}

}  // namespace
