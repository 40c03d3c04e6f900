// What an engine's container holds, rebuilt from its messages alone.
#ifndef MLDS_VIEWER_TOOL_MIRROR_H
#define MLDS_VIEWER_TOOL_MIRROR_H

#include <map>
#include <unordered_map>

#include "event.h"

namespace mlds_viewer {

struct Object {
    Kind kind;
    int stream;  // that it was made for
    int chain;   // the stream in whose chain it lies
    Id left = 0;
    Id right = 0;
    std::vector<std::string> values = {};  // of a token, by field
};

struct Stream {
    std::string name;
    std::vector<Field> fields;
    Id first = 0;  // the chain's ends
    Id last = 0;
};

struct Variable {
    std::string name;
    Id slot;
    Id content;  // the object that was bound when a message last told
};

struct VariableList {
    Id id;
    std::map<int, Variable> variables;  // by index
};

/// A value: copies share nothing.
class Mirror {
public:
    /// Whatever a message says, the chains stay whole: what cannot be carried out is left out.
    void Apply(const Event& event);
    void Clear() { *this = Mirror(); }

    const std::string& language() const { return m_language; }
    /// By index; those that no message described have no name.
    const std::vector<Stream>& streams() const { return m_streams; }
    const std::vector<VariableList>& lists() const { return m_lists; }
    std::size_t nObjects() const { return m_objects.size(); }
    /// About how much memory it takes. Goes through everything.
    std::size_t nBytes() const;
    /// Null for what is in no chain.
    const Object* Find(Id id) const;
    /// The marks that are synchronous with a mark by stream, itself included. A message may have
    /// mentioned some that are in no chain.
    const std::map<int, Id>& GroupOf(Id mark) const;
    /// The objects of a chain from left to right.
    std::vector<Id> Chain(int stream) const;
    /// What a token is called: its first value.
    std::string NameOf(Id id) const;
    /// "token a of phone", "mark 0x0000002a of phone", with names as they are shown inside of
    /// lines.
    std::string Describe(Id id) const;

private:
    void Handle(const Inserted& event);
    void Handle(const Changed& event);
    void Handle(const Removed& event) { Remove(event.object.id); }
    void Handle(const StreamDescribed& event);
    void Handle(const LanguageTold& event) { m_language = event.language; }
    void Handle(const ListMade& event) { ListOf(event.list); }
    void Handle(const ListGone& event);
    void Handle(const VariableTold& event);
    void Handle(const Said& event);
    void Handle(const Signal& event);
    void Handle(const Unintelligible&) {}

    Stream& StreamAt(int stream);
    /// What refers to an object from its left or its right: a neighbour's link or the chain's end.
    Id& RightLink(int chain, Id left);
    Id& LeftLink(int chain, Id right);
    VariableList& ListOf(Id list);
    void SetBody(Id id, Object& object, const Body& body);
    void Tie(Id mark, int stream, const Ties& ties);
    void Untie(Id mark);
    void Remove(Id id);
    void EmptyStreams();

    std::string m_language;
    std::vector<Stream> m_streams;
    std::vector<VariableList> m_lists;
    std::unordered_map<Id, Object> m_objects;
    std::unordered_map<Id, std::map<int, Id>> m_groups;
    std::unordered_map<Id, Id> m_groupOf;
    Id m_lastGroup = 0;
};

/// The values in "|VALUE|VALUE". Where there are more bars than values the first one has them.
std::vector<std::string> PartValues(std::string_view body, std::size_t nValues);

/// "0x0000002a", as messages write it.
std::string HandleText(Id id);

}  // namespace mlds_viewer

#endif
