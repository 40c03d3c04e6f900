// Searches across streams: is a mark at or beyond another, and where is the nearest mark of a
// stream.
//
// Positions in different streams are related only through synchronous marks. A search walks the
// graph of marks depth first: from a mark to the next one in its stream, and from a synchronous
// mark through its group to the marks that follow in the other streams, visiting the ranked streams
// from the least to the best populated, so that the best populated is explored first. Marks reached
// are stamped with the number of the search. The work stack belongs to the container; searches
// never run inside each other. Where marks cannot be ordered, a search for the nearest one tries
// every mark against every other: tests limit the steps.
#include <new>

#include "stream/ordernumbering.h"
#include "stream/scan.h"

using mlds::Internals;
using mlds::OrderNumbering;

namespace {

constexpr int kEntries = 20000;

class MarkStack {
public:
    MarkStack(CSyncMark** ppEntries, unsigned int searchNumber, std::uint64_t& stepsLeft)
        : m_ppEntries(ppEntries), m_nSearch(searchNumber), m_nStepsLeft(stepsLeft) {}

    /// Starts the search at a mark. False without memory for the stack.
    bool Start(CSyncMark* p) {
        if (m_ppEntries == nullptr) return false;
        p->TouchSearchNumber(m_nSearch);
        m_ppEntries[m_nUsed++] = p;
        return true;
    }
    /// Pushes a mark that this search has not seen. False if there is no room for it.
    bool Push(CSyncMark* p) {
        if (p == nullptr || p->TestSearchNumber(m_nSearch)) return true;
        if (m_nUsed == kEntries) return false;
        m_ppEntries[m_nUsed++] = p;
        return true;
    }
    void Stamp(CSyncMark* p) { p->TouchSearchNumber(m_nSearch); }
    /// The mark to look at next; null when there are no more, or no more steps to take.
    CSyncMark* Pop() {
        if (m_nUsed == 0 || m_nStepsLeft == 0) return nullptr;
        --m_nStepsLeft;
        return m_ppEntries[--m_nUsed];
    }

private:
    CSyncMark** m_ppEntries;
    unsigned int m_nSearch;
    std::uint64_t& m_nStepsLeft;
    int m_nUsed = 0;
};

// The next mark of the same chain.
CSyncMark* NextMark(CSyncMark* p, ScanDirectionType direction) {
    return static_cast<CSyncMark*>(mlds::NearestOf(p, direction, otSyncMark, false));
}

// A mark that has never been in a chain is neither before nor after another.
bool IsBefore(CSyncMark* p, CSyncMark* pTo, ScanDirectionType direction) {
    if (!Internals::HasPlace(p) || !Internals::HasPlace(pTo)) return false;
    const std::uint32_t at = OrderNumbering::IndexOf(p);
    const std::uint32_t to = OrderNumbering::IndexOf(pTo);
    return direction == sdRight ? at < to : at > to;
}

}  // namespace

// The memory of the work stack. It is had when the container is made; if there was none then, a
// search asks again.
CSyncMark** CPlexa::WorkStack() {
    if (m_ppWorkStack == nullptr) m_ppWorkStack = new (std::nothrow) CSyncMark*[kEntries];
    return m_ppWorkStack;
}

bool CPlexa::CSMSearch(CSyncMark* pFrom, CSyncMark* pTo, ScanDirectionType direction) {
    if (!mlds::BelongsTo(this, pFrom) || !mlds::BelongsTo(this, pTo)) return false;
    if (pFrom == pTo) return true;
    const int target = Internals::SlotOf(pTo);
    CStream* pTargetStream = Internals::StreamOf(pTo);
    MarkStack stack(WorkStack(), incr_SearchNumber(), m_nSearchSteps);
    if (!stack.Start(pFrom)) return false;
    while (CSyncMark* p = stack.Pop()) {
        if (CSyncMark* pThere = Internals::CounterpartOrSelf(p, pTargetStream)) {
            if (pThere == pTo || IsBefore(pThere, pTo, direction)) return true;
            continue;  // this way has gone past pTo
        }
        if (!p->IsSynchronous()) {
            if (!stack.Push(NextMark(p, direction))) return false;
            continue;
        }
        // The mark's own stream is followed only where it is ranked.
        for (int i = m_nRanked - 1; i >= 0; --i) {
            const int stream = m_ranking[i].nStream;
            if (stream == target) continue;
            CSyncMark* pMember =
                stream == Internals::SlotOf(p) ? p : Internals::Counterpart(p, stream);
            if (pMember == nullptr) continue;
            stack.Stamp(pMember);
            if (!stack.Push(NextMark(pMember, direction))) return false;
        }
    }
    return false;
}

CSyncMark* CPlexa::SubContext(CStream* pInto, CSyncMark* pSyncMark, ScanDirectionType direction) {
    if (!mlds::BelongsTo(this, pInto) || !mlds::BelongsTo(this, pSyncMark)) return nullptr;
    MarkStack stack(WorkStack(), incr_SearchNumber(), m_nSearchSteps);
    if (!stack.Start(pSyncMark)) return nullptr;
    while (CSyncMark* p = stack.Pop()) {
        if (CSyncMark* pThere = Internals::CounterpartOrSelf(p, pInto)) return pThere;
        for (int i = p->IsSynchronous() ? m_nRanked - 1 : -1; i >= 0; --i) {
            const int stream = m_ranking[i].nStream;
            if (stream == Internals::SlotOf(p)) continue;
            CSyncMark* pMember = Internals::Counterpart(p, stream);
            if (pMember == nullptr) continue;
            stack.Stamp(pMember);
            CSyncMark* pNext = NextMark(pMember, direction);
            if (pNext == nullptr) continue;
            if (CSyncMark* pThere = Internals::CounterpartOrSelf(pNext, pInto)) return pThere;
            if (!stack.Push(pNext)) return nullptr;
        }
        if (!stack.Push(NextMark(p, direction))) return nullptr;
    }
    return nullptr;
}

// SubContext finds some mark; this walks back from it towards pSyncMark as long as marks are still
// at or beyond it. Marks that no chain of synchronous marks orders against it are stepped over.
CSyncMark* CPlexa::Context(CStream* pInto, CSyncMark* pSyncMark, ScanDirectionType direction) {
    CSyncMark* pNearest = SubContext(pInto, pSyncMark, direction);
    if (pNearest == nullptr) return nullptr;
    const ScanDirectionType back = direction == sdRight ? sdLeft : sdRight;
    for (CSyncMark* p = NextMark(pNearest, back); p != nullptr; p = NextMark(p, back)) {
        if (CSMSearch(p, pSyncMark, back)) {
            pNearest = p;
        } else if (CSMSearch(p, pSyncMark, direction)) {
            break;
        }
        if (m_nSearchSteps == 0) return nullptr;
    }
    return pNearest;
}

CSyncMark* CPlexa::Context(const char* streamName, CSyncMark* pSyncMark,
                           ScanDirectionType direction) {
    return Context(pStream(streamName), pSyncMark, direction);
}

CSyncMark* CPlexa::Context(int streamIndex, CSyncMark* pSyncMark, ScanDirectionType direction) {
    return Context(pStream(streamIndex), pSyncMark, direction);
}

bool CPlexa::Context(CSyncMark* pFrom, CSyncMark* pTo, ScanDirectionType direction) {
    return CSMSearch(pFrom, pTo, direction);
}
