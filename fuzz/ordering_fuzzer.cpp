// Order indices against a plain model. The model numbers a whole chain at once when a gap is used
// up; the library puts that off. Every index read must be the model's.
//
// Everything happens in the chain of stream "own". Now and then an object of stream "guest" comes
// in, or one is linked through that stream: the chain then numbers at once from there on.
#include <vector>

#include "input.h"

using mlds_fuzz::Input;
using mlds_fuzz::Require;

namespace {

// Some 250 calls or runs of calls. Longer inputs only repeat.
constexpr std::size_t kMostBytes = 1024;
// The model is quadratic. Ranks, steps and epochs are all different in a chain of this length.
constexpr std::size_t kMostObjects = 1500;
// A run at one place uses up the widest gap, 32 halvings, twice.
constexpr unsigned kLongestRun = 70;
constexpr std::uint32_t kLastIndex = 0xFFFFFFFFu;

struct Entry {
    CStreamObj* p;
    std::uint32_t index;
};

void RequireIndex(const Entry& entry) {
    const std::uint32_t index = entry.p->GetOrderIndex();
    Require(index == entry.index,
            "the index is " + std::to_string(index) + ", not " + std::to_string(entry.index));
}

class Ordering {
public:
    explicit Ordering(Input in) : m_in(in) {
        m_plexa.Initialize();
        m_chain = {{m_pOwn->pGetFirstStreamObj(), 0}, {m_pOwn->pGetLastStreamObj(), kLastIndex}};
        while (!m_in.IsOver()) Step(m_in.Below(9), At(m_chain.size()), At(m_chain.size()));
        for (const Entry& entry : m_chain) RequireIndex(entry);
    }
    ~Ordering() {
        for (const Entry& entry : m_removed) {
            RequireIndex(entry);
            CStream::DiscardStreamObj(entry.p);
        }
    }

private:
    std::size_t At(std::size_t n) {
        const unsigned high = m_in.Byte();
        return (high * 256 + m_in.Byte()) % n;
    }

    void Step(unsigned what, std::size_t at, std::size_t other) {
        const bool bSentinel = at == 0 || at + 1 == m_chain.size();
        const Entry& a = m_chain[at];
        const Entry& b = m_chain[other];
        const bool bComparable = a.p->GetStream() == b.p->GetStream();
        CStreamObj* pCopy = nullptr;
        switch (what) {
            default: InsertRun(at == 0 ? m_chain.size() - 1 : at); break;
            case 4:
            case 5:
                if (!bSentinel) Remove(at);
                break;
            case 6: RequireIndex(a); break;
            case 7:
                Require(a.p->LeftOf(b.p) == (bComparable && a.index < b.index), "LeftOf is wrong");
                pCopy = new CSyncMark(*static_cast<CSyncMark*>(b.p));
                RequireIndex({pCopy, b.index});
                CStream::DiscardStreamObj(pCopy);
                break;
            case 8:
                if (bSentinel) m_pOwn->Renumber(), NumberModel();
                if (at != 1) break;
                m_pOwn->StreamReset();
                m_chain.erase(m_chain.begin() + 1, m_chain.end() - 1);
        }
    }

    // In front of the entry `at`: each mark right of the one before, left of it, or both in turn.
    void InsertRun(std::size_t at) {
        const unsigned how = m_in.Byte();
        for (unsigned i = m_in.Below(kLongestRun) + 1; i > 0 && m_chain.size() < kMostObjects;
             --i) {
            Insert(at, how / 4);
            if (how % 3 == 0 || (how % 3 == 1 && i % 2 == 0)) ++at;
        }
    }

    void Insert(std::size_t at, unsigned how) {
        CStreamObj* p = m_plexa.CreateSyncMark(how == 61 ? m_pGuest : m_pOwn);
        CStream* pVia = how == 62 ? m_pGuest : m_pOwn;
        CStreamObj* pLeft = m_chain[at - 1].p;
        CStreamObj* pRight = m_chain[at].p;
        if (how % 8 == 7 && !m_removed.empty()) {
            CStream::DiscardStreamObj(p);
            p = m_removed.back().p;
            m_removed.pop_back();
        }
        switch (how % 4) {
            case 0: pVia->InsertStreamObj(p, pLeft, pRight); break;
            case 1: pVia->InsertStreamObj(p, 2, pLeft); break;
            case 2: pVia->InsertStreamObj(p, 3, pRight); break;
            case 3: p->LinkBetween(pLeft, pRight);
        }
        Require(pLeft->GetNextStreamObj() == p, "an object was not linked");
        const std::uint32_t left = m_chain[at - 1].index;
        const std::uint32_t right = m_chain[at].index;
        const std::uint32_t middle = left + ((right - left) >> 1);
        m_chain.insert(m_chain.begin() + static_cast<std::ptrdiff_t>(at), {p, middle});
        if (middle == left || middle == right) NumberModel();
    }

    void NumberModel() {
        const auto n = static_cast<std::uint32_t>(m_chain.size() - 1);
        for (std::uint32_t k = 1; k < n; ++k) m_chain[k].index = k * (kLastIndex / (n + 10));
    }

    void Remove(std::size_t at) {
        const Entry entry = m_chain[at];
        m_chain.erase(m_chain.begin() + static_cast<std::ptrdiff_t>(at));
        switch (m_in.Below(3)) {
            case 0: m_pOwn->RemoveStreamObj(entry.p, true); return;
            case 1: m_pOwn->RemoveStreamObj(entry.p, false); break;
            case 2: entry.p->UnLink();
        }
        m_removed.push_back(entry);
    }

    Input m_in;
    CPlexa m_plexa{nullptr};
    CStream* m_pOwn = m_plexa.pStream(m_plexa.AddStream("own"));
    CStream* m_pGuest = m_plexa.pStream(m_plexa.AddStream("guest"));
    std::vector<Entry> m_chain;
    std::vector<Entry> m_removed;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size <= kMostBytes) Ordering(Input(data, size));
    return 0;
}
