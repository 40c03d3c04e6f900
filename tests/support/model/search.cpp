// Containers as plain numbers: from stream to stream.
#include <unordered_set>

#include "support/model/layout.h"

namespace mlds_test {

namespace {

// The marks that a search has still to look at, depth first: what was pushed last comes first, and
// a mark is pushed once.
class Frontier {
public:
    explicit Frontier(Id from) : m_visited{from}, m_stack{from} {}
    bool IsEmpty() const { return m_stack.empty(); }
    Id Take() {
        const Id id = m_stack.back();
        m_stack.pop_back();
        return id;
    }
    void Push(Id id) {
        if (id != kNone && m_visited.insert(id).second) m_stack.push_back(id);
    }
    void Pass(Id id) { m_visited.insert(id); }

private:
    std::unordered_set<Id> m_visited;
    std::vector<Id> m_stack;
};

}  // namespace

Id Layout::Counterpart(Id mark, int stream) const {
    const LayoutObject& object = (*this)[mark];
    if (object.stream == stream) return mark;
    if (object.group.empty() || !HasStream(stream)) return kNone;
    return object.group[static_cast<std::size_t>(stream)];
}

bool Layout::Synchronous(Id a, Id b) const {
    return a != kNone && b != kNone && Counterpart(a, (*this)[b].stream) == b;
}

bool Layout::Reaches(Id from, Id to, ScanDirectionType direction) const {
    if (from == kNone || to == kNone) return false;
    if (from == to) return true;
    const int target = (*this)[to].stream;
    Frontier frontier(from);
    while (!frontier.IsEmpty()) {
        const Id m = frontier.Take();
        const Id c = Counterpart(m, target);
        if (c != kNone) {
            // Beyond the target this branch ends.
            if (c == to || Beyond(to, c, direction)) return true;
        } else if ((*this)[m].group.empty()) {
            frontier.Push(Nearest(m, direction, otSyncMark));
        } else {
            // Ranked streams alone, from the emptiest to the fullest, the mark's own no exception.
            for (std::size_t i = m_ranking.size(); i-- > 0;) {
                if (m_ranking[i] == target) continue;
                const Id m2 = Counterpart(m, m_ranking[i]);
                if (m2 == kNone) continue;
                frontier.Pass(m2);
                frontier.Push(Nearest(m2, direction, otSyncMark));
            }
        }
    }
    return false;
}

Id Layout::SomeMark(int stream, Id from, ScanDirectionType direction) const {
    Frontier frontier(from);
    while (!frontier.IsEmpty()) {
        const Id m = frontier.Take();
        if (Counterpart(m, stream) != kNone) return Counterpart(m, stream);
        const bool bGrouped = !(*this)[m].group.empty();
        for (std::size_t i = bGrouped ? m_ranking.size() : 0; i-- > 0;) {
            if (m_ranking[i] == (*this)[m].stream) continue;
            const Id m2 = Counterpart(m, m_ranking[i]);
            if (m2 == kNone) continue;
            frontier.Pass(m2);
            const Id next = Nearest(m2, direction, otSyncMark);
            if (next == kNone) continue;
            // What leads to the stream ends the search at once.
            if (Counterpart(next, stream) != kNone) return Counterpart(next, stream);
            frontier.Push(next);
        }
        // Its own stream last, and so first, whether it is ranked or not.
        frontier.Push(Nearest(m, direction, otSyncMark));
    }
    return kNone;
}

// From some mark of the stream back towards the start: the last one that still lies at the mark or
// beyond it. Marks that no chain of groups orders are passed over.
Id Layout::NearestMark(int stream, Id from, ScanDirectionType direction) const {
    if (!HasStream(stream) || from == kNone) return kNone;
    Id result = SomeMark(stream, from, direction);
    if (result == kNone) return kNone;
    const ScanDirectionType back = Opposite(direction);
    for (Id m = Nearest(result, back, otSyncMark); m != kNone; m = Nearest(m, back, otSyncMark)) {
        if (Reaches(m, from, back)) {
            result = m;
        } else if (Reaches(m, from, direction)) {
            break;
        }
    }
    return result;
}

Id Layout::EndOfRun(int stream, Id mark, ScanDirectionType direction) const {
    Id m = mark == kNone || !HasStream(stream) ? kNone : Counterpart(mark, stream);
    while (m != kNone && IsMark(Next(m, direction))) m = Next(m, direction);
    return m;
}

}  // namespace mlds_test
