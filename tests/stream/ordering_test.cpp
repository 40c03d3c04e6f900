// Order indices against the straightforward rule, which renumbers a stream as soon as a gap is
// exhausted.
#include <gtest/gtest.h>

#include <random>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

enum class Place { front, third, back, afterLast, nearLast, twoPlaces, anywhere };

struct Mix {
    const char* name;
    int nSteps;
    Place place;
    unsigned removals, reads;  // of 100 steps
    unsigned strangers = 0;    // of 100 objects, of another stream
};

// A stream and its model, a plain list, taken through the same random steps.
class Walk {
public:
    Walk(const Mix& mix, CStream* pStream, CStream* pOther, unsigned seed)
        : m_mix(mix), m_pStream(pStream), m_pOther(pOther), m_random(seed) {}

    void Run() {
        for (int i = 0; i < m_mix.nSteps; ++i) {
            const bool bRemove = Below(100) < m_mix.removals && !m_model.empty();
            bRemove ? Remove(Below(m_model.size())) : Insert(NextPlace());
            if (Below(100) < m_mix.reads && !m_model.empty()) Read();
            if (Below(1000) != 0) continue;
            m_pStream->Renumber();
            RenumberModel();
        }
        CompareAll();
    }

private:
    struct Entry {
        CStreamObj* p;
        std::uint32_t index;
    };

    std::size_t Below(std::size_t n) { return m_random() % n; }
    std::size_t NextPlace() {
        const std::size_t n = m_model.size();
        switch (m_mix.place) {
            case Place::front: return 0;
            case Place::third: return std::min<std::size_t>(n, 2);
            case Place::back: return n;
            case Place::afterLast: return std::min(n, m_last + (Below(50) != 0 ? 1 : 0));
            case Place::nearLast:
                return std::min(n, m_last + Below(9) - std::min<std::size_t>(m_last, 4));
            case Place::twoPlaces: return Below(2) == 0 ? n / 3 : n - n / 3;
            default: return Below(n + 1);
        }
    }
    void Insert(std::size_t at) {
        CStream* pOwner = Below(100) < m_mix.strangers ? m_pOther : m_pStream;
        CStreamObj* p = pOwner->pGetStreamPlexa()->CreateSyncMark(pOwner);
        CStreamObj* pLeft = at == 0 ? m_pStream->pGetFirstStreamObj() : m_model[at - 1].p;
        CStreamObj* pRight = pLeft->GetNextStreamObj();
        switch (Below(100) < m_mix.strangers ? 0 : Below(4)) {
            case 0: p->LinkBetween(pLeft, pRight); break;
            case 1: m_pStream->InsertStreamObj(p, 2, pLeft); break;
            case 2: m_pStream->InsertStreamObj(p, 3, pRight); break;
            default: m_pStream->InsertStreamObj(p, pLeft, pRight);
        }
        const std::uint32_t left = at == 0 ? 0 : m_model[at - 1].index;
        const std::uint32_t right = at == m_model.size() ? 0xFFFFFFFFu : m_model[at].index;
        const std::uint32_t middle = left + ((right - left) >> 1);
        m_model.insert(m_model.begin() + static_cast<std::ptrdiff_t>(at), {p, middle});
        if (middle == left || middle == right) RenumberModel();
        m_last = at;
    }
    void RenumberModel() {
        const auto n = static_cast<std::uint32_t>(m_model.size() + 1);
        std::uint32_t rank = 0;
        for (Entry& entry : m_model) entry.index = ++rank * (0xFFFFFFFFu / (n + 10));
    }
    void Remove(std::size_t at) {
        const Entry entry = m_model[at];
        m_model.erase(m_model.begin() + static_cast<std::ptrdiff_t>(at));
        const std::size_t road = Below(3);
        if (road == 0) m_pStream->RemoveStreamObj(entry.p, true);
        if (road == 1) m_pStream->RemoveStreamObj(entry.p, false);
        if (road == 2) entry.p->UnLink();
        if (road == 0) return;
        EXPECT_EQ(entry.p->GetOrderIndex(), entry.index) << "after it was removed";
        CStream::DiscardStreamObj(entry.p);
    }
    void Read() {
        if (Below(10) == 0) return CompareAll();
        const std::size_t i = Below(m_model.size());
        const std::size_t j = Below(m_model.size());
        EXPECT_EQ(m_model[i].p->GetOrderIndex(), m_model[i].index);
        if (m_mix.strangers != 0) return;
        EXPECT_EQ(m_model[i].p->LeftOf(m_model[j].p), i < j);
        EXPECT_EQ(m_model[i].p->RightOf(m_model[j].p), i > j);
    }
    void CompareAll() {
        const std::vector<CStreamObj*> chain = Chain(m_pStream);
        ASSERT_EQ(chain.size(), m_model.size() + 2);
        for (std::size_t i = 0; i < m_model.size(); ++i) {
            ASSERT_EQ(chain[i + 1], m_model[i].p) << "at " << i;
            ASSERT_EQ(chain[i + 1]->GetOrderIndex(), m_model[i].index) << "at " << i;
        }
    }

    Mix m_mix;
    CStream* m_pStream;
    CStream* m_pOther;
    std::mt19937 m_random;
    std::vector<Entry> m_model;
    std::size_t m_last = 0;
};

TEST(Ordering, FollowsTheStraightforwardRule) {
    const Mix mixes[] = {{"append", 3000, Place::back, 0, 0},
                         {"prepend", 1000, Place::front, 0, 1},
                         {"stack", 1000, Place::third, 5, 2},
                         {"stack, unread", 3000, Place::third, 0, 0},
                         {"build", 1000, Place::afterLast, 2, 1},
                         {"build, unread", 3000, Place::afterLast, 2, 0},
                         {"build around", 1000, Place::nearLast, 10, 20},
                         {"two places", 2000, Place::twoPlaces, 5, 3},
                         {"edit", 1000, Place::anywhere, 30, 5},
                         {"edit at one place", 1000, Place::afterLast, 45, 5},
                         {"strangers", 1000, Place::afterLast, 10, 5, 3},
                         {"many strangers", 1000, Place::afterLast, 10, 5, 50},
                         {"only strangers", 300, Place::third, 0, 1, 100}};
    for (const Mix& mix : mixes) {
        for (unsigned seed = 1; seed <= 6; ++seed) {
            SCOPED_TRACE(testing::Message() << mix.name << ", seed " << seed);
            Tiers t{{"a"}, {"b"}, {"c"}};
            // Strangers come from streams that are destroyed before and after.
            CStream* pOther = t[seed % 2 == 0 ? "a" : "c"];
            Walk(mix, t["b"], pOther, seed).Run();
            if (mix.strangers == 0) {
                EXPECT_EQ(CheckStructure(t.plexa, {false, true, true}), "");
            }
            t["b"]->StreamReset();
            Walk({"again", 100, mix.place, 10, 10}, t["b"], pOther, seed).Run();
            if (testing::Test::HasFailure()) return;
        }
    }
}

// Beside a mark of another stream, a section gets its indices from the chain in which it lies.
TEST(Ordering, ASectionBesideAStrangerIsNumberedWithItsChain) {
    Tiers t{{"p", "||a|b|c||"}, {"q"}};
    CStream* pStream = t["p"];
    CStreamObj *pFirst = nullptr, *pLast = nullptr;
    ASSERT_TRUE(
        pStream->ExciseSection(t.Mark("p", 0), t.Mark("p", 1), &pFirst, &pLast, bsmKeepBoth));
    CSyncMark* pStranger = t.plexa.CreateSyncMark(t["q"]);
    pStranger->LinkBetween(t.Token("p", 1), t.Mark("p", 3));
    CSyncMark* pRight = t.Mark("p", 4);
    ASSERT_TRUE(pStream->InsertSection(pFirst, pLast, nullptr, &pRight));
    EXPECT_EQ(t.Picture("p"), "|||b|c|a||");
    const std::vector<CStreamObj*> chain = Chain(pStream);
    for (std::uint32_t k = 1; k + 1 < chain.size(); ++k) {
        EXPECT_EQ(chain[k]->GetOrderIndex(), k * (0xFFFFFFFFu / (chain.size() - 1 + 10))) << k;
    }
}

// What is copied while a numbering is put off carries its index all the same.
TEST(Ordering, CopiesCarryTheirIndex) {
    Tiers t{{"a", "||x|y||"}, {"b"}};
    CStreamObj* pMark = t.At("a.1");
    for (int i = 0; i < 40; ++i) {
        t["a"]->InsertStreamObj(t.plexa.CreateSyncMark(t["a"]), pMark, nullptr);
    }
    CToken copy(*t.Token("a", 1));  // far right of what was inserted
    EXPECT_EQ(copy.GetOrderIndex(), t.At("a[1]")->GetOrderIndex());
    EXPECT_FALSE(pMark->LeftOf(t.At("b.end")) || t.At("b.end")->RightOf(pMark) ||
                 pMark->LeftOf(nullptr));
}

}  // namespace
