// The mirror: what each message changes, and what can be asked.
#include "mirror.h"

#include <algorithm>
#include <cstdio>

#include "report/messages.h"
#include "text.h"

namespace mlds_viewer {

void Mirror::Apply(const Event& event) {
    std::visit([this](const auto& what) { Handle(what); }, event);
}

const Object* Mirror::Find(Id id) const {
    const auto found = m_objects.find(id);
    return found != m_objects.end() ? &found->second : nullptr;
}

const std::map<int, Id>& Mirror::GroupOf(Id mark) const {
    static const std::map<int, Id> kNone;
    const auto found = m_groupOf.find(mark);
    return found != m_groupOf.end() ? m_groups.at(found->second) : kNone;
}

std::vector<Id> Mirror::Chain(int stream) const {
    std::vector<Id> chain;
    const Id first = m_streams.at(static_cast<std::size_t>(stream)).first;
    for (Id id = first; id != 0; id = m_objects.at(id).right) chain.push_back(id);
    return chain;
}

std::string Mirror::NameOf(Id id) const {
    const Object* p = Find(id);
    return p != nullptr && !p->values.empty() ? p->values.front() : "";
}

std::string Mirror::Describe(Id id) const {
    if (id == 0) return "nothing";
    const Object* p = Find(id);
    if (p == nullptr) return HandleText(id) + ", which is in no stream";
    const std::string what =
        p->kind == Kind::token ? "token " + InLine(NameOf(id)) : "mark " + HandleText(id);
    return what + " of " + InLine(m_streams[static_cast<std::size_t>(p->stream)].name);
}

std::size_t Mirror::nBytes() const {
    constexpr std::size_t kNode = 64;  // of a map, with what the allocator adds
    std::size_t n = sizeof *this;
    for (const auto& [id, object] : m_objects) {
        n += kNode + sizeof object;
        for (const std::string& value : object.values) n += sizeof value + value.size();
    }
    for (const auto& [id, group] : m_groups) n += kNode + group.size() * 2 * kNode;
    for (const Stream& stream : m_streams) {
        for (const Field& field : stream.fields) {
            n += sizeof field + field.name.size();
            for (const std::string& value : field.values) n += sizeof value + value.size();
        }
    }
    for (const VariableList& list : m_lists) {
        for (const auto& [index, variable] : list.variables) {
            n += kNode + sizeof variable + variable.name.size();
        }
    }
    return n;
}

Stream& Mirror::StreamAt(int stream) {
    const auto i = static_cast<std::size_t>(stream);
    if (i >= m_streams.size()) m_streams.resize(i + 1);
    return m_streams[i];
}

VariableList& Mirror::ListOf(Id list) {
    const auto found = std::ranges::find(m_lists, list, &VariableList::id);
    return found != m_lists.end() ? *found : m_lists.emplace_back(VariableList{list, {}});
}

Id& Mirror::RightLink(int chain, Id left) {
    return left != 0 ? m_objects.at(left).right : StreamAt(chain).first;
}

Id& Mirror::LeftLink(int chain, Id right) {
    return right != 0 ? m_objects.at(right).left : StreamAt(chain).last;
}

void Mirror::Handle(const Inserted& event) {
    const ObjectHead& head = event.object;
    StreamAt(head.stream);
    if (head.id == 0 || head.id == event.left) return;
    Remove(head.id);
    // Behind an object that was never mentioned means behind something that is missing here.
    const Object* pLeft = Find(event.left);
    const int chain = pLeft != nullptr ? pLeft->chain : head.stream;
    const bool bLost = event.left != 0 && pLeft == nullptr;
    const Id left = bLost ? StreamAt(chain).last : event.left;

    const Id right = RightLink(chain, left);
    Object object{head.kind, head.stream, chain, left, right};
    SetBody(head.id, object, event.body);
    m_objects.emplace(head.id, std::move(object));
    RightLink(chain, left) = head.id;
    LeftLink(chain, right) = head.id;
}

void Mirror::Handle(const Changed& event) {
    const auto found = m_objects.find(event.object.id);
    if (found != m_objects.end()) SetBody(event.object.id, found->second, event.body);
}

void Mirror::Remove(Id id) {
    const auto found = m_objects.find(id);
    if (found == m_objects.end()) return;
    const Object object = std::move(found->second);
    RightLink(object.chain, object.left) = object.right;
    LeftLink(object.chain, object.right) = object.left;
    Untie(id);
    m_objects.erase(id);
}

void Mirror::SetBody(Id id, Object& object, const Body& body) {
    if (const Ties* pTies = std::get_if<Ties>(&body)) {
        Tie(id, object.stream, *pTies);
    } else {
        const std::size_t nFields = StreamAt(object.stream).fields.size();
        object.values = PartValues(std::get<std::string>(body), nFields);
    }
}

// Whoever is named leaves the group it was in: a mark is in one group at a time.
void Mirror::Tie(Id mark, int stream, const Ties& ties) {
    std::map<int, Id> members;
    bool bMember = false;
    for (const auto& [index, member] : ties) {
        if (member != 0) members[index] = member;
        bMember |= member == mark;
    }
    // A mark whose place another one has taken is tied to nobody.
    if (!bMember) members = {{stream, mark}};
    Untie(mark);
    for (const auto& [index, member] : members) Untie(member);
    const Id group = ++m_lastGroup;
    for (const auto& [index, member] : members) m_groupOf[member] = group;
    m_groups.emplace(group, std::move(members));
}

void Mirror::Untie(Id mark) {
    const auto found = m_groupOf.find(mark);
    if (found == m_groupOf.end()) return;
    auto& members = m_groups.at(found->second);
    std::erase_if(members, [mark](const auto& member) { return member.second == mark; });
    if (members.empty()) m_groups.erase(found->second);
    m_groupOf.erase(found);
}

void Mirror::Handle(const StreamDescribed& event) {
    Stream& stream = StreamAt(event.stream);
    stream.name = event.name;
    stream.fields = event.fields;
}

void Mirror::Handle(const ListGone& event) {
    std::erase_if(m_lists, [&](const VariableList& list) { return list.id == event.list; });
}

void Mirror::Handle(const VariableTold& event) {
    ListOf(event.list).variables[event.index] = {event.name, event.slot, event.content};
}

void Mirror::Handle(const Said& event) {
    // What an engine says when its container was initialised or emptied.
    if (event.text == "resetplexa") EmptyStreams();
}

void Mirror::Handle(const Signal& event) {
    if (event.code == mlds::msgFullDump) {
        // The language was told in front of it.
        std::string language = std::move(m_language);
        Clear();
        m_language = std::move(language);
    } else if (event.code == mlds::msgContentsDump) {
        EmptyStreams();
    }
}

// Only the sentinels stay.
void Mirror::EmptyStreams() {
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        for (const Id id : Chain(static_cast<int>(i))) {
            if (id != m_streams[i].first && id != m_streams[i].last) Remove(id);
        }
    }
}

std::vector<std::string> PartValues(std::string_view body, std::size_t nValues) {
    std::vector<std::string> values;
    while (!body.empty() && values.size() + 1 < nValues) {
        const std::size_t bar = body.rfind('|');
        if (bar == 0 || bar == std::string_view::npos) break;
        values.emplace_back(body.substr(bar + 1));
        body = body.substr(0, bar);
    }
    if (!body.empty()) values.emplace_back(body.substr(1));
    std::ranges::reverse(values);
    return values;
}

std::string HandleText(Id id) {
    char text[16];
    std::snprintf(text, sizeof text, "%#010x", id);
    return text;
}

}  // namespace mlds_viewer
