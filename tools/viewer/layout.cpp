// Finding instants, putting them into an order, and giving them places.
#include "layout.h"

#include <algorithm>
#include <deque>

namespace mlds_viewer {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// Gives every mark an instant, in the order in which they are met.
class Instants {
public:
    explicit Instants(const Mirror& mirror) : m_mirror(mirror) {}

    std::size_t Of(Id mark) {
        const std::map<int, Id>& group = m_mirror.GroupOf(mark);
        const Id speaker = group.empty() ? mark : group.begin()->second;
        const auto [found, bNew] = m_instants.emplace(speaker, m_n);
        if (bNew) ++m_n;
        return found->second;
    }
    // One that no mark stands for.
    std::size_t Fresh() { return m_n++; }
    std::size_t n() const { return m_n; }

private:
    const Mirror& m_mirror;
    std::unordered_map<Id, std::size_t> m_instants;
    std::size_t m_n = 0;
};

Lane MakeLane(const Mirror& mirror, int stream, Instants& instants) {
    Lane lane{stream, {}, {}};
    std::vector<Id> tokens;
    for (const Id id : mirror.Chain(stream)) {
        if (mirror.Find(id)->kind == Kind::token) {
            tokens.push_back(id);
            continue;
        }
        // Tokens that no mark keeps in have no place of their own: they stand with their
        // neighbours.
        if (!lane.marks.empty()) lane.cells.push_back(std::exchange(tokens, {}));
        lane.marks.push_back({id, instants.Of(id)});
    }
    if (!tokens.empty() && lane.cells.empty()) {
        // A stream that lacks marks has been told in part. Its tokens are to be seen all the same.
        while (lane.marks.size() < 2) lane.marks.push_back({0, instants.Fresh()});
        lane.cells.emplace_back();
    }
    if (!lane.cells.empty()) {
        lane.cells.back().insert(lane.cells.back().end(), tokens.begin(), tokens.end());
    }
    return lane;
}

// Numbers the instants anew so that streams lead from lower to higher ones.
class Sorter {
public:
    Sorter(const std::vector<Lane>& lanes, std::size_t nInstants)
        : m_next(nInstants), m_nBefore(nInstants), m_rank(nInstants, kNone) {
        for (const Lane& lane : lanes) {
            for (std::size_t i = 0; i < lane.cells.size(); ++i) {
                m_next[lane.marks[i].instant].push_back(lane.marks[i + 1].instant);
                ++m_nBefore[lane.marks[i + 1].instant];
            }
        }
    }

    const std::vector<std::size_t>& Ranks() {
        for (std::size_t i = 0; i < m_rank.size(); ++i) {
            if (m_nBefore[i] == 0) m_ready.push_back(i);
        }
        // Where ties cross, nobody is first; then the one met first is.
        for (std::size_t next = 0; m_nRanked < m_rank.size();) {
            if (m_ready.empty()) {
                while (m_rank[next] != kNone) ++next;
                m_ready.push_back(next);
            }
            Rank(m_ready.front());
            m_ready.pop_front();
        }
        return m_rank;
    }

private:
    void Rank(std::size_t instant) {
        if (m_rank[instant] != kNone) return;
        m_rank[instant] = m_nRanked++;
        for (const std::size_t next : m_next[instant]) {
            if (--m_nBefore[next] == 0) m_ready.push_back(next);
        }
    }

    std::vector<std::vector<std::size_t>> m_next;
    std::vector<std::size_t> m_nBefore;
    std::vector<std::size_t> m_rank;
    std::deque<std::size_t> m_ready;
    std::size_t m_nRanked = 0;
};

}  // namespace

Layout LayOut(const Mirror& mirror) {
    Layout layout;
    Instants instants(mirror);
    for (std::size_t i = 0; i < mirror.streams().size(); ++i) {
        if (mirror.streams()[i].first == 0) continue;
        layout.lanes.push_back(MakeLane(mirror, static_cast<int>(i), instants));
    }
    layout.nInstants = instants.n();
    Sorter sorter(layout.lanes, layout.nInstants);
    const std::vector<std::size_t>& ranks = sorter.Ranks();
    for (Lane& lane : layout.lanes) {
        for (PlacedMark& mark : lane.marks) mark.instant = ranks[mark.instant];
    }
    return layout;
}

std::vector<std::size_t> Places(const Layout& layout, const std::vector<std::size_t>& widths) {
    struct Span {
        std::size_t left;
        std::size_t width;
    };
    std::vector<std::vector<Span>> ending(layout.nInstants);
    auto width = widths.begin();
    for (const Lane& lane : layout.lanes) {
        for (std::size_t i = 0; i < lane.cells.size(); ++i) {
            const std::size_t least = std::max<std::size_t>(*width++, 1);
            const std::size_t left = lane.marks[i].instant;
            const std::size_t right = lane.marks[i + 1].instant;
            if (left < right) ending[right].push_back({left, least});
        }
    }
    std::vector<std::size_t> places(layout.nInstants);
    for (std::size_t i = 0; i < layout.nInstants; ++i) {
        for (const Span& span : ending[i]) {
            places[i] = std::max(places[i], places[span.left] + span.width);
        }
    }
    return places;
}

}  // namespace mlds_viewer
