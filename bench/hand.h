// The baselines: what one would write by hand for exactly the work at hand. Nodes come from free
// lists, names and derived values from tables; there are no order indices, counters, reports or
// checks of arguments.
#ifndef MLDS_BENCH_HAND_H
#define MLDS_BENCH_HAND_H

#include <mlds/mlds.h>

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <vector>

namespace bench {

struct HandValues {
    std::int32_t types[4];
    std::int32_t values[4];
};

/// As large as an object of the library, with what is read at about the same place.
struct HandNode {
    void* pReserved[2];
    HandNode* pNext;
    HandNode* pPrev;
    std::int32_t bToken;
    std::uint32_t index;
    void* pReserved2;
    union {
        HandValues* pValues;  // of a token
        HandNode** ppTable;   // of a mark
    };
};
struct HandToken : HandNode {
    std::byte reserved[sizeof(CToken) - sizeof(HandNode)];
};
struct HandMark : HandNode {
    std::byte reserved[sizeof(CSyncMark) - sizeof(HandNode)];
};

template <typename T>
class HandPool {
public:
    T* Take() {
        if (m_pFree == nullptr) Grow();
        Cell* pCell = m_pFree;
        m_pFree = pCell->pNext;
        return new (pCell) T;
    }
    void Free(void* p) { m_pFree = new (p) Cell{m_pFree}; }

private:
    struct Cell {
        Cell* pNext;
    };
    static_assert(sizeof(T) >= sizeof(Cell));
    struct alignas(16) Room {
        std::byte bytes[sizeof(T)];
    };
    void Grow() {
        constexpr std::size_t kCells = 1000;
        m_chunks.push_back(std::make_unique<Room[]>(kCells));
        for (std::size_t i = kCells; i > 0; --i) Free(&m_chunks.back()[i - 1]);
    }

    Cell* m_pFree = nullptr;
    std::vector<std::unique_ptr<Room[]>> m_chunks;
};

/// A stream of phones by hand.
class HandTier {
public:
    /// Takes names and derived values from the fields that AddPhoneFields declared.
    HandTier();

    HandNode* Last() { return m_last.pPrev; }
    HandNode* First() { return m_first.pNext; }
    bool IsEnd(const HandNode* p) const { return p == &m_last; }

    HandNode* MakeToken(const char* name) {
        HandNode* p = m_tokens.Take();
        p->bToken = 1;
        p->pValues = m_values.Take();
        *p->pValues = m_derived[m_byName[Key(name)]];
        return p;
    }
    HandNode* MakeMark() {
        HandNode* p = m_marks.Take();
        p->bToken = 0;
        p->ppTable = nullptr;
        return p;
    }
    /// A token with the mark on its left, to the left of a mark.
    HandNode* InsertLeftOf(HandNode* pRight, const char* name) {
        HandNode* pMark = MakeMark();
        HandNode* pToken = MakeToken(name);
        Link(pMark, pRight->pPrev, pRight);
        Link(pToken, pMark, pRight);
        return pToken;
    }
    void Append(const char* name) { InsertLeftOf(&m_last, name); }
    void Remove(HandNode* p) {
        p->pPrev->pNext = p->pNext;
        p->pNext->pPrev = p->pPrev;
        Free(p);
    }
    void RemoveBetween(HandNode* pLeft, HandNode* pRight) {
        while (pLeft->pNext != pRight) Remove(pLeft->pNext);
    }
    void Reset() { RemoveBetween(&m_first, &m_last); }

private:
    // Names have one or two characters.
    static std::size_t Key(const char* name) {
        const auto c0 = static_cast<unsigned char>(name[0]);
        return c0 + 256u * static_cast<unsigned char>(name[1]);
    }
    static void Link(HandNode* p, HandNode* pLeft, HandNode* pRight) {
        p->pPrev = pLeft;
        p->pNext = pRight;
        pLeft->pNext = p;
        pRight->pPrev = p;
    }
    void Free(HandNode* p) {
        if (p->bToken != 0) {
            m_values.Free(p->pValues);
            m_tokens.Free(p);
        } else {
            m_marks.Free(p);
        }
    }

    HandNode m_first{};
    HandNode m_last{};
    HandPool<HandToken> m_tokens;
    HandPool<HandMark> m_marks;
    HandPool<HandValues> m_values;
    std::vector<std::uint8_t> m_byName;
    std::vector<HandValues> m_derived;
};

/// A copy of streams for reading by hand. Nodes lie in their pages as the objects lie in theirs,
/// and the pages in the same order, so that both walks meet memory alike.
class Mirror {
public:
    explicit Mirror(const std::vector<CStream*>& streams);
    /// The node that stands for an object.
    HandNode* Of(CStreamObj* p) const;

private:
    void AddNode(CStreamObj* p);
    HandNode** TableOf(CSyncMark* pMark);

    static constexpr std::size_t kSlots = 50;

    std::map<std::uintptr_t, std::byte*> m_pages;  // by the objects' pages
    std::unique_ptr<std::byte[]> m_room;
    int m_nStreams;
    std::vector<HandValues> m_values;
    std::deque<std::array<HandNode*, kSlots>> m_tables;
};

}  // namespace bench

#endif
