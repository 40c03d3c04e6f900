// A container as plain numbers: what a model needs to know of it, read once through the public
// interface, and the questions of navigation answered on that by walking.
#ifndef MLDS_TESTS_SUPPORT_MODEL_LAYOUT_H
#define MLDS_TESTS_SUPPORT_MODEL_LAYOUT_H

#include <unordered_map>
#include <vector>

#include "mlds/mlds.h"

namespace mlds_test {

/// An object of a layout, by its number.
using Id = int;
constexpr Id kNone = -1;

/// The values of a token. Each has its own type, which is copied with it: a token does not always
/// have the types of its stream's fields.
struct TokenValues {
    int stream;
    std::vector<FieldValType> types;
    std::vector<int> values;

    /// The value of a field; -1 if there is no such field.
    int At(int field) const;
    /// Whole tokens: of one stream, and of equal types and values in every field.
    bool Equals(const TokenValues& other) const;
    /// Takes over as many values as both have, types included.
    void CopyFrom(const TokenValues& source);
};

struct LayoutObject {
    CStreamObj* self;  // the object itself, never looked into by the model
    int stream;
    int place;  // in the chain of its stream; -1 for a token in no stream
    bool bToken;
    int knownStreams;        // those that existed when a mark was made
    std::vector<Id> group;   // a mark's group by streams; empty if it is in none
    TokenValues token = {};  // a token's values
};

/// The indices of the streams that RankPopulatedStreams would rank now, the fullest first. The
/// container keeps its ranking until it is built again: note this when it is.
std::vector<int> RankedStreams(CPlexa& plexa);

class Layout {
public:
    Layout(CPlexa& plexa, std::vector<int> ranking);

    /// The number of an object; kNone for null. A token in no stream is added.
    Id IdOf(CStreamObj* p);
    LayoutObject& operator[](Id id) { return m_objects[static_cast<std::size_t>(id)]; }
    const LayoutObject& operator[](Id id) const { return m_objects[static_cast<std::size_t>(id)]; }
    Id Count() const { return static_cast<Id>(m_objects.size()); }
    bool HasStream(int stream) const { return stream >= 0 && stream < Streams(); }
    int Streams() const { return static_cast<int>(m_chains.size()); }
    int TimeStream() const { return m_timeStream; }
    Id First(int stream) const { return m_chains[static_cast<std::size_t>(stream)].front(); }
    Id Last(int stream) const { return m_chains[static_cast<std::size_t>(stream)].back(); }
    bool IsMark(Id id) const { return id != kNone && !(*this)[id].bToken; }

    // Along one stream. The fence-respecting forms stop at fenced marks but `advanceMark` and what
    // is synchronous with it.

    Id Next(Id id, ScanDirectionType direction) const;
    Id Nearest(Id id, ScanDirectionType direction, ObjectType type) const;
    Id NextInFence(Id id, ScanDirectionType direction, Id advanceMark) const;
    Id NearestInFence(Id id, ScanDirectionType direction, ObjectType type, Id advanceMark) const;
    bool MayLeave(Id id, Id advanceMark) const;
    bool IsFenced(Id mark) const;
    /// True if `a` lies strictly beyond `b` in the direction; false across streams.
    bool Beyond(Id a, Id b, ScanDirectionType direction) const;

    // Across streams.

    Id Counterpart(Id mark, int stream) const;
    bool Synchronous(Id a, Id b) const;
    /// CPlexa::CSMSearch, SubContext, Context and Move.
    bool Reaches(Id from, Id to, ScanDirectionType direction) const;
    Id SomeMark(int stream, Id from, ScanDirectionType direction) const;
    Id NearestMark(int stream, Id from, ScanDirectionType direction) const;
    Id EndOfRun(int stream, Id mark, ScanDirectionType direction) const;

private:
    void AddToken(CStreamObj* p, int place);

    std::vector<LayoutObject> m_objects;
    std::unordered_map<CStreamObj*, Id> m_ids;
    std::vector<std::vector<Id>> m_chains;
    std::vector<bool> m_fenced;
    std::vector<int> m_ranking;
    int m_timeStream = -1;
};

inline ScanDirectionType Opposite(ScanDirectionType direction) {
    return direction == sdRight ? sdLeft : sdRight;
}

}  // namespace mlds_test

#endif
