// The baselines' tables, and copies of streams at the same places.
#include "hand.h"

#include "tiers.h"

namespace bench {

HandTier::HandTier() : m_byName(65536) {
    m_first.pNext = &m_last;
    m_last.pPrev = &m_first;
    PhoneTier tier;
    for (const char* name : g_phones) {
        CToken* pToken = tier.pStream->CreateToken(name);
        HandValues values{};
        for (int i = 0; i < 4; ++i) values.values[i] = pToken->GetFieldValueIndex(i);
        m_byName[Key(name)] = static_cast<std::uint8_t>(m_derived.size());
        m_derived.push_back(values);
        CStream::DiscardStreamObj(pToken);
    }
}

namespace {

constexpr std::uintptr_t kPage = 4096;

std::vector<CStreamObj*> ObjectsOf(const std::vector<CStream*>& streams) {
    std::vector<CStreamObj*> objects;
    for (CStream* pStream : streams) {
        for (CStreamObj* p = pStream->pGetFirstStreamObj(); p != nullptr;
             p = p->GetNextStreamObj()) {
            objects.push_back(p);
        }
    }
    return objects;
}

}  // namespace

Mirror::Mirror(const std::vector<CStream*>& streams)
    : m_nStreams(static_cast<int>(streams.size())) {
    const std::vector<CStreamObj*> objects = ObjectsOf(streams);
    for (CStreamObj* p : objects) {
        const auto begin = reinterpret_cast<std::uintptr_t>(p);
        m_pages[begin / kPage] = nullptr;
        m_pages[(begin + sizeof(CToken)) / kPage] = nullptr;
    }
    m_room.reset(new std::byte[(m_pages.size() + 1) * kPage]);
    const auto room = reinterpret_cast<std::uintptr_t>(m_room.get());
    std::byte* pPage = m_room.get() + (kPage - room % kPage);
    for (auto& page : m_pages) {
        page.second = pPage;
        pPage += kPage;
    }
    m_values.reserve(objects.size());
    for (CStreamObj* p : objects) AddNode(p);
}

HandNode* Mirror::Of(CStreamObj* p) const {
    if (p == nullptr) return nullptr;
    const auto address = reinterpret_cast<std::uintptr_t>(p);
    return reinterpret_cast<HandNode*>(m_pages.at(address / kPage) + address % kPage);
}

void Mirror::AddNode(CStreamObj* p) {
    HandNode* pNode = new (Of(p)) HandNode{};
    pNode->pNext = Of(p->GetNextStreamObj());
    pNode->pPrev = Of(p->GetPrevStreamObj());
    pNode->index = p->GetOrderIndex();
    pNode->bToken = p->GetObjectType(otToken);
    if (pNode->bToken != 0) {
        HandValues& values = m_values.emplace_back();
        for (int i = 0; i < 4; ++i) {
            values.values[i] = static_cast<CToken*>(p)->GetFieldValueIndex(i);
        }
        pNode->pValues = &values;
    } else {
        pNode->ppTable = TableOf(static_cast<CSyncMark*>(p));
    }
}

// One table per group: the first member to come makes it, the others find it there.
HandNode** Mirror::TableOf(CSyncMark* pMark) {
    if (!pMark->IsSynchronous()) return nullptr;
    const int own = pMark->GetStream()->GetStreamIndex();
    for (int i = 0; i < own; ++i) {
        if (CSyncMark* pEarlier = pMark->GetCorrespondingSyncMark(i)) return Of(pEarlier)->ppTable;
    }
    auto& table = m_tables.emplace_back();
    for (int i = 0; i < m_nStreams; ++i) {
        table[static_cast<std::size_t>(i)] = Of(pMark->GetCorrespondingSyncMark(i));
    }
    return table.data();
}

}  // namespace bench
