// Containers as plain numbers: reading, and walks along one stream.
#include "support/model/layout.h"

#include <algorithm>
#include <bit>

#include "support/tiers.h"

namespace mlds_test {

int TokenValues::At(int field) const {
    if (field < 0 || field >= static_cast<int>(values.size())) return -1;
    return values[static_cast<std::size_t>(field)];
}

bool TokenValues::Equals(const TokenValues& other) const {
    if (stream != other.stream || types != other.types) return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (types[i] == fvFloat) {
            // Numbers that cannot be ordered count as equal.
            const auto a = std::bit_cast<float>(values[i]);
            const auto b = std::bit_cast<float>(other.values[i]);
            if (a < b || a > b) return false;
        } else if (values[i] != other.values[i]) {
            return false;
        }
    }
    return true;
}

void TokenValues::CopyFrom(const TokenValues& source) {
    const std::size_t n = std::min(values.size(), source.values.size());
    for (std::size_t i = 0; i < n; ++i) {
        types[i] = source.types[i];
        values[i] = source.values[i];
    }
}

std::vector<int> RankedStreams(CPlexa& plexa) {
    std::vector<int> ranking;
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        if (plexa.pStream(i)->GetNumSyncMarks() > 2) ranking.push_back(i);
    }
    std::stable_sort(ranking.begin(), ranking.end(), [&](int a, int b) {
        return plexa.pStream(a)->GetNumSyncMarks() > plexa.pStream(b)->GetNumSyncMarks();
    });
    return ranking;
}

Layout::Layout(CPlexa& plexa, std::vector<int> ranking) : m_ranking(std::move(ranking)) {
    const int n = plexa.GetNumStreams();
    for (int i = 0; i < n; ++i) {
        m_chains.emplace_back();
        m_fenced.push_back(plexa.Fence(i));
        for (CStreamObj* p : Chain(plexa.pStream(i))) {
            const auto place = static_cast<int>(m_chains.back().size());
            m_chains.back().push_back(Count());
            if (p->GetObjectType(otToken)) {
                AddToken(p, place);
                continue;
            }
            m_ids[p] = Count();
            m_objects.push_back({p, i, place, false, n, {}});
        }
        // The sentinels are as old as their stream: they know the streams before it alone.
        (*this)[First(i)].knownStreams = (*this)[Last(i)].knownStreams = i;
        if (plexa.pStream(i) == plexa.GetDefaultTimeStream()) m_timeStream = i;
    }
    for (LayoutObject& object : m_objects) {
        if (object.bToken) continue;
        auto* pMark = static_cast<CSyncMark*>(object.self);
        if (!pMark->IsSynchronous()) continue;
        for (int i = 0; i < n; ++i) {
            const bool bMember = pMark->IsSynchronous(i);
            object.group.push_back(bMember ? m_ids.at(pMark->GetCorrespondingSyncMark(i)) : kNone);
        }
    }
}

void Layout::AddToken(CStreamObj* p, int place) {
    auto* pToken = static_cast<CToken*>(p);
    TokenValues token{p->GetStream()->GetStreamIndex(), {}, {}};
    for (int i = 0; i < p->GetStream()->GetNumFields(); ++i) {
        token.types.push_back(p->GetStream()->GetField(i)->GetFieldType());
        token.values.push_back(pToken->GetFieldValueIndex(i));
    }
    m_ids[p] = Count();
    m_objects.push_back({p, token.stream, place, true, 0, {}, token});
}

Id Layout::IdOf(CStreamObj* p) {
    if (p == nullptr) return kNone;
    if (m_ids.count(p) == 0) AddToken(p, -1);
    return m_ids.at(p);
}

Id Layout::Next(Id id, ScanDirectionType direction) const {
    const LayoutObject& object = (*this)[id];
    const std::vector<Id>& chain = m_chains[static_cast<std::size_t>(object.stream)];
    const int place = object.place + (direction == sdRight ? 1 : -1);
    if (place < 0 || place >= static_cast<int>(chain.size())) return kNone;
    return chain[static_cast<std::size_t>(place)];
}

Id Layout::Nearest(Id id, ScanDirectionType direction, ObjectType type) const {
    do {
        id = Next(id, direction);
    } while (id != kNone && (*this)[id].bToken != (type == otToken));
    return id;
}

Id Layout::NextInFence(Id id, ScanDirectionType direction, Id advanceMark) const {
    return MayLeave(id, advanceMark) ? Next(id, direction) : kNone;
}

// Every mark that is left on the way is checked, the one where the walk begins among them; the
// object that it comes to is not.
Id Layout::NearestInFence(Id id, ScanDirectionType direction, ObjectType type,
                          Id advanceMark) const {
    do {
        id = NextInFence(id, direction, advanceMark);
    } while (id != kNone && (*this)[id].bToken != (type == otToken));
    return id;
}

bool Layout::MayLeave(Id id, Id advanceMark) const {
    return !IsMark(id) || !IsFenced(id) || Synchronous(id, advanceMark);
}

// A mark in no group is free, even in a fenced stream.
bool Layout::IsFenced(Id mark) const {
    const LayoutObject& object = (*this)[mark];
    for (int i = 0; i < static_cast<int>(object.group.size()) && i < object.knownStreams; ++i) {
        const auto k = static_cast<std::size_t>(i);
        if (object.group[k] != kNone && m_fenced[k]) return true;
    }
    return false;
}

bool Layout::Beyond(Id a, Id b, ScanDirectionType direction) const {
    if (a == kNone || b == kNone || (*this)[a].stream != (*this)[b].stream) return false;
    return direction == sdRight ? (*this)[a].place > (*this)[b].place
                                : (*this)[a].place < (*this)[b].place;
}

}  // namespace mlds_test
